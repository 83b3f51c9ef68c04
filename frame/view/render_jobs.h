#pragma once

#include "page_cache.h"

#include <frame/document/page_renderer.h>

#include <QFutureWatcher>
#include <QObject>
#include <QThreadPool>
#include <QVector>

#include <functional>

// A picture that is wanted: of which page, how, and which part.
struct RenderWish
{
    int page = -1;
    PageLook look;
    QRect region;

    friend bool operator==(const RenderWish& a, const RenderWish& b)
    {
        return a.page == b.page && a.region == b.region && a.look == b.look;
    }
};

// What came of a wish, or has come of it so far.
struct RenderOutcome
{
    G_RenderResult result;
    std::shared_ptr<PictureBudget::Hold> hold; // the picture's share of the budget
    bool isPartial = false;
};

// Renders pages in a pool of its own, as many at a time as it has threads: what waits is better chosen anew when a
// thread gets free. Main thread only; the destructor gives up all jobs and waits for those that run, so that what they
// read may die after it.
class RenderJobs : public QObject
{
    Q_OBJECT
public:
    using Done = std::function<void(const RenderWish& wish, const RenderOutcome& outcome)>;
    RenderJobs(IG_PageRenderer* renderer, Done done);
    ~RenderJobs() override;
    // Starts a job for the wish; nothing when the same is under way. False when the threads are busy or the budget has
    // no room for the picture.
    bool Start(const RenderWish& wish);
    // Gives up what is under way for anything else.
    void KeepOnly(const QVector<RenderWish>& wishes);
    void CancelPage(int page);
    bool IsIdle() const { return jobs.isEmpty(); }
    // Whether a page is being painted for any view, even if nobody wants it any more: its room in the budget comes
    // free.
    static bool IsAnyUnderWay();
    // Waits for all jobs and delivers what they made.
    void Finish();

private:
    struct Job;
    using JobRef = std::shared_ptr<Job>;
    void Deliver(const JobRef& job);
    void DeliverPartial(const JobRef& job);
    void CancelIf(const std::function<bool(const RenderWish&)>& isGivenUp);
    G_RenderRequest RequestOf(const JobRef& job);
    IG_PageRenderer* renderer; // not owned
    Done done;
    QVector<JobRef> jobs;
    QThreadPool pool;
};
