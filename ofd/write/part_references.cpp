#include "part_references.h"

#include <ofd/package/entry_names.h>
#include <ofd/package/limits.h>
#include <ofd/package/locations.h>
#include <ofd/package/package.h>
#include <ofd/package/package_changes.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>

#include <QSet>

#include <algorithm>

namespace ofd {

namespace {

bool IsXmlFile(const QString& part)
{
    return part.endsWith(QLatin1String(".xml"), Qt::CaseInsensitive);
}

// Parts of signatures, and the list that guards a whole package.
bool IsOfSignatures(const pugi::xml_node& root)
{
    return IsElement(root, "Signature") || IsElement(root, "Signatures") || IsElement(root, "OFDEntries");
}

// Looks at every text and attribute of a part for references to another.
class ReferenceSearch
{
public:
    ReferenceSearch(const Package& package, const QString& wanted, const XmlPart& holder, const QString& documentFolder)
        : package(package)
        , wanted(wanted)
        , fileName(FileNameOf(wanted))
        , holder(holder)
    {
        context.holderPart = holder.GetName();
        context.documentFolder = documentFolder;
    }

    bool Finds()
    {
        const QString baseLoc = AttributeText(holder.GetRoot(), "BaseLoc");
        if (FindsIn(holder.GetRoot()))
            return true;
        context.baseLoc = baseLoc; // of resources
        return !baseLoc.isEmpty() && FindsIn(holder.GetRoot());
    }

private:
    bool FindsIn(const pugi::xml_node& root) const
    {
        for (pugi::xml_node node = root; node; node = Next(node, root)) {
            if (node.type() != pugi::node_element)
                continue;
            if (Means(TrimmedText(node)))
                return true;
            for (const pugi::xml_attribute& attribute : node.attributes()) {
                if (Means(QString::fromUtf8(attribute.value())))
                    return true;
            }
        }
        return false;
    }

    // In document order, without calling itself.
    static pugi::xml_node Next(pugi::xml_node node, const pugi::xml_node& root)
    {
        if (node.first_child())
            return node.first_child();
        while (node != root && !node.next_sibling())
            node = node.parent();
        return node == root ? pugi::xml_node() : node.next_sibling();
    }

    bool Means(const QString& text) const
    {
        const bool mayMean = text.contains(fileName, Qt::CaseInsensitive) || text.contains(QLatin1Char('%'));
        return mayMean && ResolveLocation(package, text, context).part == wanted;
    }

    const Package& package;
    const QString wanted;
    const QString fileName;
    const XmlPart& holder;
    LocationContext context;
};

// A part as it will be; empty when it goes.
QByteArray BytesOf(const Package& package, const PackageChanges& changes, const QString& part, bool& isEncrypted)
{
    const auto change = changes.GetChanges().constFind(part);
    if (change != changes.GetChanges().constEnd())
        return change->bytes;
    const PartData data = package.Read(part);
    isEncrypted = data.error.kind == PackageErrorKind::Encrypted;
    return data.bytes;
}

// Of the parts `candidates` those that the part `from` refers to.
QStringList ReferredFrom(const Package& package, const PackageChanges& changes, const QString& from,
                         const QStringList& candidates, const QString& documentFolder)
{
    bool isEncrypted = false;
    const QByteArray bytes = BytesOf(package, changes, from, isEncrypted);
    if (isEncrypted)
        return candidates; // what cannot be read may say anything
    const QByteArray folded = bytes.toLower();
    // No wide characters, none by number, none escaped as in a web address.
    const bool hasPlainText = !bytes.contains('\0') && !bytes.contains("&#") && !bytes.contains('%');
    std::unique_ptr<XmlPart> xml;
    QStringList found;
    for (const QString& part : candidates) {
        // Nearly all parts do not even hold the name; one that may be spelled in several ways is always looked for.
        const QByteArray fileName = FileNameOf(part).toUtf8();
        const bool isPlain = std::all_of(fileName.begin(), fileName.end(), [](char c) { return c > ' ' && c != '&'; });
        if (part == from || bytes.isEmpty() || (hasPlainText && isPlain && !folded.contains(fileName.toLower())))
            continue;
        if (!xml)
            xml = XmlPart::Parse(from, bytes);
        if (!xml || (!IsOfSignatures(xml->GetRoot()) && ReferenceSearch(package, part, *xml, documentFolder).Finds()))
            found.append(part);
    }
    return found;
}

} // namespace

QStringList PartsInUse(const Package& package, const PackageChanges& changes, const QStringList& parts,
                       const QStringList& pages, const QString& documentFolder)
{
    const QSet<QString> pageSet(pages.begin(), pages.end());
    QStringList open = parts;
    QStringList used;
    qint64 budget = limits::MaxIdScanBytes;
    for (const QString& from : package.GetPartNames()) {
        if (!IsXmlFile(from) || pageSet.contains(from))
            continue;
        budget -= std::max<qint64>(package.GetPartSize(from), 0);
        const QStringList found = budget < 0 ? open : ReferredFrom(package, changes, from, open, documentFolder);
        for (const QString& part : found)
            open.removeOne(part);
        used += found;
        if (open.isEmpty())
            break;
    }
    return used;
}

} // namespace ofd
