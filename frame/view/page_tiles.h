#pragma once

#include <QRect>
#include <QVector>

// How the picture of a page is cut up: in one piece up to a size and a length, beyond that into tiles of which only
// those in view are painted. All in physical pixels of the shown page.
namespace PageTiles {

constexpr int tilePx = 1024;
constexpr qint64 mostWholePixels = 4LL * 1024 * 1024;
constexpr int longestSidePx = 8192;            // of a picture in one piece; painters reach no more than 32767
constexpr qint64 previewPixels = 512LL * 1024; // of the coarse picture that lies under the tiles

// Whether a page of this size is painted in tiles.
bool IsTiled(const QSize& whole);
// The pieces that together cover a part of the page: the whole page, or tiles, those nearest to the part's middle
// first. None for an empty part.
QVector<QRect> Covering(const QRect& part, const QSize& whole);

} // namespace PageTiles
