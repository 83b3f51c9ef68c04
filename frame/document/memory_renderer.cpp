#include "memory_renderer.h"

#include <frame/base/converters.h>

#include <QGuiApplication>
#include <QPainter>

#include <cmath>
#include <utility>

namespace {

// More pixels than any screen shows are a mistake of the asker, not a wish.
constexpr qint64 largestImagePixels = 200LL * 1000 * 1000;

bool IsCancelled(const G_RenderRequest& request)
{
    return request.cancelled && *request.cancelled;
}

void DrawTexts(QPainter* painter, const MemorySheet& sheet, double pixelsPerMm)
{
    QFont font;
    font.setPixelSize(qMax(1, qRound(memoryGlyphHeightMm * 0.75 * pixelsPerMm)));
    painter->setFont(font);
    painter->setPen(Qt::black);
    for (const MemoryText& text : sheet.texts) {
        const CCA_GRect box = text.Box();
        const QRectF area(box.left * pixelsPerMm, box.top * pixelsPerMm, box.Width() * pixelsPerMm,
                          box.Height() * pixelsPerMm);
        painter->drawText(area, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip, text.text);
    }
    const QRectF foot(0, (sheet.sizeMm.height() - 8) * pixelsPerMm, sheet.sizeMm.width() * pixelsPerMm,
                      8 * pixelsPerMm);
    painter->setPen(Qt::gray);
    painter->drawText(foot, Qt::AlignCenter, sheet.templateNames.join(QLatin1Char(' ')));
}

void DrawAnnots(QPainter* painter, const MemorySheet& sheet, double pixelsPerMm)
{
    painter->setPen(QPen(QColor(200, 120, 0), 0.4 * pixelsPerMm));
    painter->setBrush(QColor(255, 220, 0, 64));
    for (const CCA_GRect& box : sheet.annotBoxes)
        painter->drawRect(QRectF(box.left * pixelsPerMm, box.top * pixelsPerMm, box.Width() * pixelsPerMm,
                                 box.Height() * pixelsPerMm));
}

QImage BlankImage(const QSize& size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    return image;
}

} // namespace

MemoryRenderer::MemoryRenderer(SheetSource source)
    : source(std::move(source))
{
}

G_RenderResult MemoryRenderer::RenderPage(const G_RenderRequest& request)
{
    G_RenderResult result;
    if (IsCancelled(request))
        return result;
    MemorySheet sheet;
    const bool exists = source(request, &sheet);
    if (!exists)
        result.error = QStringLiteral("There is no page %1").arg(request.pageIndex + 1);
    const double scale = request.pixelsPerMm;
    const double widthPx = std::ceil(sheet.sizeMm.width() * scale);
    const double heightPx = std::ceil(sheet.sizeMm.height() * scale);
    const bool isWhole = request.region.isEmpty();
    const double wantedPixels = isWhole ? widthPx * heightPx : double(request.region.width()) * request.region.height();
    if (!(scale > 0 && std::isfinite(scale) && wantedPixels <= largestImagePixels)) {
        result.error = QStringLiteral("The wanted picture has an impossible size");
        result.image = BlankImage(QSize(1, 1));
        return result;
    }
    const QRect region = isWhole ? QRect(0, 0, int(widthPx), int(heightPx)) : request.region;
    result.image = BlankImage(region.size());
    if (!exists)
        return result;
    QPainter painter(&result.image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(-region.topLeft());
    if (qobject_cast<QGuiApplication*>(QCoreApplication::instance())) // fonts need one
        DrawTexts(&painter, sheet, scale);
    DrawAnnots(&painter, sheet, scale);
    painter.end();
    return IsCancelled(request) ? G_RenderResult() : result;
}
