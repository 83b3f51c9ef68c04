#pragma once

#include <QByteArray>
#include <QSet>

#include <utility>
#include <vector>

namespace ofd {

// Prefix (empty for the default) and address of each namespace that a start tag declares; addresses are raw bytes.
std::vector<std::pair<QByteArray, QByteArray>> DeclarationsIn(const QByteArray& startTag);
// What declares namespaces in a start tag, as it stands behind the name: ' xmlns:a="b"'. Odd prefixes stay odd.
QByteArray DeclarationTextIn(const QByteArray& startTag);
// Prefixes of all elements and attributes in a piece of XML, the default one of elements as an empty text.
QSet<QByteArray> PrefixesIn(const QByteArray& xml);

} // namespace ofd
