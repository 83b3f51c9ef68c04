#include <frame/operation/operation_param.h>
#include <tests/support/test_main.h>

#include <QtTest>

class TestOperationParam : public QObject
{
    Q_OBJECT
private slots:
    void aTextLiteralIsStoredAsTextAndNotAsBool()
    {
        G_OperationParam params;
        params.Add("title", "text");
        QCOMPARE(params.Get("title"), QVariant(QStringLiteral("text")));
        params.Add("umlaut", "\xc3\xa4");
        QCOMPARE(params.GetQString("umlaut"), QString(QChar(0xe4)));
    }

    void eachTypeIsKeptAsItWasAdded()
    {
        G_OperationParam params;
        params.Add("int", 7);
        params.Add("float", 1.5f);
        params.Add("bool", true);
        params.Add("text", QStringLiteral("x"));
        QCOMPARE(params.Get("int").userType(), int(QMetaType::Int));
        QCOMPARE(params.Get("float").userType(), int(QMetaType::Float));
        QCOMPARE(params.Get("bool").userType(), int(QMetaType::Bool));
        QCOMPARE(params.Get("text").userType(), int(QMetaType::QString));
        QCOMPARE(params.GetInt32("int"), 7);
        QCOMPARE(params.GetFloat("float"), 1.5f);
        QCOMPARE(params.GetBool("bool"), 1);
        QCOMPARE(params.GetQString("text"), QStringLiteral("x"));
        QCOMPARE(params.Count(), 4);
    }

    void addingAKeyAgainReplacesItsValueAndType()
    {
        G_OperationParam params;
        params.Add("key", 1);
        params.Add("key", QStringLiteral("two"));
        QCOMPARE(params.Count(), 1);
        QCOMPARE(params.Get("key"), QVariant(QStringLiteral("two")));
    }

    void keysMayBeQStringsAndCompareCaseSensitively()
    {
        G_OperationParam params;
        const QString key = QStringLiteral("index%1").arg(3);
        params.Add(key, 9);
        QCOMPARE(params.GetInt32("index3"), 9);
        QVERIFY(params.Contains(key));
        QVERIFY(params.Contains("index3"));
        QVERIFY(!params.Contains("Index3"));
        params.Add(QStringLiteral("\u00e4"), true);
        QVERIFY(params.Contains("\xc3\xa4"));
    }

    void readingAnAbsentKeyGivesTheDefault()
    {
        const G_OperationParam params;
        QVERIFY(!params.Get("none").isValid());
        QCOMPARE(params.GetInt32("none"), 0);
        QCOMPARE(params.GetInt32("none", -1), -1);
        QCOMPARE(params.GetFloat("none", 2.5f), 2.5f);
        QCOMPARE(params.GetBool("none"), 0);
        QCOMPARE(params.GetBool("none", true), 1);
        QVERIFY(params.GetQString("none").isEmpty());
        QVERIFY(!params.Contains("none"));
    }

    void readingAValueThatDoesNotConvertGivesTheDefault()
    {
        G_OperationParam params;
        params.Add("word", "seven");
        QCOMPARE(params.GetInt32("word", 5), 5);
        QCOMPARE(params.GetFloat("word", 0.5f), 0.5f);
    }

    void numbersInTextsConvert()
    {
        G_OperationParam params;
        params.Add("number", "42");
        QCOMPARE(params.GetInt32("number", 5), 42);
        params.Add("fraction", "0.25");
        QCOMPARE(params.GetFloat("fraction"), 0.25f);
    }

    void theTextsZeroAndFalseReadAsFalse()
    {
        G_OperationParam params;
        params.Add("isBigFile", "0");
        QCOMPARE(params.GetBool("isBigFile", true), 0);
        params.Add("isBigFile", "false");
        QCOMPARE(params.GetBool("isBigFile", true), 0);
        params.Add("isBigFile", "1");
        QCOMPARE(params.GetBool("isBigFile"), 1);
    }

    void aFlagOfWhichOnlyThePresenceCountsIsContainedWhateverItsValue()
    {
        G_OperationParam params;
        params.Add("popup", false);
        QVERIFY(params.Contains("popup"));
    }

    void clearEmptiesTheBag()
    {
        G_OperationParam params;
        params.Add("a", 1);
        params.Clear();
        QCOMPARE(params.Count(), 0);
        QVERIFY(!params.Contains("a"));
    }

    void mergingAddsAllAndReplacesEqualKeys()
    {
        G_OperationParam params;
        params.Add("kept", 1);
        params.Add("replaced", 1);
        G_OperationParam other;
        other.Add("replaced", 2);
        other.Add("added", 3);
        params.Merge(other);
        params.Merge(params);
        QCOMPARE(params.Count(), 3);
        QCOMPARE(params.GetInt32("kept"), 1);
        QCOMPARE(params.GetInt32("replaced"), 2);
        QCOMPARE(params.GetInt32("added"), 3);
        QCOMPARE(other.Count(), 2);
    }

    void aCopyOfABagIsABagOfItsOwn()
    {
        G_OperationParam params;
        params.Add("a", 1);
        G_OperationParam copy = params;
        copy.Add("a", 2);
        QCOMPARE(params.GetInt32("a"), 1);
    }
};

TETO_TEST_MAIN(TestOperationParam)
#include "test_operation_param.moc"
