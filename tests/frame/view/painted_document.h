#pragma once

#include <tests/support/screens.h>
#include <tests/support/view_fixture.h>

#include <QPainter>
#include <QThread>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <new>

// Notes what it is asked for and paints each page in a colour of its own.
class RecordingRenderer : public IG_PageRenderer
{
public:
    G_RenderResult RenderPage(const G_RenderRequest& request) override
    {
        if (isStarved)
            throw std::bad_alloc();
        std::unique_lock<std::mutex> lock(mutex);
        requests.append(request);
        wasOnMainThread = wasOnMainThread || QThread::currentThread() == qApp->thread();
        ++running;
        if (isBlocked && !partial.isNull() && request.partial)
            request.partial(partial.copy(0, 0, request.region.width(), request.region.height()));
        while (isBlocked && !(heedsGivingUp && request.cancelled && *request.cancelled))
            changed.wait_for(lock, std::chrono::milliseconds(5));
        --running;
        G_RenderResult result;
        if (request.cancelled && *request.cancelled)
            return result;
        QSize size(qRound(210 * request.pixelsPerMm), qRound(297 * request.pixelsPerMm));
        if (!request.region.isEmpty())
            size = request.region.size();
        result.image = QImage(size, QImage::Format_RGB32);
        result.image.fill(coarseColour.isValid() && request.pixelsPerMm < 10 ? coarseColour : colour);
        if (paintsPlaces) // each block of pixels has the colour of its place on the page
            PaintPlaces(&result.image, request.region.topLeft());
        if (!markMm.isEmpty()) {
            QPainter painter(&result.image);
            painter.translate(-request.region.topLeft());
            painter.scale(request.pixelsPerMm, request.pixelsPerMm);
            painter.fillRect(markMm, Qt::magenta);
        }
        largestBytes = qMax(largestBytes, qint64(result.image.sizeInBytes()));
        if (!error.isEmpty())
            result.error = error;
        return result;
    }
    QList<G_RenderRequest> Requests()
    {
        const std::lock_guard<std::mutex> lock(mutex);
        return requests;
    }
    QList<int> Pages()
    {
        QList<int> pages;
        for (const G_RenderRequest& request : Requests())
            pages.append(request.pageIndex);
        return pages;
    }
    // The last wish for that page.
    G_RenderRequest LastOf(int page)
    {
        G_RenderRequest last;
        for (const G_RenderRequest& request : Requests())
            last = request.pageIndex == page ? request : last;
        return last;
    }
    void Forget()
    {
        const std::lock_guard<std::mutex> lock(mutex);
        requests.clear();
    }
    void Block(bool blocked)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        isBlocked = blocked;
        changed.notify_all();
    }

    static QColor ColourOf(int x, int y)
    {
        return QColor(x / 8 * 37 % 256, y / 8 * 59 % 256, (x / 8 + y / 8) * 11 % 256);
    }

    QColor colour = QColor(10, 120, 30);
    QColor coarseColour; // of pictures of less than ten pixels a millimetre; invalid: they are like all others
    bool paintsPlaces = false;
    QImage partial; // told while painting is blocked
    QString error;
    QRectF markMm;                         // painted on every page, where it lies on it
    std::atomic<bool> isStarved{false};    // memory runs out whatever is painted
    std::atomic<bool> heedsGivingUp{true}; // else it ends no sooner than painting is unblocked
    std::atomic<int> running{0};
    std::atomic<bool> wasOnMainThread{false};
    qint64 largestBytes = 0;

private:
    static void PaintPlaces(QImage* image, const QPoint& from)
    {
        for (int y = 0; y < image->height(); ++y) {
            for (int x = 0; x < image->width(); ++x)
                image->setPixelColor(x, y, ColourOf(from.x() + x, from.y() + y));
        }
    }

    // Not Qt's own: the thread sanitizer does not see those.
    std::mutex mutex;
    std::condition_variable changed;
    QList<G_RenderRequest> requests;
    bool isBlocked = false;
};

class PaintedDocument : public MemoryDocument
{
public:
    explicit PaintedDocument(int pages)
    {
        for (int i = 0; i < pages; ++i)
            AddPage(210, 297);
    }
    IG_PageRenderer* Renderer() override { return &renderer; }
    RecordingRenderer renderer;
};

// A painted document in a shown view.
struct Painted
{
    explicit Painted(int pages)
        : document(pages)
        , view(std::make_unique<G_DocView>(&context, &document))
    {
        view->Widget()->resize(600, 400);
        view->Widget()->show();
        context.SetCurrentDocView(view.get());
    }
    // Lets asked-for pictures come and be painted.
    QImage Picture()
    {
        ViewFixture::Settle();
        view->FinishRendering();
        ViewFixture::Settle();
        return Screens::Grab(view->Widget());
    }
    PaintedDocument document;
    ScriptedContext context;
    std::unique_ptr<G_DocView> view;
};
