#include <bookmark/bookmark_names.h>
#include <bookmark/bookmark_node.h>
#include <frame/base/converters.h>
#include <frame/document/memory_document.h>
#include <tests/support/test_main.h>

#include <QRandomGenerator>
#include <QtTest>

#include <memory>

namespace {

std::unique_ptr<G_TreeNode> ListOf(const QStringList& names)
{
    std::unique_ptr<G_TreeNode> root(G_TreeNode::CreateRoot());
    for (const QString& name : names) {
        auto* bookmark = new G_Bookmark;
        bookmark->name = GQ_ToCAS(name);
        root->AddSubNode(root->SubNodeCount(), bookmark);
    }
    return root;
}

QString NewName(const QStringList& names, const QString& base)
{
    return FreeBookmarkName(base, ListOf(names).get());
}

// The rule in its plain form: candidates are compared with all names, one after the other.
QString PlainRule(const QStringList& names, const QString& base)
{
    int similar = 0;
    for (const QString& name : names)
        similar += name.indexOf(base) >= 0 ? 1 : 0;
    if (similar == 0)
        return base;
    QString candidate;
    for (int n = 0; n <= similar; ++n) {
        candidate = n == 0 ? base : base + QStringLiteral("(") + QString::number(n) + QStringLiteral(")");
        if (!names.contains(candidate))
            break;
    }
    return candidate;
}

} // namespace

// The name that a new bookmark gets.
class TestBookmarkNames : public QObject
{
    Q_OBJECT

private slots:
    void aNameThatNoOtherContainsStays()
    {
        QCOMPARE(NewName({}, "a"), QStringLiteral("a"));
        QCOMPARE(NewName({"b", "A"}, "a"), QStringLiteral("a"));
    }

    void takenNumbersAreSkippedAndGapsAreFilled_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QString>("result");
        QTest::newRow("taken") << QStringList{"a"} << "a(1)";
        QTest::newRow("two taken") << QStringList{"a", "a(1)"} << "a(2)";
        QTest::newRow("a gap") << QStringList{"a", "a(2)", "x"} << "a(1)";
        QTest::newRow("only contained") << QStringList{"banana"} << "a";
        QTest::newRow("number taken, name free") << QStringList{"a(1)"} << "a";
        QTest::newRow("doubles") << QStringList{"a", "a", "a"} << "a(1)";
        QTest::newRow("leading zero is another name") << QStringList{"a", "a(01)"} << "a(1)";
        QTest::newRow("sign is another name") << QStringList{"a", "a(+1)"} << "a(1)";
        QTest::newRow("zero is never a candidate") << QStringList{"a", "a(0)"} << "a(1)";
        QTest::newRow("other digits are another name") << QStringList{"a", QStringLiteral("a(\u0661)")} << "a(1)";
        QTest::newRow("trailing text") << QStringList{"a", "a(1)b"} << "a(1)";
        QTest::newRow("huge number") << QStringList{"a", "a(99999999999999999999)"} << "a(1)";
        QTest::newRow("empty brackets") << QStringList{"a", "a()"} << "a(1)";
    }

    void takenNumbersAreSkippedAndGapsAreFilled()
    {
        QFETCH(QStringList, names);
        QFETCH(QString, result);
        QCOMPARE(NewName(names, "a"), result);
        QCOMPARE(PlainRule(names, "a"), result);
    }

    void aRandomListGivesWhatThePlainRuleGives()
    {
        const quint32 seed = QRandomGenerator::global()->generate();
        qInfo("seed %u", seed);
        QRandomGenerator random(seed);
        const QStringList pieces{"a", "(", ")", "1", "2", "(1)", "(2)", "(10)", "b"};
        for (int round = 0; round < 500; ++round) {
            QStringList names;
            for (int i = random.bounded(30); i > 0; --i) {
                QString name = QStringLiteral("a");
                for (int j = random.bounded(3); j > 0; --j)
                    name += pieces.at(random.bounded(pieces.size()));
                names.append(name);
            }
            for (const QString& base : {QStringLiteral("a"), QStringLiteral("a(1)"), QStringLiteral("b")})
                QCOMPARE(NewName(names, base), PlainRule(names, base));
        }
    }

    void aDocumentWithoutARootGetsOneAndTheNameStays()
    {
        MemoryDocument document;
        QCOMPARE(UniqueBookmarkName("a", &document), QStringLiteral("a"));
        QVERIFY(document.GetBookmarkRoot());
    }

    void aDocumentThatRefusesARootGivesTheEmptyName()
    {
        MemoryDocument document;
        document.SetCreateRootFailure(true);
        QCOMPARE(UniqueBookmarkName("a", &document), QString());
    }

    void aHundredThousandNamesWithHalfOfThemAlikeAreDoneInOneWalk()
    {
        QStringList names{"new bookmark"};
        for (int i = 1; i < 50000; ++i)
            names.append(QStringLiteral("new bookmark(%1)").arg(i));
        for (int i = 0; i < 50000; ++i)
            names.append(QStringLiteral("other %1").arg(i));
        QCOMPARE(NewName(names, "new bookmark"), QStringLiteral("new bookmark(50000)"));
    }
};

TETO_TEST_MAIN(TestBookmarkNames)
#include "test_bookmark_names.moc"
