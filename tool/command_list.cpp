#include "lists.h"
#include "output.h"
#include "tool_command.h"

#include <ofd/ofd_document.h>

namespace {

struct ListKind
{
    const char* name;
    OVJson (*make)(ofd::OfdDocument& document);
    QString (*lineOf)(const OVJson& item);
};

constexpr ListKind kinds[] = {
    {"outline", ListOutline, OutlineLine},
    {"bookmarks", ListBookmarks, BookmarkLine},
    {"tags", ListTags, TagLine},
    {"annotations", ListAnnotations, AnnotationLine},
    {"attachments", ListAttachments, AttachmentLine},
    {"layers", ListLayers, LayerLine},
};

} // namespace

int RunList(const ToolCall& call)
{
    const ListKind* wanted = nullptr;
    for (const ListKind& kind : kinds) {
        if (call.arguments.at(0) == QLatin1String(kind.name))
            wanted = &kind;
    }
    if (!wanted)
        return TellUsageError(
            QStringLiteral("\"%1\" is none of outline, bookmarks, tags, annotations, attachments and layers.")
                .arg(call.arguments.at(0)));
    const std::unique_ptr<ofd::OfdDocument> document = OpenToolFile(call.arguments.at(1));
    if (!document)
        return ExitCannotOpen;
    const OVJson items = wanted->make(*document);
    if (call.WantsJson()) {
        OVJson answer;
        answer.SetString("file", call.arguments.at(1));
        answer.SetString("kind", QString::fromLatin1(wanted->name));
        answer.SetObject("items", items);
        call.output.Json(answer);
    } else {
        for (int i = 0; i < items.Size() && !call.output.HasFailed(); ++i)
            call.output.Line(wanted->lineOf(items.At(i)));
    }
    return items.Size() > 0 ? ExitFine : ExitFound;
}
