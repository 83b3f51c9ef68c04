#include "resource_reader.h"

#include "color_reader.h"
#include "content_reader.h"
#include "draw_param_reader.h"

#include <ofd/model/color_profile.h>
#include <ofd/model/problem_log.h>
#include <ofd/model/resources.h>
#include <ofd/package/limits.h>
#include <ofd/package/locations.h>
#include <ofd/package/package.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>
#include <ofd/package/xml_values.h>

#include <QCoreApplication>
#include <QSet>

#include <algorithm>
#include <functional>

namespace ofd {

namespace {

class ResourceReader
{
public:
    ResourceReader(const Package& package, const QString& documentFolder, Resources& resources)
        : package(package)
        , resources(resources)
        , drawParams(resources)
    {
        context.documentFolder = documentFolder;
        context.isMedia = true;
    }

    // Draw parameters need colour spaces and units need both, wherever they stand: one pass for each kind.
    void Read(const std::vector<std::unique_ptr<XmlPart>>& parts)
    {
        Each(parts, "ColorSpaces", "ColorSpace", [this](const pugi::xml_node& e) { AddColorSpace(e); });
        Each(parts, "DrawParams", "DrawParam", [this](const pugi::xml_node& e) { AddDrawParam(e); });
        drawParams.ReadColors();
        Each(parts, "Fonts", "Font", [this](const pugi::xml_node& e) { AddFont(e); });
        Each(parts, "MultiMedias", "MultiMedia", [this](const pugi::xml_node& e) { AddMedia(e); });
        Each(parts, "CompositeGraphicUnits", "CompositeGraphicUnit", [this](const pugi::xml_node& e) { AddUnit(e); });
    }

private:
    void Each(const std::vector<std::unique_ptr<XmlPart>>& parts, std::string_view list, std::string_view item,
              const std::function<void(const pugi::xml_node&)>& add)
    {
        for (const std::unique_ptr<XmlPart>& one : parts) {
            part = one.get();
            const ProblemScope scope(part->GetName());
            context.holderPart = part->GetName();
            context.baseLoc = AttributeText(part->GetRoot(), "BaseLoc").trimmed();
            for (const pugi::xml_node& holder : ChildElements(part->GetRoot(), list)) {
                for (const pugi::xml_node& element : ChildElements(holder, item)) {
                    const ProblemPlace place(IdForPlace(element), part->PlaceOf(element));
                    add(element);
                }
            }
        }
    }

    // The identifier of the element; 0, and told, when another one of the table has it.
    template <typename T>
    static int IdOfFirst(const QHash<int, T>& table, const pugi::xml_node& element)
    {
        const int id = int(IdAttribute(element, "ID"));
        if (!id || !table.contains(id))
            return id;
        ReportProblem(ProblemKind::DuplicateIdentifier,
                      QCoreApplication::translate("OfdDocument", "More than one %1 has the ID %2.")
                          .arg(QString::fromUtf8(element.name()))
                          .arg(quint32(id)));
        return 0;
    }

    template <typename T>
    static void InsertFirst(QHash<int, T>& table, const pugi::xml_node& element, const T& value)
    {
        if (const int id = IdOfFirst(table, element))
            table.insert(id, value);
    }

    void AddColorSpace(const pugi::xml_node& element)
    {
        ColorSpace space;
        const char* type = Attribute(element, "Type").as_string();
        if (EqualsWord(type, "GRAY"))
            space.kind = ColorSpace::Kind::Gray;
        else if (EqualsWord(type, "CMYK"))
            space.kind = ColorSpace::Kind::Cmyk;
        const int bits = IntegerAttribute(element, "BitsPerComponent", 8);
        space.bits = bits == 1 || bits == 2 || bits == 4 || bits == 16 ? bits : 8;
        for (const pugi::xml_node& value : ChildElements(ChildElement(element, "Palette"), "CV")) {
            if (space.palette.size() >= limits::MaxPaletteEntries)
                break;
            space.palette.append(ParseChannels(value.text().get()));
        }
        const QString profile = AttributeText(element, "Profile").trimmed();
        if (!profile.isEmpty())
            space.profile = ProfileOf(ResolveLocation(package, profile, context).part, space.GetChannelCount());
        InsertFirst(resources.colorSpaces, element, space);
    }

    // Null, and told, when there is no such profile; the plain formulas serve then.
    std::shared_ptr<const ColorProfile> ProfileOf(const QString& part, int channelCount)
    {
        if (part.isEmpty())
            return nullptr;
        const QPair<QString, int> key(part, channelCount);
        const auto known = profiles.constFind(key);
        if (known != profiles.constEnd())
            return *known;
        std::shared_ptr<const ColorProfile> profile;
        const qint64 size = package.GetPartSize(part);
        if (size <= limits::MaxProfileBytes && profileBytes + size <= limits::MaxProfileBytesInAll) {
            profileBytes += std::max<qint64>(size, 0); // negative when it is missing
            const PartData data = package.Read(part);
            if (!data.error)
                profile = ColorProfile::FromBytes(data.bytes, channelCount);
        }
        if (!profile)
            ReportProblem(ProblemKind::BadValue, part,
                          QCoreApplication::translate("OfdDocument", "The colour profile cannot be used."));
        profiles.insert(key, profile);
        return profile;
    }

    void AddDrawParam(const pugi::xml_node& element)
    {
        const int id = IdOfFirst(resources.drawParams, element);
        if (id)
            drawParams.Add(*part, element, id);
    }

    void AddFont(const pugi::xml_node& element)
    {
        FontResource font;
        font.fontName = AttributeText(element, "FontName").trimmed();
        font.familyName = AttributeText(element, "FamilyName").trimmed();
        const char* charset = HasAttribute(element, "Charset") ? "Charset" : "CharSet"; // both are met
        font.charset = AttributeText(element, charset).trimmed();
        font.isItalic = BooleanAttribute(element, "Italic", false);
        font.isBold = BooleanAttribute(element, "Bold", false);
        font.isSerif = BooleanAttribute(element, "Serif", false);
        font.isFixedWidth = BooleanAttribute(element, "FixedWidth", false);
        font.part = PartOf(ChildElement(element, "FontFile"));
        InsertFirst(resources.fonts, element, font);
    }

    void AddMedia(const pugi::xml_node& element)
    {
        MediaResource media;
        media.type = AttributeText(element, "Type").trimmed();
        media.format = AttributeText(element, "Format").trimmed();
        media.part = PartOf(ChildElement(element, "MediaFile"));
        InsertFirst(resources.media, element, media);
    }

    void AddUnit(const pugi::xml_node& element)
    {
        auto unit = std::make_shared<CompositeUnit>();
        unit->width = NumberAttribute(element, "Width");
        unit->height = NumberAttribute(element, "Height");
        unit->objects = ReadObjects(ChildElement(element, "Content"), resources);
        InsertFirst<std::shared_ptr<const CompositeUnit>>(resources.units, element, unit);
    }

    QString PartOf(const pugi::xml_node& reference) const
    {
        return reference ? ResolveLocation(package, TrimmedText(reference), context).part : QString();
    }

    const Package& package;
    Resources& resources;
    DrawParamReader drawParams;
    const XmlPart* part = nullptr; // not owned; being read
    LocationContext context;
    QHash<QPair<QString, int>, std::shared_ptr<const ColorProfile>> profiles; // by part and number of channels
    qint64 profileBytes = 0;                                                  // of all that were looked at
};

} // namespace

std::shared_ptr<const Resources> ReadResources(const Package& package, const QStringList& parts,
                                               const QString& documentFolder, int defaultColorSpace,
                                               const std::shared_ptr<const Resources>& outer)
{
    auto resources = std::make_shared<Resources>();
    resources->outer = outer;
    resources->defaultColorSpace = defaultColorSpace;
    std::vector<std::unique_ptr<XmlPart>> xmlParts;
    QSet<QString> seen; // one that is named twice would say everything twice
    for (const QString& part : parts) {
        if (seen.contains(part))
            continue;
        seen.insert(part);
        if (std::unique_ptr<XmlPart> xml = XmlPart::Load(package, part))
            xmlParts.push_back(std::move(xml));
    }
    ResourceReader(package, documentFolder, *resources).Read(xmlParts);
    return resources;
}

} // namespace ofd
