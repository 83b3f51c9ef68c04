#include "geometry_reader.h"

#include "path_data.h"

#include <ofd/model/problem_log.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_values.h>

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <optional>
#include <string>

namespace ofd {

namespace {

// The first six numbers; nothing when one of them is none.
std::optional<std::array<double, 6>> SixNumbers(std::string text)
{
    std::replace(text.begin(), text.end(), ',', ' ');
    const std::vector<std::string_view> words = SplitWords(text);
    std::array<double, 6> numbers{};
    if (words.size() < numbers.size())
        return std::nullopt;
    for (size_t i = 0; i < numbers.size(); ++i) {
        const std::optional<double> number = ParseNumber(words[i]);
        if (!number)
            return std::nullopt;
        numbers[i] = *number;
    }
    return numbers;
}

} // namespace

QTransform MatrixAttribute(const pugi::xml_node& element, bool* isGiven)
{
    const pugi::xml_attribute attribute = Attribute(element, "CTM");
    const std::optional<std::array<double, 6>> m = attribute ? SixNumbers(attribute.value()) : std::nullopt;
    if (isGiven)
        *isGiven = m.has_value();
    if (attribute && !m)
        ReportProblem(ProblemKind::BadValue,
                      QCoreApplication::translate("OfdDocument", "A transform needs six numbers."));
    return m ? QTransform((*m)[0], (*m)[1], (*m)[2], (*m)[3], (*m)[4], (*m)[5]) : QTransform();
}

QTransform MoveTo(const QRectF& boundary)
{
    return QTransform::fromTranslate(boundary.x(), boundary.y());
}

QPainterPath ReadPath(const pugi::xml_node& element)
{
    QPainterPath path = ParsePathData(ElementText(ChildElement(element, "AbbreviatedData")).toStdString());
    const bool isEvenOdd = EqualsWord(Attribute(element, "Rule").as_string(), "Even-Odd");
    path.setFillRule(isEvenOdd ? Qt::OddEvenFill : Qt::WindingFill);
    return path;
}

} // namespace ofd
