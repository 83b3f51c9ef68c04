// Memory runs out in the reader: what was being done ends, and the window goes on.
#include "reader_desk.h"

#include <frame/view/status_note.h>
#include <reader/background_job.h>
#include <reader/reader_application.h>

#include <QSignalSpy>
#include <QtTest>

#include <new>

class TestReaderMemory : public QObject
{
    Q_OBJECT
private slots:
    void aJobForWhichMemoryRunsOutEndsAndTells();
    void anEventForWhichMemoryRunsOutIsToldInTheWindow();
};

void TestReaderMemory::aJobForWhichMemoryRunsOutEndsAndTells()
{
    BackgroundJob job([](const JobControl&) -> JobOutcome { throw std::bad_alloc(); });
    QString error;
    bool wasGivenUp = true;
    connect(&job, &BackgroundJob::Ended, this, [&](const JobOutcome& outcome) {
        error = outcome.error;
        wasGivenUp = outcome.wasGivenUp;
    });
    QTRY_COMPARE(error, QString("There is not enough memory."));
    QVERIFY(!wasGivenUp);
}

void TestReaderMemory::anEventForWhichMemoryRunsOutIsToldInTheWindow()
{
    ReaderDesk desk;
    QMetaObject::invokeMethod(
        desk.Window(), [] { throw std::bad_alloc(); }, Qt::QueuedConnection);
    bool wasLaterDone = false;
    QMetaObject::invokeMethod(
        desk.Window(), [&wasLaterDone] { wasLaterDone = true; }, Qt::QueuedConnection);
    QTRY_VERIFY(wasLaterDone);
    const auto* note = desk.Window()->findChild<G_StatusNote*>();
    QVERIFY(note && note->isVisible());
    QVERIFY(note->text().contains(QLatin1String("not enough memory")));
}

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    ReaderApplication application(argc, argv); // in place of that of the other tests
    TestReaderMemory test;
    const int failures = QTest::qExec(&test, argc, argv);
    QTest::qWait(50); // the fades of Qt's own buttons, whose window is gone, end and are freed
    return failures;
}

#include "test_reader_memory.moc"
