#include "action_writer.h"

#include "child_order.h"
#include "destination_writer.h"

#include <ofd/model/structure.h>
#include <ofd/package/xml_edit.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>
#include <ofd/package/xml_text.h>
#include <ofd/parse/outline_reader.h>

#include <QHash>

namespace ofd {

namespace {

QString TextOf(const CCA_String& text)
{
    return QString::fromUtf8(text.Bytes());
}

bool IsSame(const ActionValue& a, const ActionValue& b)
{
    return a.xml == b.xml && a.type == b.type && a.dest == b.dest && a.bookmarkName == b.bookmarkName && a.uri == b.uri;
}

bool CanBeWritten(const G_Action* action)
{
    return action && (!action->opaque.IsEmpty() || dynamic_cast<const G_ActionGoto*>(action) ||
                      dynamic_cast<const G_ActionUri*>(action));
}

std::vector<G_Action*> WritableActions(const G_OutlineItem& item)
{
    std::vector<G_Action*> actions;
    for (G_Action* action : item.actions) {
        if (CanBeWritten(action))
            actions.push_back(action);
    }
    return actions;
}

void AppendTarget(XmlFragment& xml, const ActionValue& value, const DocumentStructure& structure)
{
    if (value.bookmarkName.IsEmpty())
        AppendDestination(xml, value.dest, structure);
    else
        xml.Open("Bookmark").Attribute("Name", TextOf(value.bookmarkName)).Close();
}

QByteArray NewAction(const ActionValue& value, const QByteArray& prefix, const DocumentStructure& structure)
{
    XmlFragment xml(prefix);
    xml.Open("Action").Attribute("Event", QStringLiteral("CLICK"));
    if (value.type == G_Action::Uri) {
        xml.Open("URI").Attribute("URI", TextOf(value.uri));
    } else {
        xml.Open("Goto");
        AppendTarget(xml, value, structure);
    }
    return xml.GetBytes();
}

// Changes in an action's element what differs from what it said; its region and what we do not know stay.
void EditAction(XmlEdit& edit, const pugi::xml_node& element, const ActionValue& old, const ActionValue& value,
                const DocumentStructure& structure)
{
    if (!(value.uri == old.uri))
        edit.SetAttribute(ChildElement(element, "URI"), "URI", TextOf(value.uri));
    const bool isSameTarget = value.dest == old.dest && value.bookmarkName == old.bookmarkName;
    const pugi::xml_node jump = ChildElement(element, "Goto");
    if (isSameTarget || !jump)
        return;
    const pugi::xml_node dest = ChildElement(jump, "Dest");
    if (dest) {
        EditDestination(edit, dest, value.dest, structure);
        return;
    }
    // The bookmark was only the way to a destination that is another now.
    ActionValue target = value;
    if (value.bookmarkName == old.bookmarkName)
        target.bookmarkName = CCA_String();
    XmlFragment xml(PrefixOf(jump));
    AppendTarget(xml, target, structure);
    edit.ReplaceElement(ChildElement(jump, "Bookmark"), xml.GetBytes());
}

// The element of an action that stands nowhere in the entry: a new one, or one that moved or came from another.
QByteArray ActionBytes(const ActionValue& value, const ActionValue* saved, const QByteArray& prefix,
                       const DocumentStructure& structure)
{
    const std::unique_ptr<XmlPart> part = value.xml.IsEmpty() ? nullptr : XmlPart::Parse(QString(), value.xml.Bytes());
    if (!part)
        return NewAction(value, prefix, structure);
    ActionValue old = value;
    if (saved)
        old = *saved;
    else if (const pugi::xml_node dest = Descend(part->GetRoot(), {"Goto", "Dest"}))
        old.dest = ReadDestination(dest, structure);
    XmlEdit edit(*part);
    EditAction(edit, part->GetRoot(), old, value, structure);
    return edit.IsEmpty() ? value.xml.Bytes() : edit.Apply();
}

// Tells actions that may be each other's element: by that, or by their kind when the element was plain.
QByteArray KeyOf(const QByteArray& xml, int type)
{
    return xml.isEmpty() ? QByteArray::number(type) : xml;
}

// For each action the position of its element among the saved ones, -1 when it has none there.
std::vector<int> MatchActions(const std::vector<G_Action*>& actions, const std::vector<ActionValue>& saved)
{
    QHash<QByteArray, QVector<int>> places;
    for (int i = int(saved.size()) - 1; i >= 0; --i)
        places[KeyOf(saved[size_t(i)].xml.Bytes(), saved[size_t(i)].type)].append(i);
    std::vector<int> matches;
    for (const G_Action* action : actions) {
        const auto place = places.find(KeyOf(action->opaque.Bytes(), action->actionType));
        const bool isFound = place != places.end() && !place->isEmpty();
        matches.push_back(isFound ? place->takeLast() : -1);
    }
    return matches;
}

} // namespace

bool AreActionsChanged(const G_OutlineItem& item, const std::vector<ActionValue>& saved)
{
    size_t at = 0;
    for (const G_Action* action : item.actions) {
        if (!CanBeWritten(action))
            continue;
        if (at == saved.size() || !IsSame(ValueOf(*action), saved[at]))
            return true;
        ++at;
    }
    return at != saved.size();
}

void EditActions(XmlEdit& edit, const pugi::xml_node& entry, const G_OutlineItem& item,
                 const std::vector<ActionValue>& saved, const DocumentStructure& structure)
{
    const pugi::xml_node list = ChildElement(entry, "Actions");
    const std::vector<G_Action*> actions = WritableActions(item);
    if (actions.empty()) {
        edit.Remove(list);
        return;
    }
    if (!list) {
        XmlFragment xml(PrefixOf(entry));
        AppendActions(xml, PrefixOf(entry), item, structure);
        edit.PrependChild(entry, xml.GetBytes());
        return;
    }
    const std::vector<pugi::xml_node> elements = ChildElements(list, "Action");
    const std::vector<int> matches = MatchActions(actions, saved);
    const std::vector<bool> stays = ArrangeChildren(edit, list, elements, matches, [&](int i) {
        const int place = matches[size_t(i)];
        return ActionBytes(ValueOf(*actions[size_t(i)]), place < 0 ? nullptr : &saved[size_t(place)], PrefixOf(list),
                           structure);
    });
    for (size_t i = 0; i < actions.size(); ++i) {
        const size_t place = size_t(matches[i]);
        if (stays[i])
            EditAction(edit, elements[place], saved[place], ValueOf(*actions[i]), structure);
    }
}

void AppendActions(XmlFragment& xml, const QByteArray& prefix, const G_OutlineItem& item,
                   const DocumentStructure& structure)
{
    const std::vector<G_Action*> actions = WritableActions(item);
    if (actions.empty())
        return;
    xml.Open("Actions");
    for (const G_Action* action : actions)
        xml.Raw(ActionBytes(ValueOf(*action), nullptr, prefix, structure));
    xml.Close();
}

void AdoptActions(G_OutlineItem& item, std::vector<ActionValue>& read)
{
    const std::vector<G_Action*> actions = WritableActions(item);
    for (size_t i = 0; i < actions.size() && i < read.size(); ++i) {
        actions[i]->opaque = read[i].xml;
        read[i] = ValueOf(*actions[i]);
    }
}

} // namespace ofd
