#include "output.h"
#include "tool_command.h"

#include <frame/document/ig_page.h>
#include <ofd/ofd_document.h>

namespace {

// The lines of a page; nothing when it cannot be read.
std::optional<QStringList> LinesOf(ofd::OfdDocument& document, int pageIndex)
{
    IG_Page* page = document.GetPage(pageIndex);
    IG_TextPage* text = page && page->Load() ? page->GetTextPage() : nullptr;
    if (!text || !text->Parse(0)) {
        TellError(QStringLiteral("Page %1 cannot be read; its text is left out.").arg(pageIndex + 1));
        return std::nullopt;
    }
    QStringList lines;
    const QList<G_TextRun> runs = text->AllRuns();
    for (const G_TextRun& run : runs)
        lines += PlainLines(run.text);
    document.ReleasePage(pageIndex, 0);
    return lines;
}

OVJson JsonOf(int pageIndex, const QStringList& lines)
{
    OVJson page;
    page.SetInt("page", pageIndex + 1);
    OVJson array = page.AddArray("lines");
    for (const QString& line : lines)
        array.Append(line);
    return page;
}

} // namespace

void AddTextOptions(QCommandLineParser& parser)
{
    parser.addOption(
        {QStringLiteral("page"), QStringLiteral("Only this page; pages count from 1."), QStringLiteral("number")});
}

int RunText(const ToolCall& call)
{
    const std::unique_ptr<ofd::OfdDocument> document = OpenToolFile(call.arguments.at(0));
    if (!document)
        return ExitCannotOpen;
    int first = 0;
    int last = document->GetPageCount() - 1;
    if (call.IsSet("page")) {
        int exitCode = ExitFine;
        const std::optional<int> page = PageOption(call, *document, &exitCode);
        if (!page)
            return exitCode;
        first = last = *page;
    }
    bool hasText = false;
    bool isWhole = true;
    OVJson answer;
    answer.SetString("file", call.arguments.at(0));
    OVJson pages = answer.AddArray("pages");
    for (int i = first; i <= last && !call.output.HasFailed(); ++i) {
        const std::optional<QStringList> read = LinesOf(*document, i);
        const QStringList lines = read.value_or(QStringList());
        isWhole &= read.has_value();
        hasText |= !lines.isEmpty();
        if (call.WantsJson()) {
            pages.Append(JsonOf(i, lines));
            continue;
        }
        for (const QString& line : lines)
            call.output.Line(line);
        call.output.Bytes("\f");
    }
    if (call.WantsJson())
        call.output.Json(answer);
    return hasText && isWhole ? ExitFine : ExitFound;
}
