#pragma once

#include <QString>

namespace ofd {

class Package;

// The part that a reference of a signature, or of a list of them, leads to; `holder` is the part that says it. Empty
// when there is no reference or no such part.
QString SignaturePart(const Package& package, const QString& reference, const QString& holder,
                      const QString& documentFolder);

} // namespace ofd
