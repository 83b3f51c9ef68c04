#pragma once

#include <ofd/model/content.h>

#include <QSizeF>
#include <QString>
#include <QVector>

namespace ofd {

class Package;

// What a page says besides its content.
struct PageHead
{
    QSizeF areaSize; // invalid when the page has no area of its own
    QVector<TemplateRef> templates;
    bool tookWholePart = false; // all of the part was inflated for this
};

// Reads a page's own size. Only the beginning of the part is inflated when the size stands there, as it does in nearly
// all files; pages that tell it behind their content, or not at all, are inflated whole, but their content is not
// parsed. Any thread.
PageHead ReadPageHead(const Package& package, const QString& part);

// Whether a page may have resources of its own; a page that has none needs not be parsed to learn that. Inflates the
// part. Any thread.
bool HasPageResources(const Package& package, const QString& part);

} // namespace ofd
