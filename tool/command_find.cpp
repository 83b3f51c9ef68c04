#include "output.h"
#include "tool_command.h"

#include <frame/document/text_search.h>
#include <ofd/ofd_document.h>

namespace {

OVJson JsonOf(const G_TextMatch& match)
{
    OVJson item;
    item.SetInt("page", match.pageIndex + 1);
    item.SetString("text", match.text);
    item.SetString("snippet", match.snippet);
    item.SetInt("snippetStart", match.snippetStart);
    item.SetInt("snippetLength", match.snippetLength);
    OVJson rects = item.AddArray("rectsMm");
    for (const CCA_GRect& rect : match.rects) {
        OVJson box;
        box.SetDouble("left", Rounded(double(rect.left)));
        box.SetDouble("top", Rounded(double(rect.top)));
        box.SetDouble("right", Rounded(double(rect.right)));
        box.SetDouble("bottom", Rounded(double(rect.bottom)));
        rects.Append(box);
    }
    return item;
}

} // namespace

void AddFindOptions(QCommandLineParser& parser)
{
    parser.addOption({QStringLiteral("case"), QStringLiteral("Capital and small letters differ.")});
    parser.addOption({QStringLiteral("word"), QStringLiteral("Whole words only.")});
}

int RunFind(const ToolCall& call)
{
    const G_TextSearch search({call.arguments.at(1), call.IsSet("case"), call.IsSet("word")});
    if (search.IsEmpty())
        return TellUsageError(QStringLiteral("There is nothing to look for."));
    const std::unique_ptr<ofd::OfdDocument> document = OpenToolFile(call.arguments.at(0));
    if (!document)
        return ExitCannotOpen;
    OVJson answer;
    answer.SetString("file", call.arguments.at(0));
    answer.SetString("text", call.arguments.at(1));
    OVJson matches = answer.AddArray("matches");
    int count = 0;
    for (int i = 0; i < document->GetPageCount() && !call.output.HasFailed(); ++i) {
        bool isReadable = true;
        const QList<G_TextMatch> found =
            search.FindOnPage(document.get(), i, G_TextSearch::maxMatchesAPage, &isReadable);
        if (!isReadable)
            TellError(QStringLiteral("Page %1 cannot be read and was not searched.").arg(i + 1));
        count += found.size();
        for (const G_TextMatch& match : found) {
            if (call.WantsJson())
                matches.Append(JsonOf(match));
            else
                call.output.Line(QStringLiteral("page %1\t%2").arg(i + 1).arg(OneLine(match.snippet)));
        }
    }
    if (call.WantsJson())
        call.output.Json(answer);
    return count > 0 ? ExitFine : ExitFound;
}
