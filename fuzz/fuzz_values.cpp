// Values of attributes and texts: numbers, arrays, boxes, steps between glyphs, references to parts, names.
#include <ofd/package/entry_names.h>
#include <ofd/package/locations.h>
#include <ofd/package/tag_names.h>
#include <ofd/package/xml_values.h>
#include <ofd/parse/attachment_reader.h>
#include <ofd/parse/text_reader.h>

#include <cmath>
#include <cstdlib>

namespace {

constexpr int GlyphLimit = 1000;

void Demand(bool holds)
{
    if (!holds)
        std::abort();
}

void ReadNumbers(std::string_view text)
{
    ofd::ParseInteger(text);
    ofd::ParseId(text);
    ofd::ParseBoolean(text);
    ofd::ParsePosition(text);
    ofd::ParseBox(text);
    if (const auto number = ofd::ParseNumber(text))
        Demand(std::isfinite(*number) && std::abs(*number) <= 1e7);
    if (const auto array = ofd::ParseArray(text)) {
        for (const double number : *array)
            Demand(std::isfinite(number));
    }
    Demand(ofd::ExpandDeltas(text, GlyphLimit).size() <= GlyphLimit);
}

void ReadNames(const QString& text)
{
    if (const auto part = ofd::NormaliseLocation(text, QStringLiteral("Doc_0/Pages/")))
        Demand(!part->startsWith(QLatin1Char('/')) && !part->split(QLatin1Char('/')).contains(QStringLiteral("..")));
    Demand(!ofd::CleanedName(text).contains(QLatin1Char('/')));
    ofd::UnescapeTagName(text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const auto* bytes = reinterpret_cast<const char*>(data);
    ReadNumbers(std::string_view(bytes, size));
    ReadNames(QString::fromUtf8(bytes, static_cast<int>(size)));
    const QByteArray name(bytes, static_cast<int>(size));
    ofd::NormaliseEntryName(ofd::DecodeEntryName(name, false));
    return 0;
}
