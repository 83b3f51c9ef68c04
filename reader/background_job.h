#pragma once

#include <QObject>
#include <QString>

#include <atomic>
#include <functional>
#include <memory>

class QThread;

// What a piece of work on another thread asks and tells.
struct JobControl
{
    std::shared_ptr<std::atomic<bool>> cancelled; // never null
    std::function<void(int done, int total)> tell;
    bool IsCancelled() const { return cancelled->load(); }
};

// What came of a piece of work. It counts as given up only when it stopped for that: it may be done when it is told.
struct JobOutcome
{
    bool wasGivenUp = false;
    QString error;  // what went wrong, for the user; empty when it is done or was given up
    QString remark; // what the user should know besides; may be empty
};

// Runs one piece of work on a thread of its own, from its construction on. Lives on the main thread; its signals come
// there. The destructor gives the work up and waits for it, so what the work uses may die after it.
class BackgroundJob : public QObject
{
    Q_OBJECT
public:
    using Work = std::function<JobOutcome(const JobControl&)>;
    explicit BackgroundJob(const Work& work, QObject* parent = nullptr);
    ~BackgroundJob() override;
    void Cancel();

signals:
    void Progress(int done, int total);
    // Once, at the end, also of work that was given up; not when the job is destroyed before.
    void Ended(const JobOutcome& outcome);

private:
    std::shared_ptr<std::atomic<bool>> cancelled;
    std::shared_ptr<JobOutcome> outcome; // written by the thread, read when it has ended
    std::unique_ptr<QThread> thread;
};
