#include "pattern_reader.h"

#include "content_reader.h"
#include "geometry_reader.h"

#include <ofd/model/content_weight.h>
#include <ofd/model/pattern.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_values.h>

#include <algorithm>

namespace ofd {

namespace {

constexpr qint64 HeaviestBytes = qint64(1) << 32;

} // namespace

std::shared_ptr<const Pattern> ReadPattern(const pugi::xml_node& element, const Resources& resources)
{
    auto pattern = std::make_shared<Pattern>();
    pattern->cell = QSizeF(NumberAttribute(element, "Width"), NumberAttribute(element, "Height"));
    if (pattern->cell.width() <= 0 || pattern->cell.height() <= 0)
        return nullptr;
    pattern->step = QSizeF(std::max(pattern->cell.width(), NumberAttribute(element, "XStep")),
                           std::max(pattern->cell.height(), NumberAttribute(element, "YStep")));
    const char* reflect = Attribute(element, "ReflectMethod").as_string();
    const bool flipsBoth = EqualsWord(reflect, "RowAndColumn");
    pattern->flipsColumns = flipsBoth || EqualsWord(reflect, "Column");
    pattern->flipsRows = flipsBoth || EqualsWord(reflect, "Row");
    pattern->isRelativeToPage = EqualsWord(Attribute(element, "RelativeTo").as_string(), "Page");
    pattern->matrix = MatrixAttribute(element);
    pattern->matrix.type(); // settles its lazy kind before threads share it
    pattern->objects = ReadObjects(ChildElement(element, "CellContent"), resources);
    // Patterns in patterns by way of draw parameters can weigh more than a number holds.
    pattern->bytes = std::min(WeightOf(pattern->objects), HeaviestBytes);
    return pattern;
}

} // namespace ofd
