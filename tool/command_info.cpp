#include "output.h"
#include "tool_command.h"

#include <frame/document/tree_node.h>
#include <ofd/ofd_document.h>

#include <QFileInfo>

namespace {

int CountNodes(const G_TreeNode* root)
{
    int count = 0;
    std::vector<const G_TreeNode*> open{root};
    while (!open.empty()) {
        const G_TreeNode* node = open.back();
        open.pop_back();
        for (int i = 0; node && i < node->SubNodeCount(); ++i) {
            ++count;
            open.push_back(node->SubNode(i));
        }
    }
    return count;
}

int CountTags(ofd::OfdDocument& document)
{
    int count = 0;
    for (int i = 0; i < document.CustomTagRootCount(); ++i)
        count += CountNodes(document.CustomTagRoot(i));
    return count;
}

// Neighbouring pages of one size are one entry.
OVJson PageSizes(ofd::OfdDocument& document)
{
    OVJson sizes = OVJson::MakeArray();
    const int count = document.GetPageCount();
    for (int first = 0; first < count;) {
        const QSizeF size = document.PageSizeMm(first);
        int last = first;
        while (last + 1 < count && document.PageSizeMm(last + 1) == size)
            ++last;
        OVJson entry;
        entry.SetInt("first", first + 1);
        entry.SetInt("last", last + 1);
        entry.SetDouble("widthMm", size.width());
        entry.SetDouble("heightMm", size.height());
        sizes.Append(entry);
        first = last + 1;
    }
    return sizes;
}

void SetFlags(OVJson& facts, ofd::OfdDocument& document)
{
    facts.SetBool("hasPermissions", document.HasPermissions());
    facts.SetBool("mayEdit", document.MayEdit());
    facts.SetBool("mayAnnotate", document.MayAnnotate());
    facts.SetBool("mayExport", document.MayExport());
    facts.SetBool("isSigned", document.IsSignProtected());
    facts.SetBool("areSignaturesVerified", false); // seals are shown; whether a signature holds is not looked at
    facts.SetBool("isEncrypted", document.IsEncrypted());
}

OVJson Facts(const QString& path, ofd::OfdDocument& document)
{
    OVJson facts;
    facts.SetString("file", path);
    facts.SetDouble("bytes", double(QFileInfo(path).size()));
    facts.SetString("title", document.GetTitle());
    facts.SetInt("pages", document.GetPageCount());
    facts.SetObject("pageSizes", PageSizes(document));
    facts.SetInt("templates", document.GetTemplateCount());
    facts.SetInt("outlineEntries", CountNodes(document.GetOutlineRoot()));
    facts.SetInt("bookmarks", CountNodes(document.GetBookmarkRoot()));
    facts.SetInt("tags", CountTags(document));
    facts.SetInt("attachments", document.GetAttachmentCount());
    SetFlags(facts, document);
    return facts;
}

QString SizesText(const OVJson& sizes)
{
    QStringList texts;
    for (int i = 0; i < sizes.Size(); ++i) {
        const OVJson size = sizes.At(i);
        texts += QStringLiteral("%1 x %2 mm (pages %3-%4)")
                     .arg(size.Member("widthMm").ToQString(), size.Member("heightMm").ToQString(),
                          size.Member("first").ToQString(), size.Member("last").ToQString());
    }
    return texts.join(QStringLiteral(", "));
}

QString ValueText(const OVJson& value)
{
    if (value.IsArray())
        return SizesText(value);
    if (value.IsString() || value.IsNumber())
        return OneLine(value.ToQString());
    return value.ToBool() ? QStringLiteral("yes") : QStringLiteral("no");
}

} // namespace

int RunInfo(const ToolCall& call)
{
    const QString path = call.arguments.at(0);
    const std::unique_ptr<ofd::OfdDocument> document = OpenToolFile(path);
    if (!document)
        return ExitCannotOpen;
    const OVJson facts = Facts(path, *document);
    if (call.WantsJson()) {
        call.output.Json(facts);
        return ExitFine;
    }
    for (int i = 0; i < facts.MemberCount(); ++i) {
        const QByteArray key = facts.KeyAt(i);
        call.output.Line(QString::fromLatin1(key) + QStringLiteral(": ") + ValueText(facts.Member(key)));
    }
    return ExitFine;
}
