#include "tree_dump.h"

#include <frame/base/converters.h>
#include <frame/document/payloads.h>

#include <QStringList>
#include <QVector>

namespace {

QString DestText(const G_Dest& dest)
{
    return QStringLiteral(" -> %1/%2 (%3,%4,%5,%6) x%7 mode %8")
        .arg(dest.pageId)
        .arg(dest.pageIndex)
        .arg(double(dest.left))
        .arg(double(dest.top))
        .arg(double(dest.right))
        .arg(double(dest.bottom))
        .arg(double(dest.zoom))
        .arg(dest.zoomMode);
}

QString ActionText(const G_Action* action)
{
    if (const auto* go = dynamic_cast<const G_ActionGoto*>(action))
        return DestText(*go->dest);
    if (const auto* address = dynamic_cast<const G_ActionUri*>(action))
        return QStringLiteral(" -> ") + GQ_ToQStringFromUtf8(address->uri);
    return action ? QStringLiteral(" -> action %1").arg(action->actionType) : QStringLiteral(" -> no action");
}

QString TagText(const G_CustomTagItem& tag)
{
    QString text;
    const QVector<CCA_String> attributes = tag.attributes.Values();
    for (const CCA_String& attribute : attributes)
        text += QStringLiteral(" [%1]").arg(GQ_ToQStringFromUtf8(attribute));
    const QVector<G_PageObjRef*> refs = tag.objects.Values();
    for (const G_PageObjRef* ref : refs) {
        QStringList ids;
        for (const int id : ref->objectIds)
            ids.append(QString::number(id));
        text += QStringLiteral(" {%1:%2}").arg(ref->pageId).arg(ids.join(QLatin1Char(',')));
    }
    return text;
}

QString RecordText(const G_NodeData* data)
{
    if (const auto* bookmark = dynamic_cast<const G_Bookmark*>(data))
        return DestText(*bookmark->dest);
    if (const auto* tag = dynamic_cast<const G_CustomTagItem*>(data))
        return TagText(*tag);
    QString text;
    if (const auto* item = dynamic_cast<const G_OutlineItem*>(data)) {
        if (!item->expanded)
            text += QStringLiteral(" closed");
        for (const G_Action* action : item->actions)
            text += ActionText(action);
    }
    return text;
}

QString MisfitText(G_TreeNode* node, G_TreeNode* parent, int index)
{
    QString text;
    if (node->level != parent->level + 1)
        text += QStringLiteral(" !level");
    if (node->index != index)
        text += QStringLiteral(" !index");
    if (node->parent != parent)
        text += QStringLiteral(" !parent");
    return text;
}

struct Place
{
    G_TreeNode* parent = nullptr; // not owned
    int index = 0;
    int depth = 0;
};

QString Dump(G_TreeNode* root, bool withRecords)
{
    if (!root)
        return QStringLiteral("no tree");
    QString text;
    QVector<Place> pending;
    const auto push = [&pending](G_TreeNode* parent, int depth) {
        for (int i = parent->SubNodeCount() - 1; i >= 0; --i)
            pending.append({parent, i, depth});
    };
    push(root, 0);
    while (!pending.isEmpty()) {
        const Place place = pending.takeLast();
        G_TreeNode* node = place.parent->SubNode(place.index);
        text += QString(place.depth * 2, QLatin1Char(' ')) + GQ_ToQStringFromUtf8(node->NodeText());
        if (withRecords)
            text += RecordText(node->data);
        text += MisfitText(node, place.parent, place.index) + QLatin1Char('\n');
        push(node, place.depth + 1);
    }
    return text;
}

} // namespace

QString DumpTree(G_TreeNode* root)
{
    return Dump(root, true);
}

QString DumpNames(G_TreeNode* root)
{
    return Dump(root, false);
}
