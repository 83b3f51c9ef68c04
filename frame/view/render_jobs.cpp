#include "render_jobs.h"

#include <QCoreApplication>
#include <QThread>
#include <QtConcurrent>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <new>
#include <utility>

namespace {

// What is painted so far, on its way to the main thread.
class PartialSlot
{
public:
    // False when one was there already: who was told of that one takes this one.
    bool Fill(const QImage& newer)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        const bool wasEmpty = image.isNull();
        image = newer;
        return wasEmpty;
    }
    QImage Take()
    {
        const std::lock_guard<std::mutex> lock(mutex);
        return std::exchange(image, QImage());
    }

private:
    std::mutex mutex; // not Qt's own: the thread sanitizer does not see those
    QImage image;
};

} // namespace

// Dies on the main thread: the painting one knows the shared parts alone.
struct RenderJobs::Job
{
    RenderWish wish;
    std::shared_ptr<std::atomic<bool>> cancelled = std::make_shared<std::atomic<bool>>(false);
    std::shared_ptr<PartialSlot> partial = std::make_shared<PartialSlot>();
    std::shared_ptr<PictureBudget::Hold> hold;
    QFutureWatcher<G_RenderResult> watcher;
};

namespace {

// The picture, the copy that is on its way while it is being painted, and the one that is shown meanwhile. A picture
// that is turned is there twice at the end.
constexpr qint64 kCopiesOfPicture = 3;
constexpr qint64 kBytesOfPixel = 4;
constexpr int kMostThreads = 4;

qint64 BytesOf(const QRect& region)
{
    return qint64(region.width()) * region.height() * kBytesOfPixel;
}

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

QImage Turned(const QImage& image, int rotation)
{
    return rotation == 0 || image.isNull() ? image : image.transformed(QTransform().rotate(rotation));
}

std::atomic<int> worksUnderWay{0}; // of all views, those included that were given up and have not ended yet

G_RenderResult Render(IG_PageRenderer* renderer, const G_RenderRequest& request, int rotation)
{
    if (request.cancelled->load())
        return {};
    G_RenderResult result;
    try {
        result = renderer->RenderPage(request);
        if (request.cancelled->load())
            return {};
        result.image = Turned(result.image, rotation);
    } catch (const std::bad_alloc&) { // which would end the program on this thread
        result.image = QImage();
        result.error = QCoreApplication::translate("G_DocView", "There is not enough memory to paint the page.");
    }
    return result;
}

} // namespace

RenderJobs::RenderJobs(IG_PageRenderer* renderer, Done done)
    : renderer(renderer)
    , done(std::move(done))
{
    pool.setMaxThreadCount(qBound(1, QThread::idealThreadCount() - 1, kMostThreads)); // the screen's thread keeps one
}

RenderJobs::~RenderJobs()
{
    KeepOnly({});
    pool.waitForDone();
}

bool RenderJobs::Start(const RenderWish& wish)
{
    const auto isSame = [&wish](const JobRef& job) { return job->wish == wish; };
    if (std::any_of(jobs.cbegin(), jobs.cend(), isSame))
        return true;
    const qint64 bytes = BytesOf(wish.region) * kCopiesOfPicture;
    if (jobs.size() >= pool.maxThreadCount() || !PageCache::MakeRoom(bytes))
        return false;
    const auto job = std::make_shared<Job>();
    job->wish = wish;
    job->hold = std::make_shared<PictureBudget::Hold>(bytes);
    jobs.append(job);
    const std::weak_ptr<Job> known = job;
    connect(&job->watcher, &QFutureWatcherBase::finished, this, [this, known] {
        if (const JobRef finished = known.lock())
            Deliver(finished);
    });
    ++worksUnderWay;
    // The hold is let go no sooner than the work ends, also when nobody waits for the result any more; and it is let go
    // before the work counts as ended, so that who finds none under way finds their room free.
    job->watcher.setFuture(QtConcurrent::run(&pool, [renderer = renderer, request = RequestOf(job),
                                                     rotation = wish.look.rotation, hold = job->hold]() mutable {
        G_RenderResult result = Render(renderer, request, rotation);
        hold.reset();
        --worksUnderWay;
        return result;
    }));
    return true;
}

bool RenderJobs::IsAnyUnderWay()
{
    return worksUnderWay > 0;
}

G_RenderRequest RenderJobs::RequestOf(const JobRef& job)
{
    const RenderWish& wish = job->wish;
    const int rotation = wish.look.rotation;
    G_RenderRequest request;
    request.pageIndex = wish.page;
    request.pixelsPerMm = wish.look.pixelsPerMm;
    request.region = Unturned(wish.region, wish.look.whole, rotation);
    request.ignoredTemplates = wish.look.ignoredTemplates;
    request.withAnnotations = wish.look.withAnnotations;
    request.cancelled = job->cancelled;
    request.partial = [this, known = std::weak_ptr<Job>(job), slot = job->partial, cancelled = job->cancelled,
                       rotation](const QImage& soFar) {
        if (cancelled->load() || !slot->Fill(Turned(soFar.copy(), rotation)))
            return;
        QMetaObject::invokeMethod(
            this,
            [this, known] {
                if (const JobRef told = known.lock())
                    DeliverPartial(told);
            },
            Qt::QueuedConnection);
    };
    return request;
}

void RenderJobs::DeliverPartial(const JobRef& job)
{
    RenderOutcome outcome;
    outcome.result.image = job->partial->Take();
    if (!jobs.contains(job) || outcome.result.image.isNull())
        return; // given up, or finished meanwhile
    outcome.hold = job->hold;
    outcome.isPartial = true;
    done(job->wish, outcome);
}

void RenderJobs::Deliver(const JobRef& job)
{
    if (!jobs.removeOne(job))
        return; // given up meanwhile
    // Kept for another turn: this may run inside a signal of the job's own watcher.
    QMetaObject::invokeMethod(
        this, [job] {}, Qt::QueuedConnection);
    RenderOutcome outcome;
    outcome.result = job->watcher.result();
    job->partial->Take();
    job->hold->ShrinkTo(outcome.result.image.sizeInBytes());
    outcome.hold = std::move(job->hold);
    done(job->wish, outcome);
}

void RenderJobs::CancelIf(const std::function<bool(const RenderWish&)>& isGivenUp)
{
    const QVector<JobRef> running = jobs;
    for (const JobRef& job : running) {
        if (!isGivenUp(job->wish))
            continue;
        *job->cancelled = true;
        jobs.removeOne(job);
    }
}

void RenderJobs::KeepOnly(const QVector<RenderWish>& wishes)
{
    CancelIf([&wishes](const RenderWish& wish) { return !wishes.contains(wish); });
}

void RenderJobs::CancelPage(int page)
{
    CancelIf([page](const RenderWish& wish) { return wish.page == page; });
}

void RenderJobs::Finish()
{
    pool.waitForDone();
    const QVector<JobRef> finished = jobs;
    for (const JobRef& job : finished)
        Deliver(job);
}
