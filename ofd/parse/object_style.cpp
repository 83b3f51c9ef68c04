#include "object_style.h"

#include "color_reader.h"

#include <ofd/model/problem_log.h>
#include <ofd/model/resources.h>
#include <ofd/package/limits.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_values.h>

#include <QCoreApplication>

#include <cmath>
#include <utility>

namespace ofd {

namespace {

void TellOfValue(const pugi::xml_attribute& attribute)
{
    ReportProblem(ProblemKind::BadValue, QCoreApplication::translate("OfdDocument", "%1=\"%2\" cannot be read.")
                                             .arg(QString::fromUtf8(attribute.name()))
                                             .arg(QString::fromUtf8(attribute.value()).left(40)));
}

// Nothing, and reported, when it is no number; nothing too when it is missing.
std::optional<double> OptionalNumber(const pugi::xml_node& element, const char* name)
{
    const pugi::xml_attribute attribute = Attribute(element, name);
    const std::optional<double> number = ParseNumber(attribute.as_string());
    if (attribute && !number)
        TellOfValue(attribute);
    return number;
}

// The same for words of which each stands for a value.
template <typename T, size_t count>
std::optional<T> OptionalWord(const pugi::xml_node& element, const char* name,
                              const std::pair<const char*, T> (&words)[count])
{
    const pugi::xml_attribute attribute = Attribute(element, name);
    if (!attribute)
        return std::nullopt;
    for (const auto& [word, value] : words) {
        if (EqualsWord(attribute.value(), word))
            return value;
    }
    TellOfValue(attribute);
    return std::nullopt;
}

constexpr std::pair<const char*, Qt::PenCapStyle> Caps[] = {
    {"Butt", Qt::FlatCap}, {"Round", Qt::RoundCap}, {"Square", Qt::SquareCap}};
constexpr std::pair<const char*, Qt::PenJoinStyle> Joins[] = {
    {"Miter", Qt::SvgMiterJoin}, {"Round", Qt::RoundJoin}, {"Bevel", Qt::BevelJoin}};

// Lengths of dashes and gaps; empty, a solid line, when they could not be drawn.
QVector<double> UsableDashes(const QVector<double>& dashes)
{
    double sum = 0;
    for (const double dash : dashes) {
        if (dash < 0) {
            ReportProblem(ProblemKind::BadValue,
                          QCoreApplication::translate("OfdDocument", "A dash is shorter than nothing."));
            return {};
        }
        sum += dash;
    }
    if (sum <= 0 || dashes.size() > limits::MaxDashes)
        return {};
    return dashes.size() % 2 ? dashes + dashes : dashes;
}

void TellOfDrawParam(ProblemKind kind, const char* text, int id)
{
    ReportProblem(kind, QCoreApplication::translate("OfdDocument", text).arg(quint32(id)));
}

} // namespace

void StyleChain::Append(int drawParamId)
{
    for (int depth = 0; drawParamId && depth < limits::MaxReferenceDepth; ++depth) {
        const DrawParam* param = resources.FindDrawParam(drawParamId);
        if (!param) {
            TellOfDrawParam(ProblemKind::DanglingReference,
                            QT_TRANSLATE_NOOP("OfdDocument", "There is no draw parameter %1."), drawParamId);
            return;
        }
        if (params.contains(param)) {
            if (depth > 0) // else the layer has the one that the object names too
                TellOfDrawParam(ProblemKind::Cycle,
                                QT_TRANSLATE_NOOP("OfdDocument", "The draw parameter %1 is relative to itself."),
                                drawParamId);
            return;
        }
        params.append(param);
        drawParamId = param->relative;
    }
    if (drawParamId)
        TellOfDrawParam(ProblemKind::Limit,
                        QT_TRANSLATE_NOOP("OfdDocument", "What the draw parameter %1 is relative to is not followed."),
                        drawParamId);
}

template <typename T>
T StyleChain::Inherited(std::optional<T> DrawParam::*member, const T& missing) const
{
    for (const DrawParam* param : params) {
        if (param->*member)
            return *(param->*member);
    }
    return missing;
}

StrokeStyle StyleChain::ReadStroke(const pugi::xml_node& object) const
{
    const DrawParam own = ReadDrawParam(object);
    const StrokeStyle missing;
    const auto value = [&](auto member, const auto& fallback) {
        return own.*member ? *(own.*member) : Inherited(member, fallback);
    };
    StrokeStyle style;
    style.widthMm = std::abs(value(&DrawParam::lineWidth, missing.widthMm)); // negative widths occur
    style.cap = value(&DrawParam::cap, missing.cap);
    style.join = value(&DrawParam::join, missing.join);
    style.miterLimit = value(&DrawParam::miterLimit, missing.miterLimit);
    style.dashOffset = value(&DrawParam::dashOffset, missing.dashOffset);
    style.dashes = UsableDashes(value(&DrawParam::dashes, missing.dashes));
    return style;
}

Paint StyleChain::ReadFill(const pugi::xml_node& object, const QColor& missing) const
{
    const pugi::xml_node color = ChildElement(object, "FillColor");
    return color ? ReadPaint(color, resources) : Inherited(&DrawParam::fill, Paint{missing, nullptr});
}

Paint StyleChain::ReadStrokePaint(const pugi::xml_node& object, const QColor& missing) const
{
    const pugi::xml_node color = ChildElement(object, "StrokeColor");
    return color ? ReadPaint(color, resources) : Inherited(&DrawParam::stroke, Paint{missing, nullptr});
}

DrawParam ReadDrawParam(const pugi::xml_node& element)
{
    DrawParam param;
    param.lineWidth = OptionalNumber(element, "LineWidth");
    param.miterLimit = OptionalNumber(element, "MiterLimit");
    param.dashOffset = OptionalNumber(element, "DashOffset");
    param.cap = OptionalWord(element, "Cap", Caps);
    param.join = OptionalWord(element, "Join", Joins);
    param.dashes = ArrayAttribute(element, "DashPattern");
    param.relative = int(IdAttribute(element, "Relative"));
    return param;
}

void ReadDrawParamColors(const pugi::xml_node& element, const Resources& resources, DrawParam& param)
{
    if (const pugi::xml_node fill = ChildElement(element, "FillColor"))
        param.fill = ReadPaint(fill, resources);
    if (const pugi::xml_node stroke = ChildElement(element, "StrokeColor"))
        param.stroke = ReadPaint(stroke, resources);
}

ImageBorder ReadImageBorder(const pugi::xml_node& element, const Resources& resources)
{
    ImageBorder border;
    border.line.widthMm = std::abs(NumberAttribute(element, "LineWidth", border.line.widthMm));
    border.line.dashOffset = NumberAttribute(element, "DashOffset");
    border.line.dashes = UsableDashes(ArrayAttribute(element, "DashPattern").value_or(QVector<double>()));
    // The format spells the attribute without its "t"; both are read.
    const char* name =
        HasAttribute(element, "HorizonalCornerRadius") ? "HorizonalCornerRadius" : "HorizontalCornerRadius";
    border.cornerWidthMm = std::abs(NumberAttribute(element, name));
    border.cornerHeightMm = std::abs(NumberAttribute(element, "VerticalCornerRadius"));
    const pugi::xml_node color = ChildElement(element, "BorderColor");
    border.paint = color ? ReadPaint(color, resources) : Paint{Qt::black, nullptr};
    return border;
}

} // namespace ofd
