#include "color_reader.h"

#include "pattern_reader.h"
#include "shading_reader.h"

#include <ofd/model/color_profile.h>
#include <ofd/model/problem_log.h>
#include <ofd/model/resources.h>
#include <ofd/package/limits.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_values.h>

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace ofd {

namespace {

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

// The named colour space, the document's default one, or what the number of values suggests.
ColorSpace SpaceFor(const pugi::xml_node& color, const Resources& resources, int channelCount)
{
    const int id = int(IdAttribute(color, "ColorSpace"));
    if (!id && !resources.defaultColorSpace)
        return ColorSpace();
    if (const ColorSpace* space = resources.FindColorSpace(id ? id : resources.defaultColorSpace))
        return *space;
    if (id)
        ReportProblem(ProblemKind::DanglingReference,
                      QCoreApplication::translate("OfdDocument", "There is no colour space %1.").arg(quint32(id)));
    ColorSpace guess;
    if (channelCount == 1)
        guess.kind = ColorSpace::Kind::Gray;
    else if (channelCount == 4)
        guess.kind = ColorSpace::Kind::Cmyk;
    return guess;
}

QVector<double> PaletteEntry(const pugi::xml_node& color, const ColorSpace& space)
{
    const int index = IntegerAttribute(color, "Index", -1);
    if (index < 0 || index >= space.palette.size())
        ReportProblem(ProblemKind::BadValue,
                      QCoreApplication::translate("OfdDocument", "The palette has no colour %1.").arg(index));
    return space.palette.value(index);
}

} // namespace

QVector<double> ParseChannels(const char* text)
{
    std::string value(text);
    std::replace(value.begin(), value.end(), ',', ' ');
    QVector<double> channels;
    for (const std::string_view word : SplitWords(value)) {
        if (channels.size() >= limits::MaxChannels)
            break;
        AppendChannel(word, channels);
    }
    return channels;
}

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

QColor ReadColor(const pugi::xml_node& color, const Resources& resources)
{
    const pugi::xml_attribute value = Attribute(color, "Value");
    QVector<double> channels = ParseChannels(value.as_string());
    const ColorSpace space = SpaceFor(color, resources, channels.size());
    if (!value && HasAttribute(color, "Index"))
        channels = PaletteEntry(color, space);
    QColor result = ColorFromChannels(channels, space);
    result.setAlpha(int(std::lround(std::clamp(NumberAttribute(color, "Alpha", 255), 0.0, 255.0))));
    return result;
}

Paint ReadPaint(const pugi::xml_node& color, const Resources& resources)
{
    Paint paint;
    paint.color = ReadColor(color, resources);
    const pugi::xml_node source = FirstElement(color);
    if (!source)
        return paint;
    if (IsElement(source, "Pattern"))
        paint.pattern = ReadPattern(source, resources);
    else if (IsElement(source, "AxialShd") || IsElement(source, "RadialShd"))
        paint.shading = ReadShading(source, resources);
    else if (IsElement(source, "GouraudShd"))
        paint.mesh = ReadTriangles(source, resources);
    else if (IsElement(source, "LaGouraudShd") || IsElement(source, "LaGourandShd")) // both spellings are in use
        paint.mesh = ReadLattice(source, resources);
    if (!paint.IsColor())
        return paint;
    ReportProblem(ProblemKind::BadValue,
                  QCoreApplication::translate("OfdDocument", "The %1 of a colour cannot be used.")
                      .arg(QString::fromUtf8(source.name()).left(40)));
    // Without a value to fall back on it must not turn into a black area.
    if (!HasAttribute(color, "Value") && !HasAttribute(color, "Index"))
        paint.color = Qt::transparent;
    return paint;
}

} // namespace ofd
