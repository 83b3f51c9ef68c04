// The text form of the in-memory document.
#include "memory_text_form.h"

#include <frame/base/converters.h>

#include <cmath>

namespace {

constexpr float largestPageMm = 100000;
constexpr float largestAttachmentKb = 64 * 1024;

} // namespace

bool TextForm::Fail(const QString& message)
{
    if (error.isEmpty())
        error = message;
    return false;
}

std::unique_ptr<MemoryDocument> TextForm::Read(const QString& text)
{
    document = std::make_unique<MemoryDocument>();
    int lineNumber = 0;
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (const QString& line : lines) {
        ++lineNumber;
        if (!ReadLine(line)) {
            error = QStringLiteral("line %1: %2").arg(lineNumber).arg(error);
            return nullptr;
        }
    }
    for (G_Dest* dest : qAsConst(openDests))
        dest->pageIndex = document->PageIndexFromId(dest->pageId);
    document->SetModified(false);
    return std::move(document);
}

bool TextForm::ReadLine(const QString& line)
{
    int blanks = 0;
    while (blanks < line.size() && line.at(blanks) == QLatin1Char(' '))
        ++blanks;
    const QString content = line.mid(blanks).trimmed();
    if (content.isEmpty() || content.startsWith(QLatin1Char('#')))
        return true;
    const int depth = blanks / 2;
    if (blanks % 2 != 0 || depth > levels.size() || line.at(blanks).isSpace())
        return Fail(QStringLiteral("wrong indentation"));
    levels.resize(depth);
    const Level outer = depth > 0 ? levels.last() : Level();
    Level inner;
    words = LineWords(content);
    QString keyword;
    if (!words.Next(&keyword) || !ReadItem(keyword, outer, &inner))
        return Fail(QStringLiteral("unfinished quotes"));
    levels.append(inner);
    return true;
}

bool TextForm::ReadItem(const QString& keyword, const Level& outer, Level* inner)
{
    static const Keyword keywords[] = {
        {"page", AtTop, &TextForm::Page, InPage},
        {"text", InPage, &TextForm::Text, InLeaf},
        {"layer", InPage, &TextForm::Layer, InLeaf},
        {"template", AtTop, &TextForm::Template, InLeaf},
        {"template", InPage, &TextForm::TemplateRef, InLeaf},
        {"annot", InPage, &TextForm::Annot, InLeaf},
        {"link", InPage, &TextForm::Link, InLeaf},
        {"open", AtTop, &TextForm::Open, InLeaf},
        {"bookmark", AtTop, &TextForm::Bookmark, InLeaf},
        {"outline", AtTop, &TextForm::Outline, InOutline},
        {"outline", InOutline, &TextForm::Outline, InOutline},
        {"tag", AtTop, &TextForm::Tag, InTag},
        {"tag", InTag, &TextForm::Tag, InTag},
        {"attachment", AtTop, &TextForm::Attachment, InLeaf},
        {"rights", AtTop, &TextForm::Rights, InLeaf},
        {"readonly", AtTop, &TextForm::ReadOnly, InLeaf},
        {"signed", AtTop, &TextForm::Signed, InLeaf},
        {"encrypted", AtTop, &TextForm::Encrypted, InLeaf},
    };
    bool isKnown = false;
    for (const Keyword& entry : keywords) {
        if (keyword != QLatin1String(entry.word))
            continue;
        isKnown = true;
        if (entry.place != outer.place)
            continue;
        treeNode = outer.node;
        if (!(this->*entry.handler)())
            return Fail(QStringLiteral("wrong values for \"%1\"").arg(keyword));
        if (!words.AtEnd())
            return Fail(QStringLiteral("too much behind \"%1\"").arg(keyword));
        *inner = {entry.opens, treeNode};
        return true;
    }
    return Fail(
        (isKnown ? QStringLiteral("\"%1\" cannot stand here") : QStringLiteral("unknown word \"%1\"")).arg(keyword));
}

bool TextForm::NextFloat(float* number)
{
    QString word;
    bool isNumber = false;
    if (!words.Next(&word))
        return false;
    *number = word.toFloat(&isNumber);
    return isNumber && std::isfinite(*number);
}

bool TextForm::NextId(int* id)
{
    QString word;
    return words.Next(&word) && ReadId(word, id);
}

bool TextForm::Page()
{
    float width = 0;
    float height = 0;
    if (!NextFloat(&width) || !NextFloat(&height))
        return false;
    if (width <= 0 || height <= 0 || width > largestPageMm || height > largestPageMm)
        return Fail(QStringLiteral("impossible page size"));
    int id = 0;
    if (!words.AtEnd()) {
        QString key, value;
        if (!words.NextPair(&key, &value) || key != QLatin1String("id"))
            return false;
        if (!ReadId(value, &id) || document->PageIndexFromId(id) >= 0)
            return Fail(QStringLiteral("the page id is wrong or taken"));
    }
    document->AddPage(width, height, id);
    return true;
}

bool TextForm::Text()
{
    float x = 0;
    float y = 0;
    if (!NextFloat(&x) || !NextFloat(&y))
        return false;
    document->AddText(document->GetPageCount() - 1, x, y, words.Rest());
    return true;
}

bool TextForm::Layer()
{
    QString kind;
    if (!words.Next(&kind) || kind.size() != 1 || kind.at(0) < QLatin1Char('0') || kind.at(0) > QLatin1Char('2'))
        return false;
    document->AddLayer(document->GetPageCount() - 1, kind.toInt(), words.Name());
    return true;
}

bool TextForm::Template()
{
    int id = 0;
    QString zOrder;
    if (!NextId(&id) || !words.Next(&zOrder))
        return false;
    document->AddTemplate(id, zOrder, words.Name());
    return true;
}

bool TextForm::TemplateRef()
{
    int id = 0;
    QString zOrder;
    if (!NextId(&id) || !words.Next(&zOrder))
        return false;
    document->AddTemplateRef(document->GetPageCount() - 1, id, zOrder);
    return true;
}

bool TextForm::Annot()
{
    MemoryDocument::AnnotRecord record;
    while (!words.AtEnd()) {
        QString key, value;
        if (words.SkipKey(QStringLiteral("remark"))) {
            record.remark = GQ_ToCAS(words.Rest()); // to the end of the line
        } else if (!words.NextPair(&key, &value) || value.isNull() || !AnnotWord(key, value, &record)) {
            return false;
        }
    }
    document->AddAnnot(document->GetPageCount() - 1, record);
    return true;
}

bool TextForm::AnnotWord(const QString& key, const QString& value, MemoryDocument::AnnotRecord* record)
{
    bool isNumber = true;
    if (key == QLatin1String("id")) {
        record->id = value.toInt(&isNumber);
    } else if (key == QLatin1String("type")) {
        record->type = value.toInt(&isNumber);
    } else if (key == QLatin1String("subtype")) {
        record->subType = GQ_ToCAS(value);
    } else if (key == QLatin1String("creator")) {
        record->creator = GQ_ToCAS(value);
    } else if (key == QLatin1String("date")) {
        record->date = GQ_ToCAS(value);
    } else if (key == QLatin1String("remark")) {
        record->remark = GQ_ToCAS(value);
    } else if (key == QLatin1String("points")) {
        record->points = GQ_ToCAS(value);
    } else if (key == QLatin1String("rect")) {
        return ReadRect(value, &record->boundary);
    } else if (key == QLatin1String("visible")) {
        return ReadYesNo(value, &record->visible);
    } else if (key == QLatin1String("locked")) {
        return ReadYesNo(value, &record->locked);
    } else if (key == QLatin1String("hidden")) {
        return ReadYesNo(value, &record->hiddenFromList);
    } else {
        return Fail(QStringLiteral("unknown word \"%1\"").arg(key));
    }
    return isNumber;
}

G_TreeNode* TextForm::AddTo(G_TreeNode* parent, G_NodeData* payload)
{
    return parent->AddSubNode(parent->SubNodeCount(), payload);
}

bool TextForm::Bookmark()
{
    auto bookmark = std::make_unique<G_Bookmark>();
    QString name;
    if (!words.Next(&name))
        return false;
    bookmark->name = GQ_ToCAS(name);
    while (!words.AtEnd()) {
        QString key, value;
        if (!words.NextPair(&key, &value) || !DestWord(key, value, bookmark->dest))
            return false;
    }
    document->CreateBookmarkRoot();
    AddTo(document->GetBookmarkRoot(), bookmark.release());
    return true;
}

bool TextForm::Outline()
{
    auto item = std::make_unique<G_OutlineItem>();
    QString title;
    if (!words.Next(&title))
        return false;
    item->title = item->text = GQ_ToCAS(title);
    G_ActionGoto* go = nullptr;
    while (!words.AtEnd()) {
        QString key, value;
        if (!words.NextPair(&key, &value))
            return false;
        if (key == QLatin1String("closed") && value.isNull()) {
            item->expanded = false;
        } else if (key == QLatin1String("uri") && !value.isNull()) {
            auto* address = new G_ActionUri;
            address->uri = GQ_ToCAS(value);
            item->actions.Add(address);
        } else {
            if (!go)
                item->actions.Add(go = new G_ActionGoto);
            if (!DestWord(key, value, go->dest))
                return false;
        }
    }
    document->CreateOutlineRoot();
    treeNode = AddTo(treeNode ? treeNode : document->GetOutlineRoot(), item.release());
    return true;
}

bool TextForm::Tag()
{
    QString name;
    if (!words.Next(&name))
        return false;
    G_CustomTagItem* tag = nullptr; // not owned; its node has it
    if (treeNode) {
        tag = new G_CustomTagItem;
        treeNode = AddTo(treeNode, tag);
    } else {
        document->AddCustomTagRoot("", "", "", 0);
        treeNode = document->CustomTagRoot(document->CustomTagRootCount() - 1)->SubNode(0);
        tag = dynamic_cast<G_CustomTagItem*>(treeNode->data);
    }
    tag->tagName = GQ_ToCAS(name);
    while (!words.AtEnd()) {
        QString key, value;
        if (!words.NextPair(&key, &value) || value.isNull())
            return false;
        if (key != QLatin1String("objects"))
            tag->attributes.Add(GQ_ToCAS(key + QLatin1Char('=') + value));
        else if (!TagObjects(value, tag))
            return false;
    }
    return true;
}

// "pageId:1,2": objects of one page; a tag may have several such words.
bool TextForm::TagObjects(const QString& value, G_CustomTagItem* tag)
{
    auto ref = std::make_unique<G_PageObjRef>();
    bool isNumber = false;
    ref->pageId = value.section(QLatin1Char(':'), 0, 0).toInt(&isNumber);
    if (!isNumber || value.count(QLatin1Char(':')) != 1)
        return false;
    const QStringList ids = value.section(QLatin1Char(':'), 1).split(QLatin1Char(','));
    for (const QString& id : ids) {
        ref->objectIds.append(id.toInt(&isNumber));
        if (!isNumber)
            return false;
    }
    tag->objects.Add(ref.release());
    return true;
}

bool TextForm::Attachment()
{
    QString name, format, hidden;
    float sizeKb = 0;
    G_AttachmentInfo info;
    if (!words.Next(&name) || !words.Next(&format) || !NextFloat(&sizeKb) || !NextId(&info.id))
        return false;
    if (sizeKb < 0 || sizeKb > largestAttachmentKb)
        return Fail(QStringLiteral("impossible size"));
    if (!words.AtEnd() && (!words.Next(&hidden) || hidden != QLatin1String("hidden")))
        return false;
    info.name = GQ_ToCAS(name);
    info.format = GQ_ToCAS(format);
    info.size = sizeKb;
    info.visible = hidden.isEmpty();
    const QByteArray alphabet = "abcdefghijklmnopqrstuvwxyz";
    const int size = qRound(sizeKb * 1024);
    QByteArray data = alphabet.repeated(size / alphabet.size() + 1); // many bytes at a time: it may be many
    data.truncate(size);
    document->AddAttachmentData(info, data);
    return true;
}

bool TextForm::Rights()
{
    bool edit = true;
    bool annotate = true;
    bool exportContent = true;
    bool print = true;
    int copies = -1;
    while (!words.AtEnd()) {
        QString key, value;
        bool isNumber = false;
        if (!words.NextPair(&key, &value))
            return false;
        if (key == QLatin1String("copies")) {
            copies = value.toInt(&isNumber);
            if (!isNumber || copies < 0)
                return false;
            continue;
        }
        bool* right = key == QLatin1String("edit")     ? &edit
                      : key == QLatin1String("annot")  ? &annotate
                      : key == QLatin1String("export") ? &exportContent
                      : key == QLatin1String("print")  ? &print
                                                       : nullptr;
        if (!right)
            return Fail(QStringLiteral("unknown word \"%1\"").arg(key));
        if (!ReadYesNo(value, right))
            return false;
    }
    document->SetRights(true, edit, annotate, exportContent);
    document->SetPrintRight(print, copies);
    return true;
}

bool TextForm::ReadOnly()
{
    document->SetReadOnly(true);
    return true;
}

bool TextForm::Signed()
{
    document->SetSignProtected(true);
    return true;
}

bool TextForm::Encrypted()
{
    document->SetEncrypted(true);
    return true;
}

std::unique_ptr<MemoryDocument> MemoryDocument::FromText(const QString& text, QString* error)
{
    TextForm form;
    std::unique_ptr<MemoryDocument> document = form.Read(text);
    if (error)
        *error = document ? QString() : form.Error();
    return document;
}
