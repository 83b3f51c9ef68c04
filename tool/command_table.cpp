#include "tool_command.h"

#include <ofd/ofd_document.h>

#include <QFileInfo>

#include <cstdio>

const std::vector<ToolCommand>& ToolCommands()
{
    static const std::vector<ToolCommand> commands = {
        {"info", "FILE", "Tells what the document is: title, pages, rights, and how much it has of what.", 1, false,
         nullptr, RunInfo},
        {"list", "KIND FILE", "Lists outline, bookmarks, tags, annotations, attachments or layers.", 2, false, nullptr,
         RunList},
        {"text", "FILE", "Writes the text of all pages, or of one; a form feed ends each page.", 1, true,
         AddTextOptions, RunText},
        {"find", "FILE TEXT", "Finds a text on the pages.", 2, true, AddFindOptions, RunFind},
        {"render", "FILE --page N -o PNG", "Paints a page as the reader shows it.", 1, true, AddRenderOptions,
         RunRender},
        {"extract", "FILE (--all | NAME) -d DIR", "Writes attachments into a folder; never over a file that is there.",
         -1, false, AddExtractOptions, RunExtract},
        {"resave", "IN OUT", "Opens a document and saves it elsewhere without an edit: no byte changes.", 2, false,
         nullptr, RunResave},
        {"check", "FILE", "Reads and paints everything, and lists each problem with its part and place.", 1, true,
         nullptr, RunCheck},
    };
    return commands;
}

const ToolCommand* FindToolCommand(const QString& name)
{
    for (const ToolCommand& command : ToolCommands()) {
        if (name == QLatin1String(command.name))
            return &command;
    }
    return nullptr;
}

void TellError(const QString& text)
{
    std::fprintf(stderr, "tetotool: %s\n", qUtf8Printable(text));
}

int TellUsageError(const QString& text)
{
    TellError(text);
    return ExitWrongUsage;
}

std::unique_ptr<ofd::OfdDocument> OpenToolFile(const QString& path)
{
    const QFileInfo info(path);
    QString error;
    if (!info.exists()) {
        error = QStringLiteral("The file does not exist.");
    } else if (info.isDir()) {
        error = QStringLiteral("This is a folder, not a document.");
    } else {
        ofd::OpenResult result = ofd::OfdDocument::Open(path, true);
        if (result)
            return std::move(result.document);
        error = result.error;
    }
    TellError(path + QStringLiteral(": ") + error);
    return nullptr;
}

std::optional<int> PageOption(const ToolCall& call, ofd::OfdDocument& document, int* exitCode)
{
    bool isNumber = false;
    const int page = call.Value("page").toInt(&isNumber);
    if (!isNumber || page < 1) {
        *exitCode = TellUsageError(
            QStringLiteral("\"%1\" is no page number: pages are numbered from 1.").arg(call.Value("page")));
        return std::nullopt;
    }
    const int count = document.GetPageCount();
    if (page > count) {
        TellError(QStringLiteral("There is no page %1: the document has %2.").arg(page).arg(count));
        *exitCode = ExitFound;
        return std::nullopt;
    }
    return page - 1;
}
