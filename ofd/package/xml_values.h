#pragma once

#include <QPointF>
#include <QRectF>
#include <QString>
#include <QVector>

#include <optional>
#include <string_view>

#include <pugixml.hpp>

namespace ofd {

// Values of attributes and texts. Independent of the locale; white space around a value is ignored. A value that is no
// number, is not finite or lies beyond the limit is none at all, so that the caller's default takes its place.
std::optional<double> ParseNumber(std::string_view text);
std::optional<int> ParseInteger(std::string_view text);
// An identifier: 0 means "none" and is returned as such.
std::optional<quint32> ParseId(std::string_view text);
// true, false, 1 or 0 in any letter case.
std::optional<bool> ParseBoolean(std::string_view text);
// "x y"
std::optional<QPointF> ParsePosition(std::string_view text);
// "x y width height"; width and height may be negative.
std::optional<QRectF> ParseBox(std::string_view text);
// Numbers between blanks or commas; items that are no numbers become 0 so that places are kept, and `isAllRead`, which
// may be null, becomes false. Nothing when it is too long.
std::optional<QVector<double>> ParseArray(std::string_view text, bool* isAllRead = nullptr);
// Words between blanks.
std::vector<std::string_view> SplitWords(std::string_view text);
// Whether the texts are equal without case and surrounding white space, as enumerated values are compared.
bool EqualsWord(std::string_view text, std::string_view word);

// The same straight from an attribute; the default when it is missing, or bad, which is reported as a problem.
double NumberAttribute(const pugi::xml_node& node, std::string_view localName, double missing = 0);
int IntegerAttribute(const pugi::xml_node& node, std::string_view localName, int missing = 0);
quint32 IdAttribute(const pugi::xml_node& node, std::string_view localName, quint32 missing = 0);
// The attribute ID, to say where something stands: one that cannot be read is 0 here and is told by who needs it.
int IdForPlace(const pugi::xml_node& node);
bool BooleanAttribute(const pugi::xml_node& node, std::string_view localName, bool missing);
std::optional<QRectF> BoxAttribute(const pugi::xml_node& node, std::string_view localName);
std::optional<QVector<double>> ArrayAttribute(const pugi::xml_node& node, std::string_view localName);

} // namespace ofd
