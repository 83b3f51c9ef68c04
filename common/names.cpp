#include "public_method.h"

#include <frame/base/converters.h>
#include <frame/document/payloads.h>
#include <frame/document/tree_node.h>

#include <QSet>

#include <algorithm>
#include <vector>

void PublicMethod::CollectNodeTexts(const G_TreeNode* node, QStringList& texts)
{
    if (!node)
        return;
    std::vector<const G_TreeNode*> waiting{node};
    while (!waiting.empty()) {
        const G_TreeNode* next = waiting.back();
        waiting.pop_back();
        if (next != node)
            texts.append(GQ_ToQStringFromUtf8(next->NodeText()));
        for (int i = next->SubNodeCount() - 1; i >= 0; --i)
            waiting.push_back(next->SubNode(i));
    }
}

void PublicMethod::MakeUniqueNodeName(G_TreeNode* root, QString& name)
{
    QStringList texts;
    CollectNodeTexts(root, texts);
    const QSet<QString> taken(texts.cbegin(), texts.cend());
    QString candidate = name;
    for (int n = 1; taken.contains(candidate); ++n)
        candidate = name + QStringLiteral("(%1)").arg(n);
    name = candidate;
}

QString PublicMethod::FormatNodeTip(const G_TreeNode* node)
{
    if (!node)
        return QString();
    struct Attribute
    {
        QString name;
        QString value;
    };
    constexpr int mostRead = 5;
    QList<Attribute> attributes;
    int width = 0;
    if (const auto* item = dynamic_cast<const G_CustomTagItem*>(node->data)) {
        const QVector<CCA_String> texts = item->attributes.Values();
        for (const CCA_String& text : texts.mid(0, mostRead)) {
            const QStringList parts = GQ_ToQStringFromUtf8(text).split(QLatin1Char('='), Qt::KeepEmptyParts);
            attributes.append({parts.value(0), parts.value(1)});
            width = std::max(width, parts.value(0).size());
        }
    }
    QStringList lines{GQ_ToQStringFromUtf8(node->NodeText()) + QLatin1Char(':')};
    // The first attribute counts for the width and is not shown: it repeats what the heading says.
    for (int i = 1; i < attributes.size(); ++i)
        lines.append(attributes.at(i).name.leftJustified(width + 1) + attributes.at(i).value);
    return lines.join(QLatin1Char('\n'));
}
