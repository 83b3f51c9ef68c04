#include "operation_fakes.h"

#include <tests/support/test_main.h>

#include <QtTest>

namespace {

// The rule in the words of its promise, to compare the fast form with.
bool MatchesBySplitting(const char* full, const QString& name, Qt::SplitBehavior behavior)
{
    const QStringList pieces = QString::fromUtf8(full).split(QLatin1Char('/'), behavior);
    return !pieces.isEmpty() && !pieces.last().isEmpty() && !name.isEmpty() && pieces.last().toLower() == name;
}

} // namespace

class TestInterceptorFilter : public QObject
{
    Q_OBJECT
private slots:
    void theLastPieceDecides_data()
    {
        QTest::addColumn<QByteArray>("operation");
        QTest::addColumn<QByteArray>("interceptor");
        QTest::addColumn<bool>("withEmptyPieces");
        QTest::addColumn<bool>("withoutEmptyPieces");
        QTest::newRow("plain") << QByteArray("d_x") << QByteArray("d_x") << true << true;
        QTest::newRow("path in front") << QByteArray("host/d_x") << QByteArray("d_x") << true << true;
        QTest::newRow("deep path") << QByteArray("/a//b/d_x") << QByteArray("d_x") << true << true;
        QTest::newRow("mixed case") << QByteArray("host/D_BookmarkDelete") << QByteArray("d_bookmarkdelete") << true
                                    << true;
        QTest::newRow("interceptor's case counts") << QByteArray("D_X") << QByteArray("D_X") << false << false;
        QTest::newRow("slash at the end")
            << QByteArray("d_outline_add/") << QByteArray("d_outline_add") << false << true;
        QTest::newRow("slashes at the end") << QByteArray("a/d_x//") << QByteArray("d_x") << false << true;
        QTest::newRow("only slashes") << QByteArray("//") << QByteArray("d_x") << false << false;
        QTest::newRow("empty") << QByteArray("") << QByteArray("d_x") << false << false;
        QTest::newRow("both empty") << QByteArray("") << QByteArray("") << false << false;
        QTest::newRow("empty interceptor") << QByteArray("d_x/") << QByteArray("") << false << false;
        QTest::newRow("longer") << QByteArray("d_xy") << QByteArray("d_x") << false << false;
        QTest::newRow("shorter") << QByteArray("d_") << QByteArray("d_x") << false << false;
        QTest::newRow("the first piece does not count") << QByteArray("d_x/d_y") << QByteArray("d_x") << false << false;
        QTest::newRow("beyond ASCII") << QByteArray("a/D_\xc3\x84") << QByteArray("d_\xc3\xa4") << true << true;
        QTest::newRow("Kelvin sign") << QByteArray("\xe2\x84\xaa") << QByteArray("k") << true << true;
        QTest::newRow("a blank counts") << QByteArray("d_x ") << QByteArray("d_x") << false << false;
    }

    void theLastPieceDecides()
    {
        QFETCH(QByteArray, operation);
        QFETCH(QByteArray, interceptor);
        QFETCH(bool, withEmptyPieces);
        QFETCH(bool, withoutEmptyPieces);
        const auto script = std::make_shared<OperationScript>();
        script->name = operation;
        ScriptedOperation op(script);
        QCOMPARE(OperationNameMatches(&op, interceptor.constData()), withEmptyPieces);
        QCOMPARE(OperationNameMatches(&op, interceptor.constData(), Qt::SkipEmptyParts), withoutEmptyPieces);
        const QString name = QString::fromUtf8(interceptor);
        QCOMPARE(MatchesBySplitting(operation.constData(), name, Qt::KeepEmptyParts), withEmptyPieces);
        QCOMPARE(MatchesBySplitting(operation.constData(), name, Qt::SkipEmptyParts), withoutEmptyPieces);
    }

    void theFastComparisonAgreesWithSplittingOnManyNames()
    {
        const QList<QByteArray> pieces{"", "/", "a", "B", "d_x", "\xc3\x84", "k", "\xe2\x84\xaa", "//"};
        const auto script = std::make_shared<OperationScript>();
        ScriptedOperation op(script);
        int matches = 0;
        for (const QByteArray& first : pieces) {
            for (const QByteArray& second : pieces) {
                for (const QByteArray& third : pieces) {
                    script->name = first + second + third;
                    for (const QByteArray& name : {QByteArray("a"), QByteArray("d_x"), QByteArray("bk"),
                                                   QByteArray("\xc3\xa4"), QByteArray("ad_x"), QByteArray("B")}) {
                        for (const Qt::SplitBehavior behavior : {Qt::KeepEmptyParts, Qt::SkipEmptyParts}) {
                            const bool expected =
                                MatchesBySplitting(script->name.constData(), QString::fromUtf8(name), behavior);
                            QCOMPARE(OperationNameMatches(&op, name.constData(), behavior), expected);
                            matches += expected;
                        }
                    }
                }
            }
        }
        QVERIFY(matches > 50);
    }

    void aNullNameMatchesNothing()
    {
        const auto script = std::make_shared<OperationScript>();
        ScriptedOperation op(script);
        QVERIFY(!op.Name());
        QVERIFY(!OperationNameMatches(&op, "d_x"));
        QVERIFY(!OperationNameMatches(&op, ""));
        script->name = "d_x";
        QVERIFY(!OperationNameMatches(&op, nullptr));
        QVERIFY(!OperationNameMatches(nullptr, "d_x"));
    }

    void anOperationWithAPathOrInMixedCaseMeetsTheSameInterceptor()
    {
        const Prototype withPath("host/menu/d_rename");
        const Prototype mixed("D_Rename");
        ScriptedHost host;
        G_WorkingCopies copies(&host, FakeContext());
        QStringList journal;
        const ScriptedInterceptor interceptor("d_rename", &journal);
        for (const char* name : {"host/menu/d_rename", "D_Rename"}) {
            G_Operation* const op = copies.Make(name, FakeView(1), FakeDocument(1));
            QVERIFY(op);
            QVERIFY(op->PerformAction());
            op->DeleteLater();
        }
        const QStringList each{"prepare", "before", "after"};
        QCOMPARE(journal, each + each);
    }

    void scopesTagInterceptorsAndNest()
    {
        QVERIFY(!G_InterceptorScope::Current());
        const ScriptedInterceptor untagged("d_x");
        QVERIFY(!untagged.Tag());
        {
            const G_InterceptorScope outer(FakeDocument(1));
            const ScriptedInterceptor first("d_x");
            QCOMPARE(first.Tag(), FakeDocument(1));
            {
                const G_InterceptorScope inner(FakeDocument(2));
                const ScriptedInterceptor second("d_x");
                QCOMPARE(second.Tag(), FakeDocument(2));
            }
            const ScriptedInterceptor third("d_x");
            QCOMPARE(third.Tag(), FakeDocument(1));
        }
        QVERIFY(!G_InterceptorScope::Current());
    }
};

TETO_TEST_MAIN(TestInterceptorFilter)
#include "test_interceptor_filter.moc"
