#include "picture_budget.h"

#include "page_tiles.h"

#include <atomic>

namespace {

constexpr qint64 kOrdinaryLimit = 192LL * 1024 * 1024;
constexpr qint64 kBytesOfPixel = 4;
constexpr qint64 kWindowsInLimit = 8; // what is seen, what lies around it, and what is being painted of both
// Pieces are painted whole, however little of them is seen; while it is painted each counts three times.
constexpr qint64 kPiecesInLimit = 6;

std::atomic<qint64> limit{kOrdinaryLimit};
std::atomic<qint64> taken{0};
std::atomic<qint64> peak{0};

void Take(qint64 bytes)
{
    const qint64 now = taken += bytes;
    qint64 most = peak;
    while (now > most && !peak.compare_exchange_weak(most, now))
        continue;
}

} // namespace

PictureBudget::Hold::Hold(qint64 bytes)
    : bytes(bytes)
{
    Take(bytes);
}

PictureBudget::Hold::~Hold()
{
    taken -= bytes;
}

void PictureBudget::Hold::ShrinkTo(qint64 newBytes)
{
    if (newBytes >= bytes)
        return;
    taken -= bytes - newBytes;
    bytes = newBytes;
}

qint64 PictureBudget::Bytes()
{
    return taken;
}

qint64 PictureBudget::Limit()
{
    return limit;
}

void PictureBudget::MakeFitFor(qint64 windowPixels)
{
    const qint64 pixels = windowPixels * kWindowsInLimit + PageTiles::mostWholePixels * kPiecesInLimit;
    limit = qMax(limit.load(), pixels * kBytesOfPixel);
}

void PictureBudget::SetLimit(qint64 bytes)
{
    limit = bytes;
}

qint64 PictureBudget::PeakBytes()
{
    return peak;
}

void PictureBudget::ResetPeak()
{
    peak = taken.load();
}
