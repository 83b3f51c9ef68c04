// tetotool COMMAND ...: what the reader knows of a document, for scripts.
#include "output.h"
#include "tool_command.h"

#include <QCommandLineParser>
#include <QGuiApplication>

#include <csignal>
#include <memory>
#include <new>

namespace {

QString Usage()
{
    QString text = QStringLiteral("Usage: tetotool COMMAND [options] ...\n\nCommands:\n");
    for (const ToolCommand& command : ToolCommands())
        text += QStringLiteral("  %1 %2\n      %3\n")
                    .arg(QString::fromLatin1(command.name), QString::fromLatin1(command.synopsis),
                         QString::fromLatin1(command.summary));
    text += QStringLiteral("\ntetotool COMMAND --help tells the options of a command. Each takes --json.\n"
                           "Exit codes: 0 fine; 1 nothing found, something that cannot be read, or (check) problems;\n"
                           "2 the document cannot be opened; 3 something cannot be written; 64 wrong usage.\n");
    return text;
}

int RunCommand(const ToolCommand& command, const QStringList& arguments, Output& output)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QString::fromLatin1(command.summary));
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Tells this."));
    parser.addOption(help);
    parser.addOption({QStringLiteral("json"), QStringLiteral("Answers in JSON.")});
    if (command.addOptions)
        command.addOptions(parser);
    parser.addPositionalArgument(QString::fromLatin1(command.name), QString(),
                                 QString::fromLatin1(command.name) + QLatin1Char(' ') +
                                     QString::fromLatin1(command.synopsis));
    if (!parser.parse(arguments))
        return TellUsageError(parser.errorText());
    if (parser.isSet(help)) {
        output.Bytes(parser.helpText().toUtf8());
        return ExitFine;
    }
    const QStringList positional = parser.positionalArguments().mid(1);
    if (command.argumentCount >= 0 && positional.size() != command.argumentCount)
        return TellUsageError(QStringLiteral("Usage: tetotool %1 %2")
                                  .arg(QString::fromLatin1(command.name), QString::fromLatin1(command.synopsis)));
    return command.run({parser, positional, output});
}

int RunTool(const QStringList& arguments, Output& output)
{
    const QString first = arguments.value(1);
    if (first == QLatin1String("--help") || first == QLatin1String("-h") || first == QLatin1String("help")) {
        output.Bytes(Usage().toUtf8());
        return ExitFine;
    }
    if (first == QLatin1String("--version")) {
        output.Line(QStringLiteral("tetotool " TETO_VERSION));
        return ExitFine;
    }
    if (const ToolCommand* command = FindToolCommand(first))
        return RunCommand(*command, arguments, output);
    return TellUsageError(first.isEmpty()
                              ? QStringLiteral("Name a command; tetotool --help lists them.")
                              : QStringLiteral("There is no command \"%1\"; tetotool --help lists them.").arg(first));
}

int RunWithinMemory(const QStringList& arguments, Output& output)
{
    try {
        return RunTool(arguments, output);
    } catch (const std::bad_alloc&) {
        TellError(QStringLiteral("There is not enough memory for this document."));
        return ExitCannotOpen;
    }
}

// The libraries' own remarks are for developers; what is wrong with a file is what `check` tells, with its place.
void DropMessage(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    if (type == QtFatalMsg || !qEnvironmentVariableIsEmpty("TETOTOOL_VERBOSE"))
        TellError(text);
}

// Painting needs no display; only what paints needs the painting half of the toolkit, and starts slower for it.
std::unique_ptr<QCoreApplication> MakeApplication(int& argc, char** argv)
{
    const ToolCommand* command = argc > 1 ? FindToolCommand(QString::fromLocal8Bit(argv[1])) : nullptr;
    if (!command || !command->paints)
        return std::make_unique<QCoreApplication>(argc, argv);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen;minimal");
    return std::make_unique<QGuiApplication>(argc, argv);
}

} // namespace

int main(int argc, char** argv)
{
    std::signal(SIGPIPE, SIG_IGN); // a reader that went away is an error to tell, not a death
    std::signal(SIGXFSZ, SIG_IGN); // and so is a file beyond what the user may write
    qInstallMessageHandler(DropMessage);
    const std::unique_ptr<QCoreApplication> application = MakeApplication(argc, argv);
    Output output;
    const int code = RunWithinMemory(QCoreApplication::arguments(), output);
    return output.Finish() ? code : ExitCannotWrite;
}
