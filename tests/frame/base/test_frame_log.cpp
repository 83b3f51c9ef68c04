#include <frame/base/log.h>
#include <tests/support/test_main.h>

#include <QtTest>

#include <atomic>
#include <thread>

class TestFrameLog : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { SetFrameLogListener(nullptr); }
    void theListenerGetsEveryLine();
    void aListenerMayLogAndReplaceItself();
    void linesFromOtherThreadsArrive();
};

void TestFrameLog::theListenerGetsEveryLine()
{
    QList<QByteArray> lines;
    SetFrameLogListener([&lines](const QByteArray& line) { lines.append(line); });
    FrameLog("one");
    FrameLog("\xE5\x8F\x91 two");
    SetFrameLogListener(nullptr);
    FrameLog("three");
    QCOMPARE(lines, (QList<QByteArray>{"one", "\xE5\x8F\x91 two"}));
}

void TestFrameLog::aListenerMayLogAndReplaceItself()
{
    QList<QByteArray> lines;
    SetFrameLogListener([&lines](const QByteArray& line) {
        lines.append(line);
        SetFrameLogListener(nullptr);
        FrameLog("from inside");
    });
    FrameLog("one");
    QCOMPARE(lines, QList<QByteArray>{"one"});
}

void TestFrameLog::linesFromOtherThreadsArrive()
{
    std::atomic<int> lineCount{0};
    SetFrameLogListener([&lineCount](const QByteArray&) { ++lineCount; });
    const auto logMany = [] {
        for (int i = 0; i < 100; ++i)
            FrameLog("line");
    };
    std::thread other(logMany);
    logMany();
    other.join();
    QCOMPARE(lineCount.load(), 200);
}

TETO_TEST_MAIN(TestFrameLog)
#include "test_frame_log.moc"
