#include "bookmark_writer.h"

#include "child_order.h"
#include "destination_writer.h"
#include "document_order.h"

#include <frame/document/payloads.h>
#include <ofd/model/record_sources.h>
#include <ofd/model/structure.h>
#include <ofd/package/xml_edit.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>
#include <ofd/package/xml_text.h>

#include <QHash>

namespace ofd {

namespace {

QString NameOf(const G_Bookmark& bookmark)
{
    return QString::fromUtf8(bookmark.name.Bytes());
}

const BookmarkSource* SourceOf(const G_Bookmark& bookmark)
{
    return dynamic_cast<const BookmarkSource*>(bookmark.source.get());
}

// Changes in an existing element what differs from its source; attributes that we do not know stay.
void EditElement(XmlEdit& edit, const pugi::xml_node& element, const BookmarkSource& source, const G_Bookmark& bookmark,
                 const DocumentStructure& structure)
{
    if (!(bookmark.name == source.name))
        edit.SetAttribute(element, "Name", NameOf(bookmark));
    if (*bookmark.dest == source.dest)
        return;
    const pugi::xml_node dest = ChildElement(element, "Dest");
    if (!dest) {
        XmlFragment xml(PrefixOf(element));
        AppendDestination(xml, *bookmark.dest, structure);
        edit.AppendChild(element, xml.GetBytes());
        return;
    }
    EditDestination(edit, dest, *bookmark.dest, structure);
}

// The bytes of an element that stands nowhere in the part: a new one, or one that comes back or moves.
QByteArray ElementBytes(const G_Bookmark& bookmark, const DocumentStructure& structure, const QByteArray& prefix)
{
    const BookmarkSource* source = SourceOf(bookmark);
    const std::unique_ptr<XmlPart> old = source ? XmlPart::Parse(QString(), source->xml) : nullptr;
    if (old) {
        XmlEdit edit(*old);
        EditElement(edit, old->GetRoot(), *source, bookmark, structure);
        const QByteArray bytes = edit.IsEmpty() ? source->xml : edit.Apply();
        if (!bytes.isEmpty())
            return bytes;
    }
    XmlFragment xml(prefix);
    xml.Open("Bookmark").Attribute("Name", NameOf(bookmark));
    AppendDestination(xml, *bookmark.dest, structure);
    return xml.Close().GetBytes();
}

// For each current bookmark the place of its element in the part, -1 when it has none. Each element is given once.
std::vector<int> MatchElements(const BookmarkSources& saved, const std::vector<G_Bookmark*>& current)
{
    QHash<const void*, int> places;
    for (int i = 0; i < int(saved.size()); ++i)
        places.insert(saved[size_t(i)].get(), i);
    std::vector<int> matches;
    for (const G_Bookmark* bookmark : current) {
        const auto place = places.find(SourceOf(*bookmark));
        matches.push_back(place == places.end() ? -1 : *place);
        if (place != places.end())
            places.erase(place);
    }
    return matches;
}

} // namespace

bool AreBookmarksChanged(const BookmarkSources& saved, const std::vector<G_Bookmark*>& current)
{
    if (saved.size() != current.size())
        return true;
    for (size_t i = 0; i < saved.size(); ++i) {
        const G_Bookmark& bookmark = *current[i];
        const BookmarkSource& source = *saved[i];
        if (SourceOf(bookmark) != &source || !(bookmark.name == source.name) || !(*bookmark.dest == source.dest))
            return true;
    }
    return false;
}

void WriteBookmarks(XmlEdit& edit, const XmlPart& document, const DocumentStructure& structure,
                    const BookmarkSources& saved, const std::vector<G_Bookmark*>& current)
{
    const pugi::xml_node root = document.GetRoot();
    const pugi::xml_node list = ChildElement(root, "Bookmarks");
    if (current.empty()) {
        if (list && !saved.empty())
            edit.Remove(list);
        return;
    }
    if (!list) {
        XmlFragment xml(PrefixOf(root));
        xml.Open("Bookmarks");
        for (const G_Bookmark* bookmark : current)
            xml.Raw(ElementBytes(*bookmark, structure, PrefixOf(root)));
        edit.InsertInOrder(root, "Bookmarks", xml.Close().GetBytes(), DocumentOrder());
        return;
    }
    const std::vector<pugi::xml_node> elements = ChildElements(list, "Bookmark");
    const std::vector<int> matches = MatchElements(saved, current);
    const std::vector<bool> stays = ArrangeChildren(edit, list, elements, matches, [&](int i) {
        return ElementBytes(*current[size_t(i)], structure, PrefixOf(list));
    });
    for (size_t i = 0; i < current.size(); ++i) {
        const size_t place = size_t(matches[i]);
        if (stays[i])
            EditElement(edit, elements[place], *saved[place], *current[i], structure);
    }
}

} // namespace ofd
