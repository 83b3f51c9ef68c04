#include "saving_desk.h"
#include "tag_file.h"

#include <tests/support/test_main.h>
#include <tests/support/tree_dump.h>

#include <QRandomGenerator>
#include <QtTest>

// Tags that are edited at random come back as they were saved.
class TestSaveTagsRandom : public QObject
{
    Q_OBJECT

private slots:
    void init() { desk = std::make_unique<SavingDesk>(); }

    void randomEditsComeBack_data();
    void randomEditsComeBack();

private:
    std::unique_ptr<SavingDesk> desk;
};

void TestSaveTagsRandom::randomEditsComeBack_data()
{
    QTest::addColumn<quint32>("seed");
    for (const quint32 seed : {1U, 2U, 3U, 4U, 5U, 6U, 2161263774U})
        QTest::newRow(qPrintable(QStringLiteral("seed %1").arg(seed))) << seed;
    const quint32 fresh = QRandomGenerator::system()->generate();
    QTest::newRow(qPrintable(QStringLiteral("seed %1").arg(fresh))) << fresh;
}

void TestSaveTagsRandom::randomEditsComeBack()
{
    QFETCH(const quint32, seed);
    QRandomGenerator random(seed);
    const QString path = File().Write(desk->Path(QStringLiteral("a.ofd")));
    const auto document = desk->Open(path);
    document->AddCustomTagRoot("second", "s", "urn:s", 0);
    for (int step = 0; step < 400; ++step) {
        QVector<G_TreeNode*> nodes;
        for (int root = 0; root < 2; ++root)
            nodes.append(NodeAt(*document, "", root));
        for (int i = 0; i < nodes.size(); ++i) {
            for (int row = 0; row < nodes[i]->SubNodeCount(); ++row)
                nodes.append(nodes[i]->SubNode(row));
        }
        G_TreeNode* node = nodes[random.bounded(nodes.size())];
        G_TreeNode* other = nodes[random.bounded(nodes.size())];
        const CCA_String name("tag " + QByteArray::number(random.bounded(50)));
        const bool isTop = node->level == 1;
        switch (random.bounded(5)) {
        case 0:
            node->AddSubNode(random.bounded(node->SubNodeCount() + 1), NewTag(name));
            break;
        case 1:
            node->SetNodeData(NewTag(name));
            break;
        case 2:
            if (!isTop && nodes.size() > 6)
                node->parent->RemoveSubNode(node->index);
            break;
        case 3:
            if (!isTop)
                G_TreeNode::MoveSubNode(node->parent, node->index, other,
                                        random.bounded(other->SubNodeCount() + (node->parent == other ? 0 : 1)));
            break;
        default:
            auto* tag = new G_CustomTagItem(*dynamic_cast<G_CustomTagItem*>(node->data)); // owned by the node
            if (tag->objects.GetSize() == 0)
                tag->objects.Add(new G_PageObjRef{1, {}});
            tag->objects.GetAt(0)->objectIds.append(1 + random.bounded(99));
            node->SetNodeData(tag);
        }
        if (step % 40 != 39)
            continue;
        const ofd::DocumentSaveResult result = document->Save();
        QVERIFY2(result, qPrintable(result.error));
        QVERIFY(!document->IsModified());
        const auto reopened = desk->Open(path);
        for (int root = 0; root < 2; ++root)
            QCOMPARE(DumpTree(reopened->CustomTagRoot(root)), DumpTree(document->CustomTagRoot(root)));
    }
}

TETO_TEST_MAIN(TestSaveTagsRandom)

#include "test_save_tags_random.moc"
