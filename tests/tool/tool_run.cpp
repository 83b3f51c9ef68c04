#include "tool_run.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QProcess>

namespace {

constexpr int PatienceMs = 120'000;

QString Program()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/tetotool");
}

ToolRun Run(const QString& program, const QStringList& arguments)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("QT_QPA_PLATFORM")); // it must do without a display by itself
    environment.remove(QStringLiteral("DISPLAY"));
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    ToolRun run;
    if (!process.waitForFinished(PatienceMs)) {
        run.errors = process.errorString().toUtf8();
        process.kill();
        process.waitForFinished();
        return run;
    }
    run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = process.readAllStandardOutput();
    run.errors = process.readAllStandardError();
    return run;
}

} // namespace

QJsonObject ToolRun::Json() const
{
    return QJsonDocument::fromJson(out).object();
}

QStringList ToolRun::Lines() const
{
    return QString::fromUtf8(out).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

ToolRun RunTool(const QStringList& arguments)
{
    return Run(Program(), arguments);
}

ToolRun RunInShell(const QString& commandLine)
{
    return Run(QStringLiteral("/bin/bash"), {QStringLiteral("-c"), QString(commandLine).arg(Program())});
}
