#include "stall_recorder.h"
#include "test_main.h"

#include <QThread>
#include <QtTest>

namespace {

class TestStallRecorder : public QObject
{
    Q_OBJECT
private slots:
    void aLoopThatStoodStillIsNotedWithWhatWasDone();
    void aStallUnderWayAtTheEndIsNoted();
    void whatCameBeforeTheStartDoesNotCount();
};

void TestStallRecorder::aLoopThatStoodStillIsNotedWithWhatWasDone()
{
    StallRecorder stalls(100);
    stalls.Start();
    QTest::qWait(20);
    stalls.SetLabel(QStringLiteral("sleeping"));
    QThread::msleep(250);
    QTest::qWait(20);
    stalls.SetLabel(QStringLiteral("resting"));
    QTest::qWait(20);
    stalls.Stop();
    QVERIFY(stalls.Worst().wallMs >= 240);
    QVERIFY(stalls.Worst().ownMs >= 200);
    QVERIFY(stalls.Worst().ownMs <= stalls.Worst().wallMs);
    QCOMPARE(stalls.Worst().during, QStringLiteral("sleeping"));
    QVERIFY(stalls.CountAboveThreshold() >= 1);
    QVERIFY(stalls.Report().contains(QStringLiteral("sleeping")));
}

void TestStallRecorder::aStallUnderWayAtTheEndIsNoted()
{
    StallRecorder stalls;
    stalls.Start();
    QThread::msleep(200);
    stalls.Stop();
    QVERIFY(stalls.Worst().wallMs >= 190);
}

void TestStallRecorder::whatCameBeforeTheStartDoesNotCount()
{
    StallRecorder stalls;
    QThread::msleep(200);
    stalls.Start();
    stalls.Stop();
    QVERIFY(stalls.Worst().wallMs < 190);
}

} // namespace

TETO_TEST_MAIN(TestStallRecorder)
#include "test_stall_recorder.moc"
