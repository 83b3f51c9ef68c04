#include "background_job.h"

#include <QThread>

#include <new>

namespace {

JobOutcome Run(const BackgroundJob::Work& work, const JobControl& control)
{
    try {
        return work(control);
    } catch (const std::bad_alloc&) { // which would end the program on this thread
        JobOutcome outcome;
        outcome.error = BackgroundJob::tr("There is not enough memory.");
        return outcome;
    }
}

} // namespace

BackgroundJob::BackgroundJob(const Work& work, QObject* parent)
    : QObject(parent)
    , cancelled(std::make_shared<std::atomic<bool>>(false))
    , outcome(std::make_shared<JobOutcome>())
{
    const JobControl control{cancelled, [this](int done, int total) {
                                 QMetaObject::invokeMethod(
                                     this, [this, done, total] { emit Progress(done, total); }, Qt::QueuedConnection);
                             }};
    thread.reset(QThread::create([work, control, result = outcome] { *result = Run(work, control); }));
    connect(thread.get(), &QThread::finished, this, [this] { emit Ended(*outcome); });
    thread->start();
}

BackgroundJob::~BackgroundJob()
{
    Cancel();
    thread->wait();
}

void BackgroundJob::Cancel()
{
    cancelled->store(true);
}
