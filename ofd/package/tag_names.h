#pragma once

#include <QString>

namespace ofd {

// Whether the text may be the name of an element or attribute, without a prefix.
bool IsXmlName(const QString& text);

// A custom tag may have any name; what XML does not allow in that of an element is written as "_xHHHH_". The empty name
// has an escape of its own, and so have names that would be taken for something else.
QString EscapeTagName(const QString& name);
QString UnescapeTagName(const QString& name);

} // namespace ofd
