#include <common/public_method.h>
#include <common/text_rules.h>
#include <frame/document/memory_document.h>
#include <tests/support/test_main.h>

#include <QtTest>

namespace {

QString UniqueName(const char* outlineText, const QString& wanted)
{
    const auto document = MemoryDocument::FromText(outlineText);
    QString name = wanted;
    PublicMethod::MakeUniqueNodeName(document->GetOutlineRoot(), name);
    return name;
}

QString TipOf(const QList<QByteArray>& attributes)
{
    auto* item = new G_CustomTagItem;
    item->tagName = "Buyer";
    for (const QByteArray& attribute : attributes)
        item->attributes.Add(attribute);
    const std::unique_ptr<G_TreeNode> root(G_TreeNode::CreateRoot());
    return PublicMethod::FormatNodeTip(root->AddSubNode(0, item));
}

} // namespace

// How names are kept apart and shown.
class TestNames : public QObject
{
    Q_OBJECT

private slots:
    void aFreeNameStaysAsItIs()
    {
        QCOMPARE(UniqueName("outline \"A\"\noutline \"B\"\n", "C"), QStringLiteral("C"));
        QCOMPARE(UniqueName("outline \"a\"\n", "A"), QStringLiteral("A"));
    }

    void aTakenNameGetsTheFirstFreeNumber()
    {
        QCOMPARE(UniqueName("outline \"A\"\n", "A"), QStringLiteral("A(1)"));
        QCOMPARE(UniqueName("outline \"A\"\noutline \"A(1)\"\n", "A"), QStringLiteral("A(2)"));
        QCOMPARE(UniqueName("outline \"A\"\noutline \"A(2)\"\n", "A"), QStringLiteral("A(1)"));
    }

    void namesAtEveryDepthCount()
    {
        QCOMPARE(UniqueName("outline \"B\"\n  outline \"C\"\n    outline \"A\"\n", "A"), QStringLiteral("A(1)"));
    }

    void percentSignsInANameAreNoPlaceholders()
    {
        QCOMPARE(UniqueName("outline \"%1\"\n", "%1"), QStringLiteral("%1(1)"));
    }

    void withoutATreeEveryNameIsFree()
    {
        QString name = QStringLiteral("A");
        PublicMethod::MakeUniqueNodeName(nullptr, name);
        QCOMPARE(name, QStringLiteral("A"));
    }

    void textsAreCollectedInPreOrder()
    {
        const auto document = MemoryDocument::FromText("outline \"A\"\n  outline \"B\"\noutline \"C\"\n");
        QStringList texts;
        PublicMethod::CollectNodeTexts(document->GetOutlineRoot(), texts);
        QCOMPARE(texts, (QStringList{"A", "B", "C"}));
    }

    void theTipOfATagWithOneAttributeIsTheHeadingAlone() { QCOMPARE(TipOf({"code=12"}), QStringLiteral("Buyer:")); }

    void theTipOfATagWithoutAttributesIsTheHeadingAlone() { QCOMPARE(TipOf({}), QStringLiteral("Buyer:")); }

    void theFirstAttributeCountsForTheWidthButIsNotShown()
    {
        QCOMPARE(TipOf({"longest=1", "a=2", "bcd=3"}), QStringLiteral("Buyer:\na       2\nbcd     3"));
    }

    void atMostFiveAttributesAreRead()
    {
        QCOMPARE(TipOf({"a=1", "b=2", "c=3", "d=4", "e=5", "muchlonger=6"}),
                 QStringLiteral("Buyer:\nb 2\nc 3\nd 4\ne 5"));
    }

    void missingPartsOfAnAttributeAreEmpty()
    {
        QCOMPARE(TipOf({"a=1", "bb", "=3", "d=4=5"}), QStringLiteral("Buyer:\nbb \n   3\nd  4"));
    }

    void aTextIsCutToItsFirstCharactersAndNeverThroughOne_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("most");
        QTest::addColumn<QString>("cut");
        const QString smile = QString::fromUtf8("\xF0\x9F\x98\x80"); // two code units
        QTest::newRow("shorter") << QStringLiteral("ab") << 3 << QStringLiteral("ab");
        QTest::newRow("just as long") << QStringLiteral("abc") << 3 << QStringLiteral("abc");
        QTest::newRow("longer") << QStringLiteral("abcd") << 3 << QStringLiteral("abc");
        QTest::newRow("nothing is left") << QStringLiteral("abcd") << 0 << QString();
        QTest::newRow("through a character") << "ab" + smile + "c" << 3 << QStringLiteral("ab");
        QTest::newRow("behind a character") << "a" + smile + "c" << 3 << "a" + smile;
        QTest::newRow("through the only one") << smile << 1 << QString();
        QTest::newRow("a half that the text brought")
            << QStringLiteral("ab") + QChar(0xD83D) + "c" << 3 << QStringLiteral("ab") + QChar(0xD83D);
    }

    void aTextIsCutToItsFirstCharactersAndNeverThroughOne()
    {
        QFETCH(QString, text);
        QFETCH(int, most);
        QFETCH(QString, cut);
        QCOMPARE(CutText(text, most), cut);
    }

    void onlyBlanksAreCutAndOnlyAtTheEnds_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("cut");
        QTest::newRow("none") << "ab"
                              << "ab";
        QTest::newRow("inside") << "a b"
                                << "a b";
        QTest::newRow("both ends") << "  a b "
                                   << "a b";
        QTest::newRow("tabs stay") << "\ta\n"
                                   << "\ta\n";
        QTest::newRow("ideographic blank stays") << QString(QChar(0x3000)) << QString(QChar(0x3000));
        QTest::newRow("blanks only") << "   "
                                     << "";
        QTest::newRow("empty") << ""
                               << "";
    }

    void onlyBlanksAreCutAndOnlyAtTheEnds()
    {
        QFETCH(QString, text);
        QFETCH(QString, cut);
        QCOMPARE(RemoveBlanks(text), cut);
    }
};

TETO_TEST_MAIN(TestNames)
#include "test_names.moc"
