#pragma once

#include <ofd/package/limits.h>

#include <QtGlobal>

#include <algorithm>
#include <atomic>

namespace ofd {

// What the embedded fonts of one document may still ask for in all, beyond what the glyphs of ordinary fonts do.
// Counted in points of outlines. Any thread.
class GlyphBudget
{
public:
    // A glyph of so many points, or what takes as long.
    void Take(qint64 points) { left -= std::max<qint64>(0, points - limits::FreeGlyphPoints); }
    // For a font of so many bytes in the file.
    void Grant(qint64 packedBytes) { left += packedBytes * limits::HeavyGlyphPointsPerByte; }
    bool IsSpent() const { return left < 0; }

private:
    std::atomic<qint64> left{limits::MaxHeavyGlyphPoints};
};

} // namespace ofd
