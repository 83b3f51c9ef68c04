#include "saving_desk.h"

#include <frame/document/payloads.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>
#include <tests/support/test_main.h>
#include <tests/support/tree_dump.h>

#include <QRandomGenerator>
#include <QtTest>

namespace {

constexpr int Rounds = 12;
constexpr int StepsARound = 60;

// A random outline with everything that an entry may hold, known and unknown.
QByteArray RandomEntries(QRandomGenerator& random, int depth)
{
    QByteArray xml;
    const int count = random.bounded(depth == 0 ? 6 : 4);
    for (int i = 0; i < count; ++i) {
        const QByteArray id = QByteArray::number(random.bounded(100'000));
        const QByteArray prefix = random.bounded(8) == 0 ? QByteArray() : QByteArray("ofd:");
        xml += random.bounded(3) == 0 ? "" : "\n";
        xml += '<' + prefix + "OutlineElem Title=\"e" + id + "\" extra='x" + id + "'";
        if (random.bounded(3) == 0)
            xml += " Expanded=\"false\"";
        xml += '>';
        if (random.bounded(2) == 0)
            xml += "<ofd:Actions><ofd:Action Event=\"CLICK\"><ofd:Goto><ofd:Dest Type=\"XYZ\" PageID=\"1\" Left=\"" +
                   id +
                   "\"/></ofd:Goto></ofd:Action><ofd:Action Event=\"CLICK\"><ofd:Movie ResourceID=\"1\"/>"
                   "</ofd:Action></ofd:Actions>";
        if (random.bounded(4) == 0)
            xml += "<!-- about " + id + " --><own:thing xmlns:own=\"urn:own\">kept " + id + "</own:thing>";
        if (depth < 4)
            xml += RandomEntries(random, depth + 1);
        xml += "</" + prefix + "OutlineElem>";
    }
    return xml;
}

QVector<G_TreeNode*> Nodes(G_TreeNode* root)
{
    QVector<G_TreeNode*> nodes{root};
    for (int i = 0; i < nodes.size(); ++i) {
        for (int row = 0; row < nodes[i]->SubNodeCount(); ++row)
            nodes.append(nodes[i]->SubNode(row));
    }
    return nodes;
}

G_OutlineItem* ItemOf(G_TreeNode* node)
{
    return dynamic_cast<G_OutlineItem*>(node->data);
}

// One edit of those that panes make, at a random place.
void EditOnce(G_TreeNode* root, QRandomGenerator& random, std::vector<std::unique_ptr<G_OutlineItem>>& undoCopies)
{
    const QVector<G_TreeNode*> nodes = Nodes(root);
    G_TreeNode* node = nodes[random.bounded(nodes.size())];
    G_TreeNode* other = nodes[random.bounded(nodes.size())];
    const int kind = random.bounded(7);
    if (kind == 0 || node == root) {
        auto* item = undoCopies.empty() || random.bounded(2) == 0
                         ? new G_OutlineItem
                         : new G_OutlineItem(*undoCopies[size_t(random.bounded(int(undoCopies.size())))]);
        if (item->text.IsEmpty())
            item->text = item->title = CCA_String("new" + QByteArray::number(random.bounded(1000)));
        node->AddSubNode(random.bounded(node->SubNodeCount() + 1), item);
    } else if (kind == 1) {
        undoCopies.push_back(std::make_unique<G_OutlineItem>(*ItemOf(node)));
        node->parent->RemoveSubNode(node->index);
    } else if (kind == 2) {
        ItemOf(node)->text = ItemOf(node)->title = CCA_String("named" + QByteArray::number(random.bounded(1000)));
    } else if (kind == 3) {
        ItemOf(node)->expanded = !ItemOf(node)->expanded;
    } else if (kind == 4) {
        auto* changed = new G_OutlineItem(*ItemOf(node)); // owned by the node below
        auto* action = new G_ActionGoto;
        action->dest->pageId = 1 + random.bounded(2);
        action->dest->pageIndex = action->dest->pageId - 1;
        action->dest->zoomMode = random.bounded(5) == 0 ? 1 : 0;
        changed->actions.Add(action);
        node->SetNodeData(changed);
    } else {
        const int room = other->SubNodeCount() - (node->parent == other ? 1 : 0);
        G_TreeNode::MoveSubNode(node->parent, node->index, other, random.bounded(room + 1)); // may be refused
    }
}

// What the format asks of an outline, as far as our own writing can break it: entries behind their actions, a title on
// each, no empty list.
QString FaultIn(const pugi::xml_node& parent, bool isOutline)
{
    bool hasEntries = false;
    for (pugi::xml_node child = ofd::FirstElement(parent); child; child = ofd::NextElement(child)) {
        if (ofd::IsElement(child, "Actions") && hasEntries)
            return QStringLiteral("actions behind an entry");
        if (ofd::IsElement(child, "Actions") && !ofd::ChildElement(child, "Action"))
            return QStringLiteral("an empty list of actions");
        if (!ofd::IsElement(child, "OutlineElem"))
            continue;
        hasEntries = true;
        if (!ofd::HasAttribute(child, "Title"))
            return QStringLiteral("no title");
        const QString below = FaultIn(child, false);
        if (!below.isEmpty())
            return below;
    }
    return isOutline && !hasEntries ? QStringLiteral("an empty outline") : QString();
}

} // namespace

// Random edits, saves and reopenings: what is in memory is in the file, and nothing else changed.
class TestSaveOutlineRandom : public QObject
{
    Q_OBJECT

private slots:
    void editsOfAnyKindComeBack_data();
    void editsOfAnyKindComeBack();
};

void TestSaveOutlineRandom::editsOfAnyKindComeBack_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 8; ++seed)
        QTest::newRow(qPrintable(QStringLiteral("seed %1").arg(seed))) << seed;
    const quint32 fresh = QRandomGenerator::system()->generate();
    QTest::newRow(qPrintable(QStringLiteral("seed %1").arg(fresh))) << fresh;
}

void TestSaveOutlineRandom::editsOfAnyKindComeBack()
{
    QFETCH(const quint32, seed);
    QRandomGenerator random(seed);
    const SavingDesk desk;
    const QByteArray tail = "<ofd:Outlines>" + RandomEntries(random, 0) + "\n</ofd:Outlines><ofd:VPreferences/>";
    const OfdFile file = OfdFile::WithPages(2).Tail(tail).Set(QStringLiteral("Unknown/part.bin"), "bytes");
    const QString original = file.Write(desk.Path(QStringLiteral("original.ofd")));
    const QString path = file.Write(desk.Path(QStringLiteral("edited.ofd")));
    const auto document = desk.Open(path);
    std::vector<std::unique_ptr<G_OutlineItem>> undoCopies;
    for (int round = 0; round < Rounds; ++round) {
        for (int step = 0; step < StepsARound; ++step)
            EditOnce(document->GetOutlineRoot(), random, undoCopies);
        const ofd::DocumentSaveResult result = document->Save();
        QVERIFY2(result, qPrintable(result.error));
        QVERIFY(!document->IsModified());
        const auto reopened = desk.Open(path);
        const bool isEmpty = document->GetOutlineRoot()->SubNodeCount() == 0;
        QCOMPARE(reopened->GetOutlineRoot() == nullptr, isEmpty);
        if (!isEmpty)
            QCOMPARE(DumpTree(reopened->GetOutlineRoot()), DumpTree(document->GetOutlineRoot()));
        const auto part = ofd::XmlPart::Parse(DocumentPart, PartOf(path, DocumentPart));
        QVERIFY(part);
        const pugi::xml_node list = ofd::ChildElement(part->GetRoot(), "Outlines");
        QCOMPARE(list ? FaultIn(list, true) : QString(), QString());
        // All around the outline is as it was.
        QByteArray around = part->GetBytes();
        const int begin = around.indexOf("<ofd:Outlines");
        const QByteArray endTag = "</ofd:Outlines>";
        if (begin >= 0)
            around.remove(begin, around.indexOf(endTag) + endTag.size() - begin);
        QByteArray expected = file.Part(DocumentPart);
        QCOMPARE(around, expected.replace(tail, "<ofd:VPreferences/>"));
        QVERIFY(DifferingParts(original, path) == QStringList(DocumentPart));
    }
}

TETO_TEST_MAIN(TestSaveOutlineRandom)

#include "test_save_outline_random.moc"
