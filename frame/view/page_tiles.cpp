#include "page_tiles.h"

#include <algorithm>

bool PageTiles::IsTiled(const QSize& whole)
{
    return qint64(whole.width()) * whole.height() > mostWholePixels ||
           std::max(whole.width(), whole.height()) > longestSidePx;
}

QVector<QRect> PageTiles::Covering(const QRect& part, const QSize& whole)
{
    const QRect page(QPoint(0, 0), whole);
    const QRect seen = part & page;
    if (seen.isEmpty())
        return {};
    if (!IsTiled(whole))
        return {page};
    QVector<QRect> tiles;
    for (int y = seen.top() / tilePx; y <= seen.bottom() / tilePx; ++y) {
        for (int x = seen.left() / tilePx; x <= seen.right() / tilePx; ++x)
            tiles.append(QRect(x * tilePx, y * tilePx, tilePx, tilePx) & page);
    }
    const QPoint middle = seen.center();
    const auto distance = [middle](const QRect& tile) { return (tile.center() - middle).manhattanLength(); };
    std::stable_sort(tiles.begin(), tiles.end(),
                     [&](const QRect& a, const QRect& b) { return distance(a) < distance(b); });
    return tiles;
}
