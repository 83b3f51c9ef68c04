#pragma once

#include <QCommandLineParser>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace ofd {
class OfdDocument;
} // namespace ofd
class Output;

// What the program ends with.
enum ExitCode {
    ExitFine = 0,
    ExitFound = 1,       // there is nothing of what was asked for; of `check`: the file has problems
    ExitCannotOpen = 2,  // the document
    ExitCannotWrite = 3, // a file, or the standard output
    ExitWrongUsage = 64,
};

// One call of a command. Lives as long as the command runs.
struct ToolCall
{
    const QCommandLineParser& options;
    const QStringList arguments; // behind the command's name
    Output& output;

    bool IsSet(const char* option) const { return options.isSet(QString::fromLatin1(option)); }
    QString Value(const char* option) const { return options.value(QString::fromLatin1(option)); }
    bool WantsJson() const { return IsSet("json"); }
};

// A command of the program: a row of the table in command_table.cpp.
struct ToolCommand
{
    const char* name;
    const char* synopsis; // behind the name
    const char* summary;
    int argumentCount;
    bool paints;                                    // needs what paints; the others start faster without
    void (*addOptions)(QCommandLineParser& parser); // null for none
    int (*run)(const ToolCall& call);               // an exit code
};

const std::vector<ToolCommand>& ToolCommands();
// Null when there is no such command.
const ToolCommand* FindToolCommand(const QString& name);

// Says on the standard error what went wrong.
void TellError(const QString& text);
// Tells the error; gives the exit code of wrong usage.
int TellUsageError(const QString& text);
// Null, and the error told, when it cannot be opened. The file is never written to.
std::unique_ptr<ofd::OfdDocument> OpenToolFile(const QString& path);
// The page of the option, from 0; nothing, and the exit code set, when it is no number or the document has no such
// page.
std::optional<int> PageOption(const ToolCall& call, ofd::OfdDocument& document, int* exitCode);

int RunInfo(const ToolCall& call);
int RunList(const ToolCall& call);
int RunText(const ToolCall& call);
void AddTextOptions(QCommandLineParser& parser);
int RunFind(const ToolCall& call);
void AddFindOptions(QCommandLineParser& parser);
int RunRender(const ToolCall& call);
void AddRenderOptions(QCommandLineParser& parser);
int RunExtract(const ToolCall& call);
void AddExtractOptions(QCommandLineParser& parser);
int RunResave(const ToolCall& call);
int RunCheck(const ToolCall& call);
