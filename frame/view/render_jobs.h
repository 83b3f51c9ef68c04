#pragma once

#include <frame/document/page_renderer.h>

#include <QFutureWatcher>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QThreadPool>

#include <functional>

// What is wanted of a page: everything that makes one picture differ from another.
struct RenderWish
{
    int page = -1;
    double pixelsPerMm = 0; // physical
    int rotation = 0;
    QSize whole;  // physical pixels of the whole shown page
    QRect region; // the wanted part of it
    QSet<int> ignoredTemplates;
    bool withAnnotations = true;

    friend bool operator==(const RenderWish& a, const RenderWish& b)
    {
        return a.page == b.page && a.pixelsPerMm == b.pixelsPerMm && a.rotation == b.rotation && a.region == b.region &&
               a.ignoredTemplates == b.ignoredTemplates && a.withAnnotations == b.withAnnotations;
    }
};

// Renders pages in a pool of its own, one job a page. Main thread only; the destructor gives up all jobs and waits for
// those that run, so that what they read may die after it.
class RenderJobs : public QObject
{
    Q_OBJECT
public:
    using Done = std::function<void(const RenderWish& wish, const G_RenderResult& result)>;
    RenderJobs(IG_PageRenderer* renderer, Done done);
    ~RenderJobs() override;
    // Starts a job for the wish; an earlier one of that page is given up. Nothing when the same is under way.
    void Start(const RenderWish& wish);
    void Cancel(int page);
    void CancelAllBut(const QSet<int>& pages);
    bool IsIdle() const { return jobs.isEmpty(); }
    // Waits for all jobs and delivers what they made.
    void Finish();

private:
    struct Job;
    void Deliver(int page, const std::shared_ptr<Job>& job);
    IG_PageRenderer* renderer; // not owned
    Done done;
    QHash<int, std::shared_ptr<Job>> jobs;
    QThreadPool pool;
};
