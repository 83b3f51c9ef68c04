#include <ofd/package/tag_names.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>
#include <tests/support/test_main.h>

#include <QRandomGenerator>
#include <QtTest>

using namespace ofd;

// A tag may have any name, an element may not.
class TestTagNames : public QObject
{
    Q_OBJECT

private slots:
    void namesAreEscaped_data();
    void namesAreEscaped();
    void otherSpellingsAreRead_data();
    void otherSpellingsAreRead();
    void anyNameComesBack();
};

void TestTagNames::namesAreEscaped_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("escaped");
    QTest::newRow("plain") << "Invoice"
                           << "Invoice";
    QTest::newRow("Chinese") << QString::fromUtf8("发票") << QString::fromUtf8("发票");
    QTest::newRow("blank") << "Taxpayer No"
                           << "Taxpayer_x0020_No";
    QTest::newRow("digit in front") << "1st"
                                    << "_x0031_st";
    QTest::newRow("digit behind") << "a1-._"
                                  << "a1-._";
    QTest::newRow("colon") << "a:b"
                           << "a_x003A_b";
    QTest::newRow("empty") << ""
                           << "_xFFFF_";
    QTest::newRow("looks escaped") << "_x0041_"
                                   << "_x005F_x0041_";
    QTest::newRow("looks escaped twice") << "_x0041_x0042_"
                                         << "_x005F_x0041_x005F_x0042_";
    QTest::newRow("would look escaped") << "_x0041 b"
                                        << "_x005F_x0041_x0020_b";
    QTest::newRow("no escape") << "_x00411_"
                               << "_x00411_";
    QTest::newRow("underscores") << "_a__b_x_"
                                 << "_a__b_x_";
    QTest::newRow("markup") << "<&>"
                            << "_x003C__x0026__x003E_";
    QTest::newRow("control") << QString(QChar(1)) << "_x0001_";
    QTest::newRow("above the first plane")
        << QString::fromUtf8("a\xF0\x9F\x93\x96") << QString::fromUtf8("a\xF0\x9F\x93\x96");
    QTest::newRow("no name character above") << QString::fromUtf8("\xF3\xB0\x80\x80") << "_x0F0000_";
    QTest::newRow("half a pair") << QString(QChar(0xd800)) << QString(QChar(0xfffd));
    QTest::newRow("a reference's name") << "ObjectRef"
                                        << "_x004F_bjectRef";
    QTest::newRow("literal data's name") << "ObjectData"
                                         << "_x004F_bjectData";
}

void TestTagNames::namesAreEscaped()
{
    QFETCH(const QString, name);
    QFETCH(const QString, escaped);
    QCOMPARE(EscapeTagName(name), escaped);
    QVERIFY(IsXmlName(escaped));
    QString expected = name;
    expected.replace(QChar(0xd800), QChar(0xfffd));
    QCOMPARE(UnescapeTagName(escaped), expected);
    const auto part = XmlPart::Parse(QString(), "<p:" + escaped.toUtf8() + "/>");
    QVERIFY(part);
    QCOMPARE(LocalName(part->GetRoot()).data(), escaped.toUtf8().constData());
}

void TestTagNames::otherSpellingsAreRead_data()
{
    QTest::addColumn<QString>("escaped");
    QTest::addColumn<QString>("name");
    QTest::newRow("small letters") << "a_x003a_b"
                                   << "a:b";
    QTest::newRow("eight digits") << "_x00000020_"
                                  << " ";
    QTest::newRow("six digits") << "_x01F4D6_" << QString::fromUtf8("\xF0\x9F\x93\x96");
    QTest::newRow("beyond all characters") << "_xFFFFFFFF_"
                                           << "_xFFFFFFFF_";
    QTest::newRow("five digits") << "_x00200_"
                                 << "_x00200_";
}

void TestTagNames::otherSpellingsAreRead()
{
    QFETCH(const QString, escaped);
    QFETCH(const QString, name);
    QCOMPARE(UnescapeTagName(escaped), name);
}

void TestTagNames::anyNameComesBack()
{
    const quint32 seed = QRandomGenerator::system()->generate();
    QRandomGenerator random(seed);
    const QString alphabet = QString::fromUtf8("_x0041 F5:发\xF0\x9F\x93\x96<\t\x7f\xc2\xa0");
    for (int i = 0; i < 20'000; ++i) {
        QString name;
        for (int length = random.bounded(14); length > 0; --length) {
            const int at = random.bounded(alphabet.size());
            name += alphabet.at(at);
        }
        // Whole characters only: half a pair does not come back.
        name = QString::fromUcs4(name.toUcs4().constData(), name.toUcs4().size()).toUtf8();
        if (name.contains(QChar(QChar::ReplacementCharacter)))
            continue;
        const QString escaped = EscapeTagName(name);
        QVERIFY2(IsXmlName(escaped), qPrintable(QStringLiteral("%1, seed %2").arg(escaped).arg(seed)));
        QCOMPARE(UnescapeTagName(escaped), name);
    }
}

TETO_TEST_MAIN(TestTagNames)

#include "test_tag_names.moc"
