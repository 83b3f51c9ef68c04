#include "output.h"
#include "tool_command.h"

#include <frame/document/ig_page.h>
#include <frame/document/page_renderer.h>
#include <frame/document/payloads.h>
#include <frame/document/tree_node.h>
#include <ofd/ofd_document.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr double PixelsPerMm = 2;
constexpr double MaxPixels = 4e6;

void PaintPage(ofd::OfdDocument& document, int index)
{
    const QSizeF size = document.PageSizeMm(index);
    G_RenderRequest request;
    request.pageIndex = index;
    request.pixelsPerMm = std::min(PixelsPerMm, std::sqrt(MaxPixels / std::max(1.0, size.width() * size.height())));
    document.Renderer()->RenderPage(request);
    IG_Page* page = document.GetPage(index);
    if (!page)
        return;
    page->LoadAnnots();
    if (page->Load())
        page->GetTextPage()->Parse(0);
    document.ReleasePage(index, 0);
}

// Objects that a tag names and that are not there.
void CheckTag(ofd::OfdDocument& document, const G_CustomTagItem& tag, std::vector<ofd::Problem>& problems)
{
    int named = 0;
    for (const G_PageObjRef* reference : tag.objects.Values())
        named += reference->objectIds.size();
    if (named == 0)
        return;
    CCA_LockedArray<G_PageObjectPath> found;
    document.CustomTagObjects(found, &tag);
    if (found.GetSize() >= named)
        return;
    ofd::Problem problem;
    problem.kind = ofd::ProblemKind::DanglingReference;
    problem.text = QStringLiteral("The tag \"%1\" names %2 objects; %3 of them are not on their pages.")
                       .arg(QString::fromUtf8(tag.tagName.Bytes()), QString::number(named),
                            QString::number(named - found.GetSize()));
    problems.push_back(problem);
}

void CheckTags(ofd::OfdDocument& document, std::vector<ofd::Problem>& problems)
{
    for (int i = 0; i < document.CustomTagRootCount(); ++i) {
        std::vector<const G_TreeNode*> open{document.CustomTagRoot(i)};
        while (!open.empty()) {
            const G_TreeNode* node = open.back();
            open.pop_back();
            if (const auto* tag = dynamic_cast<const G_CustomTagItem*>(node->data))
                CheckTag(document, *tag, problems);
            for (int k = node->SubNodeCount() - 1; k >= 0; --k)
                open.push_back(node->SubNode(k));
        }
    }
}

// Reads and paints all there is.
std::vector<ofd::Problem> CheckDocument(ofd::OfdDocument& document)
{
    document.Prepare();
    for (int i = 0; i < document.GetPageCount(); ++i)
        PaintPage(document, i);
    std::vector<ofd::Problem> tagProblems;
    CheckTags(document, tagProblems);
    document.ReadAllParts();
    std::vector<ofd::Problem> problems = document.GetProblems();
    problems.insert(problems.end(), tagProblems.begin(), tagProblems.end());
    return problems;
}

bool IsProblem(const ofd::Problem& problem)
{
    return ofd::SeverityOf(problem.kind) == ofd::ProblemSeverity::Problem;
}

OVJson JsonOf(const ofd::Problem& problem)
{
    OVJson item;
    item.SetString("severity", IsProblem(problem) ? QStringLiteral("problem") : QStringLiteral("info"));
    item.SetString("kind", QString::fromLatin1(ofd::WordOf(problem.kind)));
    item.SetString("part", problem.part);
    item.SetDouble("offset", double(problem.offset));
    item.SetDouble("objectId", double(quint32(problem.objectId)));
    item.SetString("text", problem.text);
    item.SetInt("more", problem.more);
    return item;
}

// A sentence that names the part of the problem need not do so behind its place.
QString SentenceOf(const ofd::Problem& problem)
{
    QString text = problem.text;
    if (!problem.part.isEmpty())
        text.replace(QStringLiteral("The part \"%1\"").arg(problem.part), QStringLiteral("The part"));
    return text;
}

QString LineOf(const ofd::Problem& problem)
{
    QString place = problem.part.isEmpty() ? QStringLiteral("-") : problem.part;
    if (problem.objectId)
        place += QStringLiteral(" object %1").arg(quint32(problem.objectId));
    if (problem.offset >= 0)
        place += QStringLiteral(" byte %1").arg(problem.offset);
    QString line =
        QStringLiteral("%1\t%2\t%3\t%4")
            .arg(IsProblem(problem) ? QStringLiteral("problem") : QStringLiteral("info"),
                 QString::fromLatin1(ofd::WordOf(problem.kind)), OneLine(place), OneLine(SentenceOf(problem)));
    if (problem.more > 0)
        line += QStringLiteral(" … and %1 more").arg(problem.more);
    return line;
}

} // namespace

int RunCheck(const ToolCall& call)
{
    const QString path = call.arguments.at(0);
    const std::unique_ptr<ofd::OfdDocument> document = OpenToolFile(path);
    if (!document)
        return ExitCannotOpen;
    const std::vector<ofd::Problem> problems = CheckDocument(*document);
    const bool isSound = std::none_of(problems.begin(), problems.end(), IsProblem);
    if (call.WantsJson()) {
        OVJson answer;
        answer.SetString("file", path);
        answer.SetInt("pages", document->GetPageCount());
        answer.SetBool("isSound", isSound);
        OVJson list = answer.AddArray("problems");
        for (const ofd::Problem& problem : problems)
            list.Append(JsonOf(problem));
        call.output.Json(answer);
    } else {
        for (const ofd::Problem& problem : problems)
            call.output.Line(LineOf(problem));
        call.output.Line(isSound ? QStringLiteral("sound") : QStringLiteral("problems worked around"));
    }
    return isSound ? ExitFine : ExitFound;
}
