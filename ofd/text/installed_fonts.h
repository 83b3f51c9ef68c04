#pragma once

#include "font_face.h"

#include <QString>
#include <QStringList>

#include <memory>

namespace ofd {

struct InstalledFont
{
    std::shared_ptr<const FontFace> face; // null when none fits
    QString family;
    bool isBold = false;
    bool isItalic = false;
};

// The installed face of exactly that family (any of its names) that is nearest to the style. Weights are the usual
// numbers from 100 to 900. Any thread.
InstalledFont FindInstalledFont(const QString& family, int weight, bool wantsItalic);
// Any installed face that has the character, the listed families first.
InstalledFont FindInstalledFontFor(uint code, const QStringList& families, int weight);

} // namespace ofd
