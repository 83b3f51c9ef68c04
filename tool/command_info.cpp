#include "output.h"
#include "tool_command.h"

#include <frame/document/tree_node.h>
#include <ofd/ofd_document.h>

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

void SetInformation(OVJson& json, const ofd::DocumentFacts& facts)
{
    const struct
    {
        const char* key;
        const QString& text;
    } rows[] = {
        {"formatVersion", facts.formatVersion},
        {"title", facts.title},
        {"author", facts.author},
        {"subject", facts.subject},
        {"summary", facts.summary},
        {"creator", facts.creator},
        {"creatorVersion", facts.creatorVersion},
        {"creationDate", facts.creationDate},
        {"modificationDate", facts.modificationDate},
    };
    for (const auto& row : rows)
        json.SetString(row.key, row.text);
    json.SetString("keywords", facts.keywords.join(QStringLiteral(", ")));
}

// Which state of the document is read; nothing when the file keeps but one.
void SetVersion(OVJson& json, const ofd::VersionFacts& version)
{
    if (version.count == 0)
        return;
    json.SetInt("versions", version.count);
    json.SetInt("versionShown", version.shown);
    json.SetString("versionName", version.name);
    json.SetBool("isNewestVersion", version.isNewest);
}

void SetFlags(OVJson& json, const ofd::DocumentFacts& facts, ofd::OfdDocument& document)
{
    const ofd::Permissions& permissions = facts.permissions;
    json.SetBool("hasPermissions", permissions.exist);
    if (permissions.validFrom.isValid())
        json.SetString("validFrom", permissions.validFrom.toString(Qt::ISODate));
    if (permissions.validUntil.isValid())
        json.SetString("validUntil", permissions.validUntil.toString(Qt::ISODate));
    json.SetBool("mayEdit", document.CheckRight(true));
    json.SetBool("mayAnnotate", permissions.annotate);
    json.SetBool("mayExport", permissions.exportContent);
    json.SetBool("mayPrint", document.MayPrint());
    if (permissions.copies >= 0)
        json.SetInt("mostCopies", permissions.copies);
    json.SetBool("isSigned", facts.isSigned);
    json.SetBool("areSignaturesVerified", false); // seals are shown; whether a signature holds is not looked at
    json.SetBool("isEncrypted", facts.isEncrypted);
}

OVJson Facts(const QString& path, ofd::OfdDocument& document)
{
    const ofd::DocumentFacts facts = document.GetFacts();
    OVJson json;
    json.SetString("file", path);
    json.SetDouble("bytes", double(facts.bytes));
    SetInformation(json, facts);
    SetVersion(json, facts.version);
    json.SetInt("pages", facts.pages);
    json.SetObject("pageSizes", PageSizes(document));
    json.SetInt("templates", facts.templates);
    json.SetInt("outlineEntries", CountNodes(document.GetOutlineRoot()));
    json.SetInt("bookmarks", CountNodes(document.GetBookmarkRoot()));
    json.SetInt("tags", CountTags(document));
    json.SetInt("attachments", facts.attachments);
    SetFlags(json, facts, document);
    return json;
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
