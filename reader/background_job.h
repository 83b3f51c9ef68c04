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

// Runs one piece of work on a thread of its own, from its construction on. Lives on the main thread; its signals come
// there. The destructor gives the work up and waits for it, so what the work uses may die after it.
class BackgroundJob : public QObject
{
    Q_OBJECT
public:
    // Returns what went wrong, for the user; empty when it is done or was given up.
    using Work = std::function<QString(const JobControl&)>;
    explicit BackgroundJob(const Work& work, QObject* parent = nullptr);
    ~BackgroundJob() override;
    void Cancel();

signals:
    void Progress(int done, int total);
    // Once, at the end, also of work that was given up; not when the job is destroyed before.
    void Ended(bool wasCancelled, const QString& error);

private:
    std::shared_ptr<std::atomic<bool>> cancelled;
    std::shared_ptr<QString> error; // written by the thread, read when it has ended
    std::unique_ptr<QThread> thread;
};
