#include "color_reader.h"

#include <ofd/model/problem_log.h>
#include <ofd/model/color_profile.h>
#include <ofd/model/resources.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_values.h>

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace ofd {

namespace {

constexpr int MaxShadingStops = 4096;
constexpr int MaxChannels = 64;

void TellOfChannel(std::string_view word)
{
    constexpr int shownLength = 40;
    ReportProblem(ProblemKind::BadValue, QCoreApplication::translate("OfdDocument", "\"%1\" is no value of a colour.")
                                             .arg(QString::fromUtf8(word.data(), int(word.size())).left(shownLength)));
}

// One channel: a decimal number, or a hexadecimal one behind '#'.
void AppendChannel(std::string_view word, QVector<double>& channels)
{
    if (word.front() != '#') {
        const std::optional<double> number = ParseNumber(word);
        if (!number)
            TellOfChannel(word);
        channels.append(number.value_or(0));
        return;
    }
    const QByteArray digits(word.data() + 1, int(word.size()) - 1);
    if (digits.size() == 6 || digits.size() == 8) { // all channels in one word
        for (int i = 0; i < digits.size(); i += 2)
            channels.append(digits.mid(i, 2).toInt(nullptr, 16));
        return;
    }
    bool isNumber = false;
    channels.append(digits.toInt(&isNumber, 16));
    if (!isNumber)
        TellOfChannel(word);
}

QVector<double> ReadChannels(const char* text)
{
    std::string value(text);
    std::replace(value.begin(), value.end(), ',', ' ');
    QVector<double> channels;
    for (const std::string_view word : SplitWords(value)) {
        if (channels.size() >= MaxChannels)
            break;
        AppendChannel(word, channels);
    }
    return channels;
}

// The named colour space, the document's default one, or what the number of values suggests.
ColorSpace SpaceFor(const pugi::xml_node& color, const Resources& resources, int channelCount)
{
    const int id = int(IdAttribute(color, "ColorSpace"));
    if (const ColorSpace* space = resources.FindColorSpace(id ? id : resources.defaultColorSpace))
        return *space;
    if (id)
        ReportProblem(ProblemKind::DanglingReference,
                      QCoreApplication::translate("OfdDocument", "There is no colour space %1.").arg(id));
    ColorSpace guess;
    if (channelCount == 1)
        guess.kind = ColorSpace::Kind::Gray;
    else if (channelCount == 4)
        guess.kind = ColorSpace::Kind::Cmyk;
    return guess;
}

QColor ReadColor(const pugi::xml_node& color, const Resources& resources)
{
    const pugi::xml_attribute value = Attribute(color, "Value");
    QVector<double> channels = ReadChannels(value.as_string());
    const ColorSpace space = SpaceFor(color, resources, channels.size());
    if (!value && HasAttribute(color, "Index"))
        channels = space.palette.value(IntegerAttribute(color, "Index", -1));
    QColor result = ColorFromChannels(channels, space);
    result.setAlpha(std::clamp(IntegerAttribute(color, "Alpha", 255), 0, 255));
    return result;
}

void ReadStops(const pugi::xml_node& element, const Resources& resources, Shading& shading)
{
    std::vector<pugi::xml_node> segments = ChildElements(element, "Segment");
    if (segments.size() > MaxShadingStops)
        segments.resize(MaxShadingStops);
    const int last = int(segments.size()) - 1;
    for (int i = 0; i <= last; ++i) {
        const double even = last > 0 ? double(i) / last : 0;
        const double position = std::clamp(NumberAttribute(segments[i], "Position", even), 0.0, 1.0);
        shading.stops.append({position, ReadColor(ChildElement(segments[i], "Color"), resources)});
    }
    std::stable_sort(shading.stops.begin(), shading.stops.end(),
                     [](const Shading::Stop& a, const Shading::Stop& b) { return a.position < b.position; });
}

std::shared_ptr<const Shading> ReadShading(const pugi::xml_node& element, const Resources& resources)
{
    auto shading = std::make_shared<Shading>();
    shading->kind = IsElement(element, "RadialShd") ? Shading::Kind::Radial : Shading::Kind::Axial;
    const std::string mapType = Attribute(element, "MapType").as_string();
    if (EqualsWord(mapType, "Repeat"))
        shading->repeat = Shading::Repeat::Repeat;
    else if (EqualsWord(mapType, "Reflect"))
        shading->repeat = Shading::Repeat::Reflect;
    shading->start = ParsePosition(Attribute(element, "StartPoint").as_string()).value_or(QPointF());
    shading->end = ParsePosition(Attribute(element, "EndPoint").as_string()).value_or(QPointF());
    shading->startRadius = std::abs(NumberAttribute(element, "StartRadius"));
    shading->endRadius = std::abs(NumberAttribute(element, "EndRadius"));
    shading->eccentricity = std::clamp(NumberAttribute(element, "Eccentricity"), 0.0, 0.9999);
    shading->angle = NumberAttribute(element, "Angle");
    shading->mapUnit = std::max(0.0, NumberAttribute(element, "MapUnit"));
    const int extend = IntegerAttribute(element, "Extend");
    shading->extendsStart = extend & 1;
    shading->extendsEnd = extend & 2;
    ReadStops(element, resources, *shading);
    return shading->stops.isEmpty() ? nullptr : shading;
}

} // namespace

QColor ColorFromChannels(const QVector<double>& channels, const ColorSpace& space)
{
    const double top = std::pow(2.0, std::clamp(space.bits, 1, 16)) - 1;
    const auto part = [&](int i) { return std::clamp(channels.value(i, 0) / top, 0.0, 1.0); };
    if (space.profile) {
        QVector<double> parts;
        for (int i = 0; i < space.GetChannelCount(); ++i)
            parts.append(part(i));
        return space.profile->ColorOf(parts);
    }
    switch (space.kind) {
    case ColorSpace::Kind::Gray:
        return QColor::fromRgbF(part(0), part(0), part(0));
    case ColorSpace::Kind::Cmyk: {
        const double light = 1 - part(3);
        return QColor::fromRgbF((1 - part(0)) * light, (1 - part(1)) * light, (1 - part(2)) * light);
    }
    case ColorSpace::Kind::Rgb:
        break;
    }
    return QColor::fromRgbF(part(0), part(1), part(2));
}

Paint ReadPaint(const pugi::xml_node& color, const Resources& resources)
{
    Paint paint;
    const pugi::xml_node child = FirstElement(color);
    const bool isShading = IsElement(child, "AxialShd") || IsElement(child, "RadialShd");
    // A kind that is not drawn and has no value to fall back on must not turn into a black area.
    if (child && !isShading && !HasAttribute(color, "Value"))
        return paint;
    paint.color = ReadColor(color, resources);
    if (isShading)
        paint.shading = ReadShading(child, resources);
    return paint;
}

} // namespace ofd
