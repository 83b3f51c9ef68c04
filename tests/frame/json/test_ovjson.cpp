#include <frame/json/ovjson.h>
#include <tests/support/test_main.h>

#include <QtTest>

#include <limits>

namespace {

OVSharedPtr<OVJson> Parse(const QByteArray& text)
{
    return OVJsonFactory::ParseJsonString(text.constData(), text.size());
}

QByteArray Build(const OVJson& json)
{
    return OVJsonFactory::BuildJsonString(std::make_shared<OVJson>(json));
}

} // namespace

class TestOvJson : public QObject
{
    Q_OBJECT

private slots:
    void anObjectKeepsTheOrderOfItsKeys();
    void writingAKeyAgainReplacesItInPlace();
    void anAddedArrayIsFilledInPlace();
    void elementsAreInsertedAtTheirPosition();
    void wrongTypedCallsDoNothing();
    void aValueCannotBePutIntoItself();
    void readingsConvertWhatTheyCan();
    void readTextIsWrittenTheSame_data();
    void readTextIsWrittenTheSame();
    void escapesAreUnderstood();
    void ofEqualKeysTheLastValueCounts();
    void manyKeysAreFound();
    void malformedTextIsRefused_data();
    void malformedTextIsRefused();
    void depthIsLimitedBothWays();
    void theLengthCutsTheText();
    void nullTextsAndValuesAreAccepted();
    void indentedTextReadsBackTheSame();
    void numbersKeepTheirValue();
};

void TestOvJson::anObjectKeepsTheOrderOfItsKeys()
{
    OVJson json;
    json.SetString("zebra", QStringLiteral("z"));
    json.SetInt("apple", -3);
    json.SetBool("mango", true);
    json.SetObject("inner", OVJson());
    QCOMPARE(Build(json), QByteArray("{\"zebra\":\"z\",\"apple\":-3,\"mango\":true,\"inner\":{}}"));
    QCOMPARE(json.MemberCount(), 4);
    QCOMPARE(json.KeyAt(1), QByteArray("apple"));
    QCOMPARE(json.KeyAt(4), QByteArray());
    QCOMPARE(json.At(1).ToInt(), -3);
}

void TestOvJson::writingAKeyAgainReplacesItInPlace()
{
    OVJson json;
    json.SetInt("a", 1);
    json.SetInt("b", 2);
    json.SetString("a", QStringLiteral("new"));
    QCOMPARE(Build(json), QByteArray("{\"a\":\"new\",\"b\":2}"));
}

void TestOvJson::anAddedArrayIsFilledInPlace()
{
    OVJson json;
    OVJson ids = json.AddArray("IgnoreIDs");
    ids.InsertUInt(-1, 7);
    ids.InsertUInt(-1, 4000000000U);
    QCOMPARE(Build(json), QByteArray("{\"IgnoreIDs\":[7,4000000000]}"));
    const OVJson copy = json; // a handle to the same value
    ids.Append(1);
    QCOMPARE(copy.Member("IgnoreIDs").Size(), 3);
}

void TestOvJson::elementsAreInsertedAtTheirPosition()
{
    OVJson array = OVJson::MakeArray();
    array.InsertInt(-1, 2);
    array.InsertInt(0, 1);
    array.InsertInt(2, 3);
    array.InsertInt(9, 99);
    array.InsertInt(-2, 99);
    array.Append(QStringLiteral("x"));
    array.Append(OVJson());
    QCOMPARE(Build(array), QByteArray("[1,2,3,\"x\",{}]"));
}

void TestOvJson::wrongTypedCallsDoNothing()
{
    OVJson array = OVJson::MakeArray();
    array.SetInt("key", 1);
    QCOMPARE(Build(array), QByteArray("[]"));
    OVJson object;
    object.Append(5);
    object.InsertUInt(-1, 5);
    QCOMPARE(Build(object), QByteArray("{}"));
    OVJson lost = array.AddArray("key"); // belongs to nobody, but may be used
    lost.Append(1);
    QCOMPARE(lost.Size(), 1);
    QCOMPARE(array.Size(), 0);
    QVERIFY(!array.HasMember("key"));
    const OVJson absent = object.Member("absent");
    QVERIFY(!absent.IsObject() && !absent.IsArray() && !absent.IsString() && !absent.IsNumber());
    QVERIFY(!object.At(-1).IsObject());
}

void TestOvJson::aValueCannotBePutIntoItself()
{
    OVJson json;
    OVJson inner;
    json.SetObject("inner", inner);
    inner.SetObject("outer", json);
    json.SetObject("self", json);
    OVJson array = json.AddArray("list");
    array.Append(array);
    array.Append(json);
    QCOMPARE(Build(json), QByteArray("{\"inner\":{},\"list\":[]}"));
}

void TestOvJson::readingsConvertWhatTheyCan()
{
    const auto json = Parse("{\"n\":12,\"t\":\"34\",\"f\":2.5,\"b\":true,\"z\":null,\"big\":1e10,\"w\":\"x\"}");
    QVERIFY(json);
    QCOMPARE(json->Member("n").ToInt(), 12);
    QCOMPARE(json->Member("t").ToInt(), 34);
    QCOMPARE(json->Member("f").ToInt(-1), -1);
    QCOMPARE(json->Member("f").ToDouble(), 2.5);
    QCOMPARE(json->Member("big").ToInt(-1), -1);
    QCOMPARE(json->Member("w").ToInt(-1), -1);
    QCOMPARE(json->Member("z").ToInt(-1), -1);
    QCOMPARE(json->Member("absent").ToInt(-1), -1);
    QVERIFY(json->Member("b").ToBool());
    QVERIFY(json->Member("n").ToBool(true));
    QVERIFY(json->Member("n").IsNumber());
    QVERIFY(json->Member("t").IsString());
    QCOMPARE(json->Member("n").ToQString(), QStringLiteral("12"));
    QCOMPARE(json->Member("t").ToQString(), QStringLiteral("34"));
    QCOMPARE(json->Member("b").ToQString(), QString());
    QVERIFY(json->HasMember("z"));
}

void TestOvJson::readTextIsWrittenTheSame_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("empty object") << QByteArray("{}");
    QTest::newRow("empty array") << QByteArray("[]");
    QTest::newRow("every kind") << QByteArray("{\"b\":[1,-2,0.5,\"x\",true,false,null],\"a\":{\"z\":{}}}");
    QTest::newRow("ancestor walk") << QByteArray("[{\"index\":2,\"level\":2},{\"index\":0,\"level\":1}]");
    QTest::newRow("other scripts") << QByteArray("{\"\xE5\x8F\x91\":\"\xF0\x9F\x98\x80\"}");
    QTest::newRow("escapes") << QByteArray("[\"\\\"\\\\\\n\\r\\t\\u0001\"]");
    QTest::newRow("empty key") << QByteArray("{\"\":\"\"}");
}

void TestOvJson::readTextIsWrittenTheSame()
{
    QFETCH(QByteArray, text);
    const auto json = Parse(text);
    QVERIFY(json);
    QCOMPARE(OVJsonFactory::BuildJsonString(json), text);
}

void TestOvJson::escapesAreUnderstood()
{
    const auto json = Parse("\xEF\xBB\xBF [ \"\\u53d1\\uD83D\\uDE00\\/\\b\\f\" ,\n\t\"\" ]\r\n");
    QVERIFY(json);
    QCOMPARE(json->At(0).ToQString(), QString::fromUtf8("\xE5\x8F\x91\xF0\x9F\x98\x80/\b\f"));
    QCOMPARE(json->At(1).ToQString(), QString());
    const auto withNull = Parse("[\"a\\u0000b\"]");
    QVERIFY(withNull);
    QCOMPARE(withNull->At(0).ToQString().size(), 3);
}

void TestOvJson::ofEqualKeysTheLastValueCounts()
{
    const auto json = Parse("{\"a\":1,\"b\":2,\"a\":3}");
    QVERIFY(json);
    QCOMPARE(OVJsonFactory::BuildJsonString(json), QByteArray("{\"a\":3,\"b\":2}"));
}

void TestOvJson::manyKeysAreFound()
{
    OVJson json;
    for (int i = 0; i < 5000; ++i)
        json.SetInt("key" + QByteArray::number(i), i);
    json.SetInt("key17", -17);
    QCOMPARE(json.MemberCount(), 5000);
    QCOMPARE(json.Member("key15").ToInt(), 15);
    QCOMPARE(json.Member("key17").ToInt(), -17);
    QCOMPARE(json.Member("key4999").ToInt(), 4999);
    QVERIFY(!json.HasMember("key5000"));
}

void TestOvJson::malformedTextIsRefused_data()
{
    QTest::addColumn<QByteArray>("text");
    const QList<QByteArray> texts = {
        "",
        " ",
        "1",
        "\"text\"",
        "null",
        "{",
        "[",
        "}",
        "{}}",
        "[] x",
        "[1,]",
        "[,1]",
        "[1 2]",
        "{\"a\"}",
        "{\"a\":}",
        "{\"a\":1,}",
        "{a:1}",
        "{'a':1}",
        "{1:2}",
        "[01]",
        "[-]",
        "[1.]",
        "[.5]",
        "[1e]",
        "[+1]",
        "[1e999]",
        "[\"a]",
        "[\"\\x\"]",
        "[\"\\u12\"]",
        "[\"\\u12G4\"]",
        "[\"\n\"]",
        "[tru]",
        "[truex]",
        "[nul",
        "[NaN]",
        "[0x10]",
        "[\"\\",
        "{\"a\":1 \"b\":2}",
        "[-01]",
        "[/*c*/1]",
    };
    for (const QByteArray& text : texts)
        QTest::newRow(text.isEmpty() ? "(empty)" : text.constData()) << text;
    QTest::newRow("a null byte") << QByteArray("[1\0]", 4);
}

void TestOvJson::malformedTextIsRefused()
{
    QFETCH(QByteArray, text);
    QVERIFY(!Parse(text));
}

void TestOvJson::depthIsLimitedBothWays()
{
    QVERIFY(Parse(QByteArray(64, '[') + QByteArray(64, ']')));
    QVERIFY(!Parse(QByteArray(65, '[') + QByteArray(65, ']')));
    QVERIFY(!Parse(QByteArray(1000000, '[')));
    OVJson outer = OVJson::MakeArray();
    OVJson inner = outer;
    for (int depth = 1; depth < 64; ++depth) {
        OVJson next = OVJson::MakeArray();
        inner.Append(next);
        inner = next;
    }
    QCOMPARE(Build(outer).size(), 128);
    inner.Append(OVJson::MakeArray());
    QCOMPARE(Build(outer), QByteArray());
}

void TestOvJson::theLengthCutsTheText()
{
    const auto json = OVJsonFactory::ParseJsonString("[1]garbage", 3);
    QVERIFY(json);
    QCOMPARE(json->Size(), 1);
    QVERIFY(OVJsonFactory::ParseJsonString("{}", -1));
    QVERIFY(!OVJsonFactory::ParseJsonString("{}", 1));
}

void TestOvJson::nullTextsAndValuesAreAccepted()
{
    QVERIFY(!OVJsonFactory::ParseJsonString(nullptr, 0));
    QVERIFY(!OVJsonFactory::ParseJsonString(nullptr, -1));
    QCOMPARE(OVJsonFactory::BuildJsonString(nullptr), QByteArray());
}

void TestOvJson::indentedTextReadsBackTheSame()
{
    const QByteArray compact = "{\"a\":[1,{\"b\":[]}],\"c\":{}}";
    OVJsonConfig config;
    config.indented = true;
    const QByteArray indented = OVJsonFactory::BuildJsonString(Parse(compact), &config);
    QCOMPARE(indented, QByteArray("{\n    \"a\": [\n        1,\n        {\n            \"b\": []\n        }\n    ],\n"
                                  "    \"c\": {}\n}"));
    QCOMPARE(OVJsonFactory::BuildJsonString(Parse(indented), nullptr), compact);
}

void TestOvJson::numbersKeepTheirValue()
{
    OVJson json;
    for (const double number : {0.1, 1.0 / 3, 210.0, -0.25, 1e300, 1e-300, 123456789.125}) {
        json.SetDouble("n", number);
        QCOMPARE(Parse(Build(json))->Member("n").ToDouble(), number);
    }
    json.SetDouble("n", std::numeric_limits<double>::infinity());
    QCOMPARE(Build(json), QByteArray("{\"n\":0}"));
}

TETO_TEST_MAIN(TestOvJson)
#include "test_ovjson.moc"
