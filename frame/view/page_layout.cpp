#include "page_layout.h"

#include <algorithm>
#include <cmath>

void PageLayout::SetPages(const QVector<QSizeF>& sizesMm)
{
    sizes = sizesMm;
}

void PageLayout::Arrange(double zoomPercent, int rotationDegrees, double pixelsPerMmAt100)
{
    scale = pixelsPerMmAt100 * zoomPercent / 100;
    rotation = rotationDegrees;
    tops.resize(sizes.size());
    int widest = 0;
    int y = gapPx;
    int highest = 0; // of the row
    for (int page = 0; page < sizes.size(); ++page) {
        const QSize size = PagePixels(page, scale);
        tops[page] = y;
        widest = qMax(widest, size.width());
        highest = qMax(highest, size.height());
        if (page < RowEnd(page))
            continue;
        y += highest + gapPx;
        highest = 0;
    }
    const int across = isPaired ? 2 : 1;
    width = sizes.isEmpty() ? 0 : across * widest + (across + 1) * gapPx;
    height = sizes.isEmpty() ? 0 : y;
}

QSizeF PageLayout::TurnedSizeMm(int page) const
{
    const QSizeF size = sizes.value(page);
    return rotation == 90 || rotation == 270 ? size.transposed() : size;
}

QSize PageLayout::PagePixels(int page, double pixelsPerMm) const
{
    const QSizeF size = TurnedSizeMm(page) * pixelsPerMm;
    return {qMax(1, qRound(size.width())), qMax(1, qRound(size.height()))};
}

QRect PageLayout::PageRect(int page) const
{
    if (!IsValid(page) || tops.size() != sizes.size())
        return {};
    const QSize size = PagePixels(page, scale);
    if (!isPaired)
        return QRect(QPoint((width - size.width()) / 2, tops.at(page)), size);
    const int inner = (width - gapPx) / 2; // where left pages end
    return QRect(QPoint(page == RowStart(page) ? inner - size.width() : inner + gapPx, tops.at(page)), size);
}

int PageLayout::RowEnd(int page) const
{
    return isPaired ? qMin(RowStart(page) + 1, Count() - 1) : page;
}

QRect PageLayout::RowRect(int page) const
{
    const QRect first = PageRect(RowStart(page));
    if (!isPaired || first.isEmpty())
        return first;
    const QRect last = PageRect(RowEnd(page));
    const int half = qMax(first.width(), last.width());
    return QRect((width - gapPx) / 2 - half, first.top(), 2 * half + gapPx, qMax(first.height(), last.height()));
}

int PageLayout::BesideAt(int page, int sceneX) const
{
    return sceneX < width / 2 ? RowStart(page) : RowEnd(page);
}

QTransform PageLayout::PageMatrix(int page) const
{
    const QSizeF pixels = sizes.value(page) * scale;
    switch (rotation) {
    case 90:
        return QTransform(0, scale, -scale, 0, pixels.height(), 0);
    case 180:
        return QTransform(-scale, 0, 0, -scale, pixels.width(), pixels.height());
    case 270:
        return QTransform(0, -scale, scale, 0, 0, pixels.width());
    default:
        return QTransform(scale, 0, 0, scale, 0, 0);
    }
}

QPointF PageLayout::ToScene(const QPointF& pointMm, int page) const
{
    return PageMatrix(page).map(pointMm) + PageRect(page).topLeft();
}

QPointF PageLayout::ToPage(const QPointF& scenePoint, int page) const
{
    return PageMatrix(page).inverted().map(scenePoint - PageRect(page).topLeft());
}

int PageLayout::PageStartingAbove(int sceneY) const
{
    const auto below = std::upper_bound(tops.cbegin(), tops.cend(), sceneY);
    return qMax(0, static_cast<int>(below - tops.cbegin()) - 1);
}

int PageLayout::PageAt(const QPoint& scenePoint) const
{
    const auto below = std::upper_bound(tops.cbegin(), tops.cend(), scenePoint.y());
    const int last = static_cast<int>(below - tops.cbegin()) - 1;
    const int page = last < 0 ? -1 : BesideAt(last, scenePoint.x());
    return page >= 0 && PageRect(page).contains(scenePoint) ? page : -1;
}

int PageLayout::NearestPage(const QPoint& scenePoint) const
{
    if (sizes.isEmpty())
        return -1;
    const auto below = std::upper_bound(tops.cbegin(), tops.cend(), scenePoint.y());
    const int above = static_cast<int>(below - tops.cbegin()) - 1;
    if (above < 0)
        return BesideAt(0, scenePoint.x());
    const QRect rect = RowRect(above);
    const int next = RowEnd(above) + 1;
    const int bottom = rect.top() + rect.height();
    const bool isInGap = scenePoint.y() >= bottom;
    const bool isCloserToNext =
        isInGap && next < sizes.size() && tops.at(next) - scenePoint.y() < scenePoint.y() - bottom;
    return BesideAt(isCloserToNext ? next : above, scenePoint.x());
}

QPair<int, int> PageLayout::PagesIn(const QRect& sceneRect) const
{
    const int end = sceneRect.top() + sceneRect.height();
    int first = static_cast<int>(std::upper_bound(tops.cbegin(), tops.cend(), sceneRect.top()) - tops.cbegin()) - 1;
    first = RowStart(qMax(0, first));
    if (first < sizes.size() && RowRect(first).bottom() < sceneRect.top())
        first = RowEnd(first) + 1;
    const int last = static_cast<int>(std::lower_bound(tops.cbegin(), tops.cend(), end) - tops.cbegin()) - 1;
    return first <= last ? qMakePair(first, last) : qMakePair(0, -1);
}

int PageLayout::FillingPage(const QRect& sceneRect) const
{
    const QPair<int, int> pages = PagesIn(sceneRect);
    int best = -1;
    qint64 bestArea = 0;
    for (int page = pages.first; page <= pages.second; ++page) {
        const QRect seen = PageRect(page) & sceneRect;
        const qint64 area = qint64(seen.width()) * seen.height();
        if (area > bestArea) {
            bestArea = area;
            best = page;
        }
    }
    return best;
}
