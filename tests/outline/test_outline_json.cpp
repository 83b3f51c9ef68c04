#include <frame/document/tree_node.h>
#include <outline/outline_json.h>
#include <tests/support/test_main.h>
#include <tests/support/tree_dump.h>

#include <frame/document/memory_document.h>

#include <QtTest>

// How operations are told what to act on.
class TestOutlineJson : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        document = MemoryDocument::FromText("page 210 297\n"
                                            "outline \"A\"\n"
                                            "outline \"B\"\n"
                                            "  outline \"B1\"\n"
                                            "  outline \"B2\"\n"
                                            "    outline \"B2a\"\n");
        root = document->GetOutlineRoot();
    }

    void aWalkBeginsAtTheNodeAndLeavesTheRootOut()
    {
        QCOMPARE(OutlineJson::WalkText(Deepest()),
                 QStringLiteral("[{\"index\":0,\"level\":3},{\"index\":1,\"level\":2},{\"index\":1,\"level\":1}]"));
        QCOMPARE(OutlineJson::WalkText(root), QStringLiteral("[]"));
        QCOMPARE(OutlineJson::WalkText(nullptr), QStringLiteral("[]"));
    }

    void anAdditionBeginsWithTheRow()
    {
        QCOMPARE(OutlineJson::AddText(-1, root), QStringLiteral("[-1]"));
        QCOMPARE(OutlineJson::AddText(3, root->SubNode(1)), QStringLiteral("[3,{\"index\":1,\"level\":1}]"));
    }

    void aBatchHasOneArrayALineWithRowsCountingUp()
    {
        QCOMPARE(OutlineJson::BatchAddText({"x", "12"}, 4, root->SubNode(1)),
                 QStringLiteral("[[\"x\",4,{\"index\":1,\"level\":1}],[\"12\",5,{\"index\":1,\"level\":1}]]"));
    }

    void aDeletionNumbersEntriesAndPositionsFromOne()
    {
        QCOMPARE(OutlineJson::DeleteText({root->SubNode(0), Deepest()}),
                 QStringLiteral("[{\"outline1\":{\"position1\":{\"index\":0,\"level\":1}}},"
                                "{\"outline2\":{\"position1\":{\"index\":0,\"level\":3},"
                                "\"position2\":{\"index\":1,\"level\":2},\"position3\":{\"index\":1,\"level\":1}}}]"));
        QCOMPARE(OutlineJson::DeleteText({}), QStringLiteral("[]"));
    }

    void everyPlaceIsFoundAgain()
    {
        const QList<G_TreeNode*> nodes{root->SubNode(0), root->SubNode(1), root->SubNode(1)->SubNode(0), Deepest()};
        for (G_TreeNode* node : nodes) {
            QCOMPARE(OutlineJson::NodeAt(root, *OutlineJson::Parse(OutlineJson::WalkText(node))), node);
            QCOMPARE(OutlineJson::NodeAt(root, *OutlineJson::Parse(OutlineJson::AddText(7, node)), 1), node);
        }
        QCOMPARE(OutlineJson::NodesOfDeleteText(root, *OutlineJson::Parse(OutlineJson::DeleteText(nodes))), nodes);
        QCOMPARE(OutlineJson::NodeAt(root, *OutlineJson::Parse("[]")), root);
    }

    void aPlaceThatIsGoneIsNull_data()
    {
        QTest::addColumn<QString>("walk");
        QTest::newRow("row behind the last") << "[{\"index\":2,\"level\":1}]";
        QTest::newRow("broken above") << "[{\"index\":0,\"level\":2},{\"index\":9,\"level\":1}]";
        QTest::newRow("negative") << "[{\"index\":-1,\"level\":1}]";
        QTest::newRow("no index") << "[{\"level\":1}]";
        QTest::newRow("no object") << "[\"text\"]";
    }

    void aPlaceThatIsGoneIsNull()
    {
        QFETCH(QString, walk);
        QCOMPARE(OutlineJson::NodeAt(root, *OutlineJson::Parse(walk)), nullptr);
    }

    void aDeletionLeavesOutWhatIsGoneAndNeverNamesTheRoot()
    {
        const QString text =
            "[{\"outline1\":{\"position1\":{\"index\":5,\"level\":1}}},{\"outline2\":{}},{\"other\":1},"
            "{\"outline4\":{\"position1\":{\"index\":1,\"level\":1}}}]";
        QCOMPARE(OutlineJson::NodesOfDeleteText(root, *OutlineJson::Parse(text)), QList<G_TreeNode*>{root->SubNode(1)});
    }

    void withoutATreeThereIsNoPlace()
    {
        QCOMPARE(OutlineJson::NodeAt(nullptr, *OutlineJson::Parse("[]")), nullptr);
        QVERIFY(OutlineJson::NodesOfDeleteText(nullptr, *OutlineJson::Parse(OutlineJson::DeleteText({Deepest()})))
                    .isEmpty());
    }

    void emptyAndMalformedTextsAreNull()
    {
        for (const char* text : {"", "[", "text", "[1]]"})
            QVERIFY2(!OutlineJson::Parse(text), text);
    }

    void titlesOfAnyKindComeThrough()
    {
        const QStringList titles{"\"quoted\" \\ back", "目录 一", QString(10000, 'x'), "<b>&amp;", "\t"};
        const OVSharedPtr<OVJson> lines = OutlineJson::Parse(OutlineJson::BatchAddText(titles, -1, root));
        QVERIFY(lines);
        QCOMPARE(lines->Size(), titles.size());
        for (int i = 0; i < titles.size(); ++i)
            QCOMPARE(lines->At(i).At(0).ToQString(), titles.at(i));
        QCOMPARE(lines->At(0).At(1).ToInt(7), -1);
    }

private:
    G_TreeNode* Deepest() const { return root->SubNode(1)->SubNode(1)->SubNode(0); }

    std::unique_ptr<MemoryDocument> document;
    G_TreeNode* root = nullptr;
};

TETO_TEST_MAIN(TestOutlineJson)
#include "test_outline_json.moc"
