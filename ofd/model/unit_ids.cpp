#include "unit_ids.h"

#include "structure.h"

#include <ofd/package/limits.h>
#include <ofd/package/locations.h>
#include <ofd/package/package.h>
#include <ofd/package/wide_xml.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>
#include <ofd/parse/annotation_reader.h>

#include <QSet>

#include <algorithm>
#include <cstring>
#include <limits>

namespace ofd {

namespace {

// New identifiers are found below this even in files that use the highest number there is.
constexpr qint64 HighestUsableId = std::numeric_limits<int>::max() / 2;

bool IsBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

// The number in an attribute whose name "ID" ends at `at`; 0 when it is something else.
qint64 ValueBehind(const char* at, const char* end)
{
    const auto skipBlanks = [&] {
        while (at < end && IsBlank(*at))
            ++at;
    };
    skipBlanks();
    if (at == end || *at++ != '=')
        return 0;
    skipBlanks();
    if (at == end || (*at != '"' && *at != '\''))
        return 0;
    ++at;
    skipBlanks();
    qint64 value = 0;
    for (; at < end && *at >= '0' && *at <= '9' && value <= HighestUsableId; ++at)
        value = value * 10 + (*at - '0');
    return value <= HighestUsableId ? value : 0;
}

// Looks through the parts of a document for identifiers.
class IdScan
{
public:
    IdScan(const Package& package, const DocumentStructure& structure)
        : package(package)
        , structure(structure)
    {
    }

    int Run()
    {
        Look(structure.documentPart);
        Look(structure.attachmentsPart);
        for (const QString& part : structure.publicRes + structure.documentRes)
            Look(part);
        const AnnotationIndex annotations =
            ReadAnnotationIndex(package, structure.annotationsPart, structure.documentFolder);
        for (const QStringList& parts : annotations) {
            for (const QString& part : parts)
                Look(part);
        }
        for (const TemplateEntry& page : structure.templates)
            LookAtPage(page.part);
        for (const PageEntry& page : structure.pages)
            LookAtPage(page.part);
        return highest;
    }

private:
    QByteArray Look(const QString& part)
    {
        if (part.isEmpty() || seen.contains(part))
            return {};
        seen.insert(part);
        budget -= std::max<qint64>(package.GetPartSize(part), 0);
        if (budget < 0)
            return {};
        const QByteArray bytes = NarrowXml(package.Read(part).bytes);
        highest = std::max(highest, HighestIdIn(bytes));
        return bytes;
    }

    // Pages may have resources of their own.
    void LookAtPage(const QString& part)
    {
        const QByteArray bytes = Look(part);
        const std::unique_ptr<XmlPart> page = bytes.contains("PageRes>") ? XmlPart::Parse(part, bytes) : nullptr;
        if (!page)
            return;
        LocationContext context;
        context.holderPart = part;
        context.documentFolder = structure.documentFolder;
        for (const pugi::xml_node& resources : ChildElements(page->GetRoot(), "PageRes"))
            Look(ResolveLocation(package, TrimmedText(resources), context).part);
    }

    const Package& package;
    const DocumentStructure& structure;
    QSet<QString> seen;
    qint64 budget = limits::MaxIdScanBytes;
    int highest = 0;
};

} // namespace

UnitIds::UnitIds(const DocumentStructure& structure)
    : structure(structure)
{
}

int UnitIds::Take(const Package& package, int above)
{
    const std::lock_guard<std::mutex> lock(mutex);
    return Next(package, above);
}

QVector<int> UnitIds::ForAnnotations(const Package& package, const QVector<int>& inFile)
{
    const std::lock_guard<std::mutex> lock(mutex);
    QVector<int> ids;
    ids.reserve(inFile.size());
    for (int id : inFile) {
        if (id == 0 || annotations.contains(id))
            id = Next(package, 0);
        annotations.insert(id);
        ids.append(id);
    }
    return ids;
}

int UnitIds::Next(const Package& package, int above)
{
    if (!isScanned) {
        highest = IdScan(package, structure).Run();
        if (structure.highestId <= HighestUsableId)
            highest = std::max(highest, structure.highestId);
        isScanned = true;
    }
    if (above <= HighestUsableId)
        highest = std::max(highest, above);
    return ++highest;
}

int HighestIdIn(const QByteArray& xml)
{
    const char* at = xml.constData();
    const char* const end = at + xml.size();
    qint64 highest = 0;
    while (end - at > 3) {
        at = static_cast<const char*>(std::memchr(at, 'I', size_t(end - at - 1)));
        if (!at)
            break;
        // An attribute of that name and no other: a blank in front of it, or a prefix.
        const bool isName = at[1] == 'D' && at > xml.constData() && (IsBlank(at[-1]) || at[-1] == ':');
        ++at;
        if (isName)
            highest = std::max(highest, ValueBehind(at + 1, end));
    }
    return int(highest);
}

} // namespace ofd
