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
#include <ofd/parse/outline_reader.h>

#include <QHash>
#include <QSet>

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

// A list that is left without a bookmark goes: the format wants none that is empty. What is new stands beside what
// stays, or, when nothing stays, at the end of the last list.
void RemoveEmptied(XmlEdit& edit, const std::vector<pugi::xml_node>& elements, const std::vector<int>& matches,
                   const std::vector<bool>& stays)
{
    if (elements.empty())
        return;
    QSet<size_t> needed; // lists, by hash
    for (size_t i = 0; i < matches.size(); ++i) {
        if (stays[i])
            needed.insert(elements[size_t(matches[i])].parent().hash_value());
    }
    if (needed.isEmpty())
        needed.insert(elements.back().parent().hash_value());
    pugi::xml_node seen;
    for (const pugi::xml_node& element : elements) {
        if (element.parent() != seen && !needed.contains(element.parent().hash_value()))
            edit.Remove(element.parent());
        seen = element.parent();
    }
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
    const std::vector<pugi::xml_node> lists = BookmarkLists(root);
    if (current.empty()) {
        for (size_t i = 0; i < lists.size() && !saved.empty(); ++i)
            edit.Remove(lists[i]);
        return;
    }
    if (lists.empty()) {
        XmlFragment xml(PrefixOf(root));
        xml.Open("Bookmarks");
        for (const G_Bookmark* bookmark : current)
            xml.Raw(ElementBytes(*bookmark, structure, PrefixOf(root)));
        edit.InsertInOrder(root, "Bookmarks", xml.Close().GetBytes(), DocumentOrder());
        return;
    }
    const std::vector<pugi::xml_node> elements = BookmarkElements(root);
    const std::vector<int> matches = MatchElements(saved, current);
    const std::vector<bool> stays = ArrangeChildren(edit, lists.front(), elements, matches, [&](int i) {
        return ElementBytes(*current[size_t(i)], structure, PrefixOf(lists.front()));
    });
    RemoveEmptied(edit, elements, matches, stays);
    for (size_t i = 0; i < current.size(); ++i) {
        const size_t place = size_t(matches[i]);
        if (stays[i])
            EditElement(edit, elements[place], *saved[place], *current[i], structure);
    }
}

} // namespace ofd
