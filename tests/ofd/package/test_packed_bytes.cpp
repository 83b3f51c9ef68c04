#include <ofd/package/packed_bytes.h>
#include <tests/support/test_main.h>

#include <QtTest>

using namespace ofd;

// Bytes that stand compressed while nobody looks at them.
class TestPackedBytes : public QObject
{
    Q_OBJECT

private slots:
    void manyBytesComeBackAsTheyWere();
    void fewBytesStayWhereTheyAre();
    void packingTwiceAndReadingBetweenKeepsThem();
    void noBytesAreNoBytes();
};

void TestPackedBytes::manyBytesComeBackAsTheyWere()
{
    QByteArray bytes;
    for (int i = 0; bytes.size() < 3 << 20; ++i)
        bytes += QByteArray::number(i * qint64(7919)) + '\0';
    const QByteArray copy(bytes.constData(), bytes.size());
    PackedBytes packed(bytes);
    bytes.clear();
    packed.Pack();
    QCOMPARE(packed.Get(), copy);
}

void TestPackedBytes::fewBytesStayWhereTheyAre()
{
    PackedBytes packed("<a/>");
    const char* place = packed.Get().constData();
    packed.Pack();
    QVERIFY(packed.Get().constData() == place);
    QCOMPARE(packed.Get(), QByteArray("<a/>"));
}

void TestPackedBytes::packingTwiceAndReadingBetweenKeepsThem()
{
    const QByteArray bytes = QByteArray("<entry/>\n").repeated(200'000);
    PackedBytes packed(bytes);
    for (int i = 0; i < 3; ++i) {
        packed.Pack();
        packed.Pack();
        QCOMPARE(packed.Get(), bytes);
    }
}

void TestPackedBytes::noBytesAreNoBytes()
{
    PackedBytes packed{QByteArray()};
    packed.Pack();
    QVERIFY(packed.Get().isEmpty());
}

TETO_TEST_MAIN(TestPackedBytes)
#include "test_packed_bytes.moc"
