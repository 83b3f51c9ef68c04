#include "output.h"
#include "tool_command.h"

#include <ofd/ofd_document.h>

#include <QFileInfo>

int RunResave(const ToolCall& call)
{
    const QString& source = call.arguments.at(0);
    const QString& target = call.arguments.at(1);
    const std::unique_ptr<ofd::OfdDocument> document = OpenToolFile(source);
    if (!document)
        return ExitCannotOpen;
    const ofd::DocumentSaveResult result = document->SaveCopy(target);
    if (!result) {
        TellError(target + QStringLiteral(": ") + result.error);
        return ExitCannotWrite;
    }
    if (call.WantsJson()) {
        OVJson answer;
        answer.SetString("file", source);
        answer.SetString("output", target);
        answer.SetDouble("bytes", double(QFileInfo(target).size()));
        call.output.Json(answer);
    }
    return ExitFine;
}
