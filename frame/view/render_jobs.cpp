#include "render_jobs.h"

#include <QThread>
#include <QtConcurrent>

struct RenderJobs::Job
{
    RenderWish wish;
    std::shared_ptr<std::atomic<bool>> cancelled = std::make_shared<std::atomic<bool>>(false);
    QFutureWatcher<G_RenderResult> watcher;
};

namespace {

// The part of the unturned page that shows up as `region` of the turned one.
QRect Unturned(const QRect& region, const QSize& turnedPage, int rotation)
{
    const int width = turnedPage.width();
    const int height = turnedPage.height();
    switch (rotation) {
    case 90:
        return {region.y(), width - region.x() - region.width(), region.height(), region.width()};
    case 180:
        return {width - region.x() - region.width(), height - region.y() - region.height(), region.width(),
                region.height()};
    case 270:
        return {height - region.y() - region.height(), region.x(), region.height(), region.width()};
    default:
        return region;
    }
}

G_RenderResult Render(IG_PageRenderer* renderer, const G_RenderRequest& request, int rotation)
{
    if (request.cancelled->load())
        return {};
    G_RenderResult result = renderer->RenderPage(request);
    if (rotation != 0 && !result.image.isNull() && !request.cancelled->load())
        result.image = result.image.transformed(QTransform().rotate(rotation));
    return result;
}

} // namespace

RenderJobs::RenderJobs(IG_PageRenderer* renderer, Done done)
    : renderer(renderer)
    , done(std::move(done))
{
    pool.setMaxThreadCount(qBound(1, QThread::idealThreadCount() - 1, 4)); // the screen's thread keeps one
}

RenderJobs::~RenderJobs()
{
    CancelAllBut({});
    pool.waitForDone();
}

void RenderJobs::Start(const RenderWish& wish)
{
    const auto earlier = jobs.constFind(wish.page);
    if (earlier != jobs.constEnd()) {
        if (earlier.value()->wish == wish)
            return;
        Cancel(wish.page);
    }
    const auto job = std::make_shared<Job>();
    job->wish = wish;
    jobs.insert(wish.page, job);

    G_RenderRequest request;
    request.pageIndex = wish.page;
    request.pixelsPerMm = wish.pixelsPerMm;
    const bool isWhole = wish.region == QRect(QPoint(0, 0), wish.whole);
    request.region = isWhole ? QRect() : Unturned(wish.region, wish.whole, wish.rotation);
    request.ignoredTemplates = wish.ignoredTemplates;
    request.withAnnotations = wish.withAnnotations;
    request.cancelled = job->cancelled;
    const std::weak_ptr<Job> known = job;
    connect(&job->watcher, &QFutureWatcherBase::finished, this, [this, known, page = wish.page] {
        if (const std::shared_ptr<Job> finished = known.lock())
            Deliver(page, finished);
    });
    job->watcher.setFuture(QtConcurrent::run(&pool, Render, renderer, request, wish.rotation));
}

void RenderJobs::Deliver(int page, const std::shared_ptr<Job>& job)
{
    if (jobs.value(page) != job)
        return; // given up meanwhile
    jobs.remove(page);
    // Kept for another turn: this may run inside a signal of the job's own watcher.
    QMetaObject::invokeMethod(
        this, [job] {}, Qt::QueuedConnection);
    done(job->wish, job->watcher.result());
}

void RenderJobs::Cancel(int page)
{
    const std::shared_ptr<Job> job = jobs.take(page);
    if (job)
        *job->cancelled = true;
}

void RenderJobs::CancelAllBut(const QSet<int>& pages)
{
    const QList<int> running = jobs.keys();
    for (const int page : running) {
        if (!pages.contains(page))
            Cancel(page);
    }
}

void RenderJobs::Finish()
{
    pool.waitForDone();
    const QHash<int, std::shared_ptr<Job>> finished = jobs;
    for (auto it = finished.cbegin(); it != finished.cend(); ++it)
        Deliver(it.key(), it.value());
}
