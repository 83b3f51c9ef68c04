#include "page_renderer.h"

#include "page_painter.h"
#include "painting_watch.h"
#include "painting_work.h"
#include "seal_painter.h"

#include <ofd/model/document_store.h>
#include <ofd/model/problem_log.h>
#include <ofd/package/byte_source.h>
#include <ofd/package/limits.h>
#include <ofd/package/package.h>

#include <QCoreApplication>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <new>

namespace ofd {

namespace {

// Edges of the picture are not quite exact where outlines are cut off at them, which would show where tiles meet.
constexpr int EdgePx = 8;

// Painters reach 32767 pixels; what is painted at once stays well within.
constexpr int LongestSidePx = 8192;

constexpr LayerKind PaintingOrder[] = {LayerKind::Background, LayerKind::Body, LayerKind::Foreground};

// One page being painted.
class PagePainting
{
public:
    // `picture` is what the painter paints, whose wanted part is told of while it grows; null when it is not.
    PagePainting(QPainter& painter, DocumentStore& store, PaintingWork& work, const G_RenderRequest& request,
                 const QImage* picture, const QRect& wanted)
        : painter(painter)
        , store(store)
        , work(work)
        , view(store.GetSession().GetPageView(request.pageIndex))
        , watch(request, picture, wanted)
        , content(painter, store, store.GetPackage(), work, [this] { return watch.IsCancelled(); })
        , isForPaper(request.isForPaper)
    {
        view.hiddenTemplates += request.ignoredTemplates;
    }

    static bool IsCancelled(const G_RenderRequest& request)
    {
        return request.cancelled && request.cancelled->load(std::memory_order_relaxed);
    }

    // False when it was cancelled.
    bool PaintPage(const PageContent& page)
    {
        for (const LayerKind kind : PaintingOrder) {
            if (!PaintTemplates(page, kind) || !PaintLayers(page, kind, true))
                return false;
        }
        return true;
    }

    bool PaintAnnotations(const PageAnnotations& page)
    {
        for (int i = 0; i < int(page.annotations.size()); ++i) {
            const AnnotationRecord& annotation = page.annotations[size_t(i)];
            if (!annotation.isVisible || view.hiddenAnnotations.contains(i))
                continue;
            if (isForPaper && !annotation.isPrinted)
                continue;
            const ProblemScope scope(annotation.part);
            painter.save();
            painter.translate(annotation.origin);
            const bool isDone = content.PaintObjects(annotation.objects, *page.resources);
            painter.restore();
            if (!isDone)
                return false;
        }
        return true;
    }

    // Above everything else, whether or not annotations are shown: a seal is part of what was signed.
    bool PaintSealsOf(const G_RenderRequest& request)
    {
        const auto paintDocument = [this, &request](QPainter& onto, DocumentStore& document) {
            G_RenderRequest first;
            first.cancelled = request.cancelled;
            const ProblemScope scope(document.GetProblems(), document.GetStructure().pages.value(0).part);
            PagePainting painting(onto, document, work, first, nullptr, QRect());
            painting.content.CountOnPageOf(content);
            return painting.PaintPage(*document.GetPageContent(0).content) &&
                   painting.PaintAnnotations(*document.GetPageAnnotations(0));
        };
        return PaintSeals(painter, store, request.pageIndex, work, paintDocument,
                          [&request] { return IsCancelled(request); });
    }

private:
    bool PaintTemplates(const PageContent& page, LayerKind kind)
    {
        for (const TemplateRef& reference : page.templates) {
            if (store.GetTemplateKind(reference.id, reference.zOrder) != kind)
                continue;
            if (view.hiddenTemplates.contains(reference.id))
                continue;
            if (openTemplates.contains(reference.id) || openTemplates.size() >= limits::MaxReferenceDepth) {
                ReportProblem(ProblemKind::Cycle,
                              QCoreApplication::translate("OfdDocument", "The template %1 contains itself.")
                                  .arg(quint32(reference.id)));
                continue;
            }
            if (++templateCount > limits::MaxTemplatesOnPage) {
                ReportProblem(ProblemKind::Limit,
                              QCoreApplication::translate("OfdDocument", "The page uses too many templates."));
                return true;
            }
            const ProblemScope scope(TemplatePart(reference.id));
            openTemplates.append(reference.id);
            const bool isDone = PaintTemplate(*store.GetTemplateContent(reference.id));
            openTemplates.removeLast();
            if (!isDone)
                return false;
        }
        return true;
    }

    QString TemplatePart(int id) const
    {
        const DocumentStructure& structure = store.GetStructure();
        const int position = structure.templateById.value(id, -1);
        if (position < 0)
            ReportProblem(ProblemKind::DanglingReference,
                          QCoreApplication::translate("OfdDocument", "There is no template %1.").arg(quint32(id)));
        return position < 0 ? QString() : structure.templates.at(position).part;
    }

    bool PaintTemplate(const PageContent& page)
    {
        for (const LayerKind kind : PaintingOrder) {
            if (!PaintTemplates(page, kind) || !PaintLayers(page, kind, false))
                return false;
        }
        return true;
    }

    // Layers of the page itself can be hidden, those of templates only with their template.
    bool PaintLayers(const PageContent& page, LayerKind kind, bool canBeHidden)
    {
        for (int i = 0; i < int(page.layers.size()); ++i) {
            const Layer& layer = page.layers[size_t(i)];
            if (layer.kind != kind || (canBeHidden && view.hiddenLayers.contains(i)))
                continue;
            if (!content.PaintObjects(layer.objects, *page.resources))
                return false;
        }
        return true;
    }

    QPainter& painter;
    DocumentStore& store;
    PaintingWork& work;
    SessionState::PageView view;
    PaintingWatch watch;
    ContentPainter content;
    const bool isForPaper;
    QVector<int> openTemplates; // being painted, against cycles
    int templateCount = 0;      // painted so far
};

QString NoMemory()
{
    return QCoreApplication::translate("OfdDocument", "There is not enough memory to paint the page.");
}

} // namespace

OfdPageRenderer::OfdPageRenderer(std::shared_ptr<DocumentStore> store)
    : store(std::move(store))
{
}

OfdPageRenderer::~OfdPageRenderer() = default;

QSizeF OfdPageRenderer::PageSizeMm(int pageIndex)
{
    return store->GetPageSize(pageIndex);
}

// What painting took is free again when it fails, so that there is room for the empty sheet.
G_RenderResult OfdPageRenderer::RenderPage(const G_RenderRequest& request)
{
    try {
        return Paint(request);
    } catch (const std::bad_alloc&) {
        return EmptySheet(request);
    }
}

G_RenderResult OfdPageRenderer::EmptySheet(const G_RenderRequest& request)
{
    G_RenderResult result;
    result.error = NoMemory();
    try {
        const QRectF pageRect(QPointF(), store->GetPageSize(request.pageIndex) * request.pixelsPerMm);
        const QRect region = request.region.isEmpty() ? pageRect.toAlignedRect() : request.region;
        result.image = QImage(region.size(), QImage::Format_RGB32);
        result.image.fill(Qt::white);
    } catch (const std::bad_alloc&) { // then there is the error alone
    }
    return result;
}

G_RenderResult OfdPageRenderer::Paint(const G_RenderRequest& request)
{
    G_RenderResult result;
    if (PagePainting::IsCancelled(request))
        return result;
    const ProblemScope scope(store->GetProblems(), store->GetStructure().pages.value(request.pageIndex).part);
    const QSizeF sizeMm = store->GetPageSize(request.pageIndex);
    const QRectF pageRect(QPointF(), sizeMm * request.pixelsPerMm);
    const bool isPart = !request.region.isEmpty() && !request.region.contains(pageRect.toRect());
    const QRect region = request.region.isEmpty() ? pageRect.toAlignedRect() : request.region;
    if (qint64(region.width()) * region.height() > limits::MaxImagePixels) {
        result.error = QCoreApplication::translate("OfdDocument", "The page is too large to be painted.");
        return result;
    }
    if (std::max(region.width(), region.height()) > LongestSidePx)
        return PaintInPieces(request, region);
    const QRect painted = isPart ? region.adjusted(-EdgePx, -EdgePx, EdgePx, EdgePx) : region;
    const QRect wanted(region.topLeft() - painted.topLeft(), region.size());
    QImage image(painted.size(), QImage::Format_RGB32);
    if (image.isNull()) {
        result.error = NoMemory();
        return result;
    }
    image.fill(Qt::white);
    const ContentResult page = store->GetPageContent(request.pageIndex);
    result.error = page.error;
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.translate(-painted.topLeft());
    painter.scale(request.pixelsPerMm, request.pixelsPerMm);
    PaintingWork work(sizeMm, store->GetPackage()->GetSource().GetSize());
    PagePainting painting(painter, *store, work, request, &image, wanted);
    bool isDone = painting.PaintPage(*page.content);
    if (isDone && request.withAnnotations)
        isDone = painting.PaintAnnotations(*store->GetPageAnnotations(request.pageIndex));
    isDone = isDone && painting.PaintSealsOf(request);
    painter.end();
    if (isDone)
        result.image = isPart ? image.copy(wanted) : image;
    return result;
}

// Very long pictures, of which a painter reaches the beginning alone.
G_RenderResult OfdPageRenderer::PaintInPieces(const G_RenderRequest& request, const QRect& region)
{
    G_RenderResult result;
    QImage image(region.size(), QImage::Format_RGB32);
    if (image.isNull()) {
        result.error = NoMemory();
        return result;
    }
    for (int top = 0; top < image.height(); top += LongestSidePx) {
        for (int left = 0; left < image.width(); left += LongestSidePx) {
            const QRect place = QRect(left, top, LongestSidePx, LongestSidePx) & image.rect();
            G_RenderRequest part = request;
            part.region = place.translated(region.topLeft());
            part.partial = nullptr;
            const G_RenderResult piece = Paint(part);
            if (!piece.error.isEmpty() && result.error.isEmpty())
                result.error = piece.error;
            if (piece.image.isNull())
                return {QImage(), result.error};
            for (int y = 0; y < place.height(); ++y)
                std::copy_n(reinterpret_cast<const QRgb*>(piece.image.constScanLine(y)), place.width(),
                            reinterpret_cast<QRgb*>(image.scanLine(top + y)) + left);
        }
    }
    result.image = image;
    return result;
}

} // namespace ofd
