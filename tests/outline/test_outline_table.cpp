#include <outline/pointer_table.h>
#include <tests/support/test_main.h>

#include <QMap>
#include <QRandomGenerator>
#include <QtTest>

namespace {

using Table = PointerTable<const char*, int>;

// Addresses that are only compared.
const char* Key(quintptr number)
{
    return reinterpret_cast<const char*>(number);
}

} // namespace

class TestOutlineTable : public QObject
{
    Q_OBJECT
private slots:
    void anEmptyTableHasNothingAndGivesTheDefault();
    void aNullKeyIsNotStored();
    void aSecondValueOfAKeyReplacesTheFirst();
    void clearingAndSwappingTakeEverything();
    void itHoldsWhatAMapHolds_data();
    void itHoldsWhatAMapHolds();
};

void TestOutlineTable::anEmptyTableHasNothingAndGivesTheDefault()
{
    const Table table;
    QVERIFY(table.isEmpty());
    QCOMPARE(table.size(), 0);
    QVERIFY(!table.contains(Key(16)));
    QCOMPARE(table.value(Key(16)), 0);
    QCOMPARE(table.value(Key(16), 7), 7);
    QVERIFY(table.cbegin() == table.cend());
}

void TestOutlineTable::aNullKeyIsNotStored()
{
    Table table;
    table.insert(nullptr, 5);
    QVERIFY(table.isEmpty());
    table.insert(Key(16), 1);
    QVERIFY(!table.contains(nullptr));
    QCOMPARE(table.value(nullptr, 9), 9);
}

void TestOutlineTable::aSecondValueOfAKeyReplacesTheFirst()
{
    Table table;
    table.insert(Key(16), 1);
    table.insert(Key(16), 2);
    QCOMPARE(table.size(), 1);
    QCOMPARE(table.value(Key(16)), 2);
}

void TestOutlineTable::clearingAndSwappingTakeEverything()
{
    Table table;
    table.insert(Key(16), 1);
    Table other;
    other.swap(table);
    QVERIFY(table.isEmpty() && !table.contains(Key(16)));
    QCOMPARE(other.value(Key(16)), 1);
    other.clear();
    QVERIFY(other.isEmpty() && !other.contains(Key(16)));
    other.insert(Key(32), 3);
    QCOMPARE(other.value(Key(32)), 3);
}

void TestOutlineTable::itHoldsWhatAMapHolds_data()
{
    QTest::addColumn<quint64>("distance"); // between neighbouring addresses
    QTest::addColumn<bool>("isReserved");
    for (const quint64 distance : {1ULL, 16ULL, 160ULL, 4096ULL, 1ULL << 32}) {
        QTest::addRow("%llu apart", distance) << distance << false;
        QTest::addRow("%llu apart, reserved", distance) << distance << true;
    }
}

void TestOutlineTable::itHoldsWhatAMapHolds()
{
    QFETCH(quint64, distance);
    QFETCH(bool, isReserved);
    QRandomGenerator random(distance == 0 ? 1 : static_cast<quint32>(distance));
    QMap<const char*, int> map;
    Table table;
    if (isReserved)
        table.reserve(5000);
    for (int step = 0; step < 20000; ++step) {
        const char* key = Key((1 + random.bounded(8000)) * distance);
        map.insert(key, step);
        table.insert(key, step);
    }
    QCOMPARE(table.size(), map.size());
    for (quint64 number = 1; number < 9000; ++number) {
        const char* key = Key(number * distance);
        QCOMPARE(table.contains(key), map.contains(key));
        QCOMPARE(table.value(key, -1), map.value(key, -1));
    }
    QMap<const char*, int> walked;
    for (auto entry = table.cbegin(); entry != table.cend(); ++entry)
        walked.insert(entry.key(), entry.value());
    QCOMPARE(walked, map);
}

TETO_TEST_MAIN(TestOutlineTable)
#include "test_outline_table.moc"
