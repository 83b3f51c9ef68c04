#include "test_main.h"

#include <QApplication>
#include <QtTest>

#include <atomic>
#include <cstdio>

namespace {

std::atomic<int> connectWarnings{0};
QtMessageHandler earlierHandler = nullptr;

void CountConnectWarnings(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    const bool isConnectWarning = type == QtWarningMsg && (text.startsWith(QLatin1String("QObject::connect")) ||
                                                           text.startsWith(QLatin1String("QMetaObject::connectSlots")));
    if (isConnectWarning)
        ++connectWarnings;
    if (earlierHandler)
        earlierHandler(type, context, text);
}

constexpr int ticksMs = 50; // a few ticks of Qt's animations

} // namespace

int RunTests(int argc, char** argv, const std::function<QObject*()>& makeTest)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("tetobaisfla-test"));
    const std::unique_ptr<QObject> test(makeTest());
    QTest::qInit(test.get(), argc, argv);
    earlierHandler = qInstallMessageHandler(CountConnectWarnings); // after qInit, which installs a handler of its own
    int failures = QTest::qRun();
    qInstallMessageHandler(earlierHandler);
    QTest::qCleanup();
    QTest::qWait(ticksMs); // the fades of Qt's own buttons, whose window is gone, end at their next tick and are freed
    if (connectWarnings > 0) {
        std::fprintf(stderr, "FAIL: %d connect warning(s) from Qt\n", connectWarnings.load());
        ++failures;
    }
    return failures;
}
