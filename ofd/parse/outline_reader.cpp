#include "outline_reader.h"

#include "action_reader.h"
#include "document_reader.h"

#include <frame/base/converters.h>
#include <ofd/model/problem_log.h>
#include <ofd/model/record_sources.h>
#include <ofd/model/structure.h>
#include <ofd/package/xml_edit.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>
#include <ofd/package/xml_values.h>

#include <QCoreApplication>
#include <QHash>

#include <algorithm>

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
    QByteArray bytes = text.toUtf8();
    bytes.squeeze(); // it has room for the longest that the text might have become
    return CCA_String(bytes);
}

double NumberOf(const char* value)
{
    const std::optional<double> number = ParseNumber(value);
    if (!number)
        ReportProblem(
            ProblemKind::BadValue,
            QCoreApplication::translate("OfdDocument", "\"%1\" is no place on a page.").arg(QString::fromUtf8(value)));
    return number.value_or(0);
}

// One walk over the attributes, since there are very many destinations.
void SetValue(G_Dest& dest, std::string_view name, const char* value)
{
    static const std::pair<std::string_view, float G_Dest::*> numbers[] = {{"Left", &G_Dest::left},
                                                                           {"Top", &G_Dest::top},
                                                                           {"Right", &G_Dest::right},
                                                                           {"Bottom", &G_Dest::bottom},
                                                                           {"Zoom", &G_Dest::zoom}};
    if (name == "Type")
        dest.zoomMode = ZoomModeOf(value);
    else if (name == "PageID")
        dest.pageId = int(ParseId(value).value_or(0));
    for (const auto& [known, number] : numbers) {
        if (name == known)
            dest.*number = float(NumberOf(value));
    }
}

bool HasOnly(const pugi::xml_node& element, std::initializer_list<std::string_view> attributes, int childCount)
{
    for (const pugi::xml_attribute& attribute : element.attributes()) {
        if (std::find(attributes.begin(), attributes.end(), attribute.name()) == attributes.end())
            return false;
    }
    return std::distance(element.begin(), element.end()) == childCount;
}

// Whether an action is one click to one destination and says nothing else, as nearly all do. Such a one can be written
// anew from its record.
bool IsPlain(const pugi::xml_node& action)
{
    const pugi::xml_node jump = action.first_child();
    const pugi::xml_node dest = jump.first_child();
    return HasOnly(action, {"Event"}, 1) && EqualsWord(action.attribute("Event").value(), "CLICK") &&
           IsElement(jump, "Goto") && HasOnly(jump, {}, 1) && IsElement(dest, "Dest") &&
           HasOnly(dest, {"Type", "PageID", "Left", "Top", "Right", "Bottom", "Zoom"}, 0);
}

class OutlineReader
{
public:
    OutlineReader(const XmlPart& part, const DocumentStructure& structure, std::shared_ptr<const ElementTree> elements)
        : part(part)
        , structure(structure)
        , tree(std::move(elements))
        , sources(std::make_shared<std::vector<OutlineSource>>(size_t(tree->GetCount())))
    {
    }

    // Entries are parsed one at a time: all of them parsed would take many times the memory of what is read from them.
    void ReadInto(G_TreeNode* root)
    {
        std::vector<G_TreeNode*> nodes(size_t(tree->GetCount()), root);
        pugi::xml_document document;
        for (int element = 1; element < tree->GetCount(); ++element) {
            const ProblemPlace place(0, tree->At(element).begin);
            entryBytes = OwnBytes(element);
            document.load_buffer(entryBytes.constData(), size_t(entryBytes.size()),
                                 pugi::parse_default | pugi::parse_comments | pugi::parse_pi, pugi::encoding_utf8);
            G_TreeNode* parent = nodes[size_t(tree->At(element).parent)];
            G_OutlineItem* item = ReadItem(document.document_element(), element); // owned by the node
            nodes[size_t(element)] = parent->AddSubNode(parent->SubNodeCount(), item);
        }
    }

private:
    // The entry without its sub-entries; valid as long as the tree.
    QByteArray OwnBytes(int element) const
    {
        const TreeElement& place = tree->At(element);
        if (place.firstChild >= 0)
            return tree->WithPlaceHolders(element, QByteArray());
        return QByteArray::fromRawData(tree->GetBytes().constData() + place.begin, place.end - place.begin);
    }

    // Owned by the caller.
    G_OutlineItem* ReadItem(const pugi::xml_node& entry, int element)
    {
        auto* item = new G_OutlineItem;
        item->title = Utf8(AttributeText(entry, "Title").trimmed());
        item->text = item->title;
        item->expanded = BooleanAttribute(entry, "Expanded", true);
        OutlineSource& source = (*sources)[size_t(element)];
        source.tree = tree;
        source.element = element;
        source.text = item->text;
        source.expanded = item->expanded;
        const std::vector<pugi::xml_node> actions = ChildElements(ChildElement(entry, "Actions"), "Action");
        item->actions.Reserve(int(actions.size()));
        source.actions.reserve(actions.size());
        for (const pugi::xml_node& element : actions) {
            G_Action* action = ReadAction(element); // owned by the item
            item->actions.Add(action);
            source.actions.push_back(ValueOf(*action));
        }
        source.hasCount = HasAttribute(entry, "Count");
        if (source.hasCount) {
            source.count = IntegerAttribute(entry, "Count");
            source.counts = CountsOf(element);
        }
        item->source = std::shared_ptr<const OutlineSource>(sources, &source);
        return item;
    }

    // The counts of all elements are found at once, from the last to the first, when the first is asked for.
    EntryCounts CountsOf(int element)
    {
        if (counts.empty()) {
            counts.resize(size_t(tree->GetCount()));
            for (int i = tree->GetCount() - 1; i > 0; --i) {
                EntryCounts& above = counts[size_t(tree->At(i).parent)];
                above.leaves += std::max(counts[size_t(i)].leaves, 1);
                above.children += 1;
                above.all += counts[size_t(i)].all + 1;
            }
        }
        return counts[size_t(element)];
    }

    // Owned by the caller.
    G_Action* ReadAction(const pugi::xml_node& element)
    {
        G_Action* action = ReadGoto(ChildElement(element, "Goto"));
        if (!action)
            action = ResolvedAction(*ReadOtherAction(element), structure).release();
        if (!IsPlain(element)) {
            const qint64 begin = element.offset_debug() - 1;
            action->opaque = CCA_String(ElementTree(entryBytes, IsOutlineEntry, begin).BytesOf(0));
        }
        return action;
    }

    // Null when the action goes nowhere in this document.
    G_Action* ReadGoto(const pugi::xml_node& element)
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
        if (const pugi::xml_node element = BookmarkCalled(name))
            *action->dest = ReadDestination(ChildElement(element, "Dest"), structure);
        else
            ReportProblem(ProblemKind::DanglingReference,
                          QCoreApplication::translate("OfdDocument", "There is no bookmark \"%1\".").arg(name));
        return action;
    }

    // The first of that name; a null node without any.
    pugi::xml_node BookmarkCalled(const QString& name)
    {
        if (!hasBookmarks) {
            hasBookmarks = true;
            for (const pugi::xml_node& element : BookmarkElements(part.GetRoot())) {
                const QString known = AttributeText(element, "Name");
                if (!bookmarks.contains(known))
                    bookmarks.insert(known, element);
            }
        }
        return bookmarks.value(name);
    }

    const XmlPart& part;
    const DocumentStructure& structure;
    const std::shared_ptr<const ElementTree> tree;
    const std::shared_ptr<std::vector<OutlineSource>> sources; // by element; in one block, since there may be many
    QByteArray entryBytes;                                     // of the entry that is being read
    std::vector<EntryCounts> counts;                           // by element; empty until needed
    QHash<QString, pugi::xml_node> bookmarks;
    bool hasBookmarks = false;
};

} // namespace

ActionValue ValueOf(const G_Action& action)
{
    ActionValue value;
    value.xml = action.opaque;
    value.type = action.actionType;
    if (const auto* jump = dynamic_cast<const G_ActionGoto*>(&action)) {
        value.dest = *jump->dest;
        value.bookmarkName = jump->bookmarkName;
    } else if (const auto* opens = dynamic_cast<const G_ActionUri*>(&action)) {
        value.uri = opens->uri;
    }
    return value;
}

G_Dest ReadDestination(const pugi::xml_node& element)
{
    G_Dest dest;
    dest.pageIndex = -1;
    for (const pugi::xml_attribute& attribute : element.attributes()) {
        const std::string_view name = LocalName(attribute.name());
        const bool isPrefixed = name.data() != attribute.name();
        if (!isPrefixed ? !IsDeclaration(attribute) : Attribute(element, name) == attribute)
            SetValue(dest, name, attribute.value());
    }
    return dest;
}

G_Dest ReadDestination(const pugi::xml_node& element, const DocumentStructure& structure)
{
    G_Dest dest = ReadDestination(element);
    if (element)
        ResolvePage(dest, structure);
    return dest;
}

void ResolvePage(G_Dest& dest, const DocumentStructure& structure)
{
    dest.pageIndex = structure.pageIndexById.value(dest.pageId, -1);
    if (dest.pageIndex < 0)
        ReportProblem(
            ProblemKind::DanglingReference,
            QCoreApplication::translate("OfdDocument", "A destination leads to the page %1, which does not exist.")
                .arg(quint32(dest.pageId)));
}

std::vector<pugi::xml_node> BookmarkLists(const pugi::xml_node& documentRoot)
{
    return ChildElements(documentRoot, "Bookmarks");
}

std::vector<pugi::xml_node> BookmarkElements(const pugi::xml_node& documentRoot)
{
    std::vector<pugi::xml_node> elements;
    for (const pugi::xml_node& list : BookmarkLists(documentRoot)) {
        const std::vector<pugi::xml_node> own = ChildElements(list, "Bookmark");
        elements.insert(elements.end(), own.begin(), own.end());
    }
    return elements;
}

TreeRoot ReadBookmarks(const XmlPart& document, const DocumentStructure& structure,
                       std::vector<std::shared_ptr<const BookmarkSource>>* sources)
{
    const std::vector<pugi::xml_node> lists = BookmarkLists(document.GetRoot());
    if (lists.empty())
        return nullptr;
    TellOfFurther(document, lists,
                  QCoreApplication::translate(
                      "OfdDocument", "The document has more than one list of bookmarks; they are read as one."));
    const XmlEdit edit(document);
    TreeRoot root(G_TreeNode::CreateRoot());
    for (const pugi::xml_node& element : BookmarkElements(document.GetRoot())) {
        const ProblemPlace place(0, document.PlaceOf(element));
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

bool IsOutlineEntry(std::string_view localName)
{
    return localName == "OutlineElem";
}

TreeRoot ReadOutline(const XmlPart& document, const DocumentStructure& structure,
                     std::shared_ptr<const ElementTree>* elements)
{
    const pugi::xml_node list = ChildElement(document.GetRoot(), "Outlines");
    if (!list)
        return nullptr;
    TellOfFurther(
        document, ChildElements(document.GetRoot(), "Outlines"),
        QCoreApplication::translate("OfdDocument", "The document has more than one outline; the first is shown."));
    *elements = std::make_shared<const ElementTree>(document.GetPackedBytes(), IsOutlineEntry, document.PlaceOf(list));
    TreeRoot root(G_TreeNode::CreateRoot());
    OutlineReader(document, structure, *elements).ReadInto(root.get());
    return root;
}

} // namespace ofd
