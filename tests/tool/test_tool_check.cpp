#include <tests/support/test_main.h>
#include <tests/tool/tool_run.h>

#include <QtTest>

class TestToolCheck : public QObject
{
    Q_OBJECT

private slots:
    void helpNamesTheExitCodes() { QVERIFY(RunTool({QStringLiteral("--help")}).out.contains("Exit codes:")); }
};

TETO_TEST_MAIN(TestToolCheck)
#include "test_tool_check.moc"
