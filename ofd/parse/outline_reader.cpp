#include "outline_reader.h"

#include <frame/base/converters.h>
#include <ofd/model/record_sources.h>
#include <ofd/model/structure.h>
#include <ofd/package/xml_edit.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>
#include <ofd/package/xml_values.h>

namespace ofd {

namespace {

// By zoom mode.
constexpr const char* DestinationTypes[] = {"XYZ", "Fit", "FitH", "FitV", "FitR"};

int ZoomModeOf(const char* type)
{
    for (int mode = 0; mode < 5; ++mode) {
        if (EqualsWord(type, DestinationTypes[mode]))
            return mode;
    }
    return 0;
}

CCA_String Utf8(const QString& text)
{
    return CCA_String(text.toUtf8());
}

class OutlineReader
{
public:
    OutlineReader(const XmlPart& part, const DocumentStructure& structure)
        : part(part)
        , edit(part)
        , structure(structure)
    {
    }

    void ReadChildren(const pugi::xml_node& parent, G_TreeNode* node) const
    {
        for (const pugi::xml_node& element : ChildElements(parent, "OutlineElem")) {
            G_OutlineItem* item = ReadItem(element); // owned by the node below
            G_TreeNode* added = node->AddSubNode(node->SubNodeCount(), item);
            ReadChildren(element, added); // nesting is bound by the depth limit of the XML reader
        }
    }

private:
    G_OutlineItem* ReadItem(const pugi::xml_node& element) const
    {
        auto* item = new G_OutlineItem; // owned by the caller
        item->title = Utf8(AttributeText(element, "Title").trimmed());
        item->text = item->title;
        item->expanded = BooleanAttribute(element, "Expanded", true);
        const pugi::xml_node actions = ChildElement(element, "Actions");
        for (const pugi::xml_node& action : ChildElements(actions, "Action"))
            item->actions.Add(ReadAction(action));
        auto source = std::make_shared<OutlineSource>();
        const ElementRange range = edit.GetRange(element);
        source->startTag = part.GetBytes().mid(int(range.begin), int(range.startTagEnd - range.begin));
        source->actions = actions ? edit.GetElementBytes(actions) : QByteArray();
        source->text = item->text;
        source->expanded = item->expanded;
        item->source = source;
        return item;
    }

    // Owned by the caller.
    G_Action* ReadAction(const pugi::xml_node& element) const
    {
        G_Action* action = ReadGoto(ChildElement(element, "Goto"));
        const pugi::xml_node uri = ChildElement(element, "URI");
        if (!action && uri) {
            auto* opens = new G_ActionUri;
            opens->uri = Utf8(AttributeText(uri, "URI"));
            action = opens;
        }
        if (!action)
            action = new G_Action(G_Action::Other);
        action->opaque = CCA_String(edit.GetElementBytes(element));
        return action;
    }

    // Null when the action goes nowhere in this document.
    G_Action* ReadGoto(const pugi::xml_node& element) const
    {
        if (const pugi::xml_node dest = ChildElement(element, "Dest")) {
            auto* action = new G_ActionGoto;
            *action->dest = ReadDestination(dest, structure);
            return action;
        }
        const pugi::xml_node bookmark = ChildElement(element, "Bookmark");
        if (!bookmark)
            return nullptr;
        const QString name = AttributeText(bookmark, "Name");
        auto* action = new G_ActionGoto;
        action->bookmarkName = Utf8(name);
        action->dest->pageIndex = -1; // a bookmark that does not exist leads nowhere
        for (const pugi::xml_node& element : ChildElements(ChildElement(part.GetRoot(), "Bookmarks"), "Bookmark")) {
            if (AttributeText(element, "Name") == name) {
                *action->dest = ReadDestination(ChildElement(element, "Dest"), structure);
                break;
            }
        }
        return action;
    }

    const XmlPart& part;
    const XmlEdit edit;
    const DocumentStructure& structure;
};

} // namespace

G_Dest ReadDestination(const pugi::xml_node& element, const DocumentStructure& structure)
{
    G_Dest dest;
    dest.zoomMode = ZoomModeOf(Attribute(element, "Type").as_string());
    dest.pageId = int(IdAttribute(element, "PageID"));
    dest.pageIndex = structure.pageIndexById.value(dest.pageId, -1);
    dest.left = float(NumberAttribute(element, "Left"));
    dest.top = float(NumberAttribute(element, "Top"));
    dest.right = float(NumberAttribute(element, "Right"));
    dest.bottom = float(NumberAttribute(element, "Bottom"));
    dest.zoom = float(NumberAttribute(element, "Zoom"));
    return dest;
}

TreeRoot ReadBookmarks(const XmlPart& document, const DocumentStructure& structure,
                       std::vector<std::shared_ptr<const BookmarkSource>>* sources)
{
    const pugi::xml_node list = ChildElement(document.GetRoot(), "Bookmarks");
    if (!list)
        return nullptr;
    const XmlEdit edit(document);
    TreeRoot root(G_TreeNode::CreateRoot());
    for (const pugi::xml_node& element : ChildElements(list, "Bookmark")) {
        auto source = std::make_shared<BookmarkSource>();
        source->xml = edit.GetElementBytes(element);
        source->name = Utf8(AttributeText(element, "Name"));
        source->dest = ReadDestination(ChildElement(element, "Dest"), structure);
        auto* bookmark = new G_Bookmark; // owned by its node
        bookmark->name = source->name;
        *bookmark->dest = source->dest;
        bookmark->source = source;
        root->AddSubNode(root->SubNodeCount(), bookmark);
        if (sources)
            sources->push_back(source);
    }
    return root;
}

TreeRoot ReadOutline(const XmlPart& document, const DocumentStructure& structure)
{
    const pugi::xml_node list = ChildElement(document.GetRoot(), "Outlines");
    if (!list)
        return nullptr;
    TreeRoot root(G_TreeNode::CreateRoot());
    OutlineReader(document, structure).ReadChildren(list, root.get());
    return root;
}

} // namespace ofd
