#include "file_names.h"
#include "new_file_writer.h"
#include "output.h"
#include "tool_command.h"

#include <ofd/ofd_document.h>

#include <QDir>
#include <QHash>
#include <QSet>

#include <algorithm>
#include <cstring>

namespace {

// What came of one attachment.
struct Extraction
{
    QString path;
    int exitCode = ExitFine;
};

QString NameOf(const G_AttachmentInfo& info)
{
    return QString::fromUtf8(info.name.Bytes());
}

// The name as it is shown, with or without its ending.
bool IsCalled(const G_AttachmentInfo& info, const QString& wanted)
{
    const QString name = NameOf(info);
    return wanted == name || wanted == name + QLatin1Char('.') + QString::fromUtf8(info.format.Bytes());
}

class Extractor
{
public:
    Extractor(ofd::OfdDocument& document, const QString& folder)
        : document(document)
        , folder(folder)
    {
    }

    // Attachments of one name get numbers; a file that was there before is an error.
    Extraction Extract(int index)
    {
        const G_AttachmentInfo info = document.GetAttachment(index);
        const QString wanted = AttachmentFileName(NameOf(info), QString::fromUtf8(info.format.Bytes()));
        QString name = wanted;
        int& number = numbers[name.toCaseFolded()]; // the last one that was tried
        for (number = std::max(number, 1); taken.contains(name.toCaseFolded());)
            name = NumberedFileName(wanted, ++number);
        taken.insert(name.toCaseFolded());
        Extraction result;
        result.path = folder.filePath(name);
        NewFileWriter writer(result.path);
        // A source that breaks makes the writer give up; any other error is its own.
        const bool isRead = writer.Error() == 0 && document.WriteAttachment(index, &writer);
        const bool isWritten = isRead && writer.Finish();
        if (!isRead && (writer.Error() == 0 || writer.WasAbandoned()))
            result.exitCode = Tell(result.path, "The attachment cannot be read.", ExitFound);
        else if (!isWritten)
            result.exitCode = Tell(result.path, std::strerror(writer.Error()), ExitCannotWrite);
        return result;
    }

private:
    static int Tell(const QString& path, const char* reason, int exitCode)
    {
        TellError(path + QStringLiteral(": ") + QString::fromLocal8Bit(reason));
        return exitCode;
    }

    ofd::OfdDocument& document;
    const QDir folder;
    QSet<QString> taken;         // by this run, case folded
    QHash<QString, int> numbers; // of attachments of one name, so that many of them are not counted through
};

// The positions of the wanted ones.
QList<int> Wanted(ofd::OfdDocument& document, const QString& name, bool wantsAll)
{
    QList<int> wanted;
    for (int i = 0; i < document.GetAttachmentCount(); ++i) {
        if (wantsAll || IsCalled(document.GetAttachment(i), name))
            wanted += i;
    }
    return wanted;
}

// An exit code.
int ExtractAll(const ToolCall& call, ofd::OfdDocument& document, const QList<int>& wanted)
{
    const QString folder = call.Value("directory");
    if (!QDir().mkpath(folder)) {
        TellError(folder + QStringLiteral(": The folder cannot be made."));
        return ExitCannotWrite;
    }
    Extractor extractor(document, folder);
    OVJson answer;
    answer.SetString("file", call.arguments.at(0));
    OVJson files = answer.AddArray("files");
    int exitCode = ExitFine;
    for (const int index : wanted) {
        const Extraction result = extractor.Extract(index);
        exitCode = std::max(exitCode, result.exitCode);
        if (result.exitCode != ExitFine)
            continue;
        OVJson file;
        file.SetString("name", NameOf(document.GetAttachment(index)));
        file.SetString("path", result.path);
        files.Append(file);
        if (!call.WantsJson())
            call.output.Line(result.path);
    }
    if (call.WantsJson())
        call.output.Json(answer);
    return exitCode;
}

} // namespace

void AddExtractOptions(QCommandLineParser& parser)
{
    parser.addOption({QStringLiteral("all"), QStringLiteral("All attachments, hidden ones included.")});
    parser.addOption({{QStringLiteral("d"), QStringLiteral("directory")},
                      QStringLiteral("The folder to write into; made when it is missing."),
                      QStringLiteral("folder")});
}

int RunExtract(const ToolCall& call)
{
    const bool wantsAll = call.IsSet("all");
    if (!call.IsSet("directory") || call.arguments.size() != (wantsAll ? 1 : 2))
        return TellUsageError(QStringLiteral("Usage: tetotool extract FILE (--all | NAME) -d DIR"));
    const std::unique_ptr<ofd::OfdDocument> document = OpenToolFile(call.arguments.at(0));
    if (!document)
        return ExitCannotOpen;
    const QList<int> wanted = Wanted(*document, call.arguments.value(1), wantsAll);
    if (wanted.isEmpty()) {
        TellError(wantsAll ? QStringLiteral("The document has no attachments.")
                           : QStringLiteral("There is no attachment \"%1\".").arg(call.arguments.at(1)));
        return ExitFound;
    }
    return ExtractAll(call, *document, wanted);
}
