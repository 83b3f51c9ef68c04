#pragma once

#include <frame/base/export.h>

#include <QString>

namespace Utils {

// The screen's scale. Sizes in code are in logical units at 96 DPI and multiplied by it.
class FRAME_EXPORT OVDpi
{
public:
    static OVDpi* Instance(); // never null; main thread only
    // Logical DPI of the primary screen divided by 96, at least 1.
    float DpiScale() const;
    float ScaleSize(float size) const { return size * DpiScale(); }
    // The style sheet with the number of each "NNpx" multiplied and rounded.
    QString ScaleStyleSheet(const QString& styleSheet) const;
    // Fixes the scale, for tests and the command line; 0 goes back to the screen's.
    void OverrideScale(float scale);

private:
    OVDpi() = default;
    float overridden = 0;
};

namespace DPI {
// The style sheet scaled by OVDpi's instance.
class FRAME_EXPORT OV_Util
{
public:
    static QString ScaleStyleSheet(const QString& styleSheet);
};
} // namespace DPI

} // namespace Utils
