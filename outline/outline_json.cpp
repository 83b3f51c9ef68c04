#include "outline_json.h"

#include <frame/document/tree_node.h>

namespace {

constexpr char indexKey[] = "index";
constexpr char levelKey[] = "level";

OVJson Place(const G_TreeNode* node)
{
    OVJson place;
    place.SetInt(indexKey, node->index);
    place.SetInt(levelKey, node->level);
    return place;
}

QString TextOf(const OVJson& json)
{
    return QString::fromUtf8(OVJsonFactory::BuildJsonString(std::make_shared<OVJson>(json)));
}

QByteArray NumberedKey(const char* name, int number)
{
    return name + QByteArray::number(number);
}

// Null for a null parent: a path that broke once stays broken.
G_TreeNode* Below(const G_TreeNode* parent, const OVJson& place)
{
    return parent ? parent->SubNode(place.Member(indexKey).ToInt(-1)) : nullptr;
}

} // namespace

namespace OutlineJson {

OVJson AncestorWalk(const G_TreeNode* node)
{
    OVJson walk = OVJson::MakeArray();
    for (; node && node->level != 0; node = node->parent)
        walk.Append(Place(node));
    return walk;
}

G_TreeNode* NodeAt(G_TreeNode* root, const OVJson& walk, int begin)
{
    G_TreeNode* node = root;
    for (int i = walk.Size() - 1; i >= begin; --i)
        node = Below(node, walk.At(i));
    return node;
}

QString AddText(int row, const G_TreeNode* parent)
{
    OVJson walk = AncestorWalk(parent);
    walk.InsertInt(0, row);
    return TextOf(walk);
}

QString WalkText(const G_TreeNode* node)
{
    return TextOf(AncestorWalk(node));
}

QString BatchAddText(const QStringList& titles, int row, const G_TreeNode* parent)
{
    OVJson lines = OVJson::MakeArray();
    for (int i = 0; i < titles.size(); ++i) {
        OVJson line = OVJson::MakeArray();
        line.Append(titles.at(i));
        line.Append(row + i);
        for (const G_TreeNode* node = parent; node && node->level != 0; node = node->parent)
            line.Append(Place(node));
        lines.Append(line);
    }
    return TextOf(lines);
}

QString DeleteText(const QList<G_TreeNode*>& nodes)
{
    OVJson entries = OVJson::MakeArray();
    for (int i = 0; i < nodes.size(); ++i) {
        OVJson positions;
        int number = 1;
        for (const G_TreeNode* node = nodes.at(i); node && node->level != 0; node = node->parent)
            positions.SetObject(NumberedKey("position", number++), Place(node));
        OVJson entry;
        entry.SetObject(NumberedKey("outline", i + 1), positions);
        entries.Append(entry);
    }
    return TextOf(entries);
}

QList<G_TreeNode*> NodesOfDeleteText(G_TreeNode* root, const OVJson& json)
{
    QList<G_TreeNode*> nodes;
    for (int i = 0; i < json.Size(); ++i) {
        const OVJson positions = json.At(i).Member(NumberedKey("outline", i + 1));
        G_TreeNode* node = root;
        for (int number = positions.MemberCount(); number >= 1; --number)
            node = Below(node, positions.Member(NumberedKey("position", number)));
        if (node && node != root)
            nodes.append(node);
    }
    return nodes;
}

OVSharedPtr<OVJson> Parse(const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    return OVJsonFactory::ParseJsonString(bytes.constData(), bytes.size(), nullptr);
}

} // namespace OutlineJson
