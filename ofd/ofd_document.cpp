#include "document_private.h"

#include <frame/base/converters.h>
#include <frame/base/streams.h>
#include <ofd/parse/action_reader.h>
#include <ofd/parse/attachment_reader.h>
#include <ofd/parse/document_reader.h>
#include <ofd/text/text_store.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QFileInfo>
#include <QIODevice>

#include <algorithm>
#include <limits>
#include <new>

namespace ofd {

namespace {

bool CanBeReplaced(const QString& path)
{
    const QFileInfo file(path);
    return file.isWritable() && QFileInfo(file.absolutePath()).isWritable();
}

// Takes bytes and forgets them.
class NoDevice : public QIODevice
{
public:
    NoDevice() { open(QIODevice::WriteOnly | QIODevice::Unbuffered); }

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char*, qint64 size) override { return size; }
};

CCA_Path PathOf(const QPainterPath& outline)
{
    CCA_Path path;
    for (int i = 0; i < outline.elementCount(); ++i) {
        const QPainterPath::Element element = outline.elementAt(i);
        const CCA_GPoint point{float(element.x), float(element.y)};
        if (element.isMoveTo())
            path.AppendPoint(point, CCA_Path::MoveTo);
        else
            path.AppendPoint(point, element.isLineTo() ? CCA_Path::LineTo : CCA_Path::BezierTo);
    }
    return path;
}

} // namespace

OpenResult OfdDocument::Open(const QString& path, bool readOnly)
{
    try {
        return Read(path, readOnly);
    } catch (const std::bad_alloc&) {
        return {nullptr,
                QCoreApplication::translate("OfdDocument", "There is not enough memory to open the document.")};
    }
}

OpenResult OfdDocument::Read(const QString& path, bool readOnly)
{
    OpenResult result;
    const QFileInfo info(path);
    const QString known = info.canonicalFilePath();
    auto data = std::make_unique<Private>();
    data->path = known.isEmpty() ? info.absoluteFilePath() : known;
    PackageError error;
    std::shared_ptr<Package> package = Package::Open(data->path, &error);
    if (!package) {
        result.error = error.text;
        return result;
    }
    auto problems = std::make_unique<ProblemLog>();
    const ProblemScope scope(*problems, package->GetEntryPoint());
    DocumentParts parts = ReadDocument(*package);
    if (!parts.document) {
        result.error = parts.error;
        return result;
    }
    data->isReadOnly = readOnly || !CanBeReplaced(data->path);
    data->documentPart = std::move(parts.document);
    const QVector<AttachmentEntry> attachments =
        ReadAttachments(*package, parts.structure, data->documentPart->GetRoot());
    parts.structure.attachmentIds = AttachmentIdsOf(attachments);
    data->attachments =
        std::make_unique<AttachmentTable>(attachments, parts.structure.attachmentsPart, [d = data.get()](int above) {
            const std::shared_ptr<const Package> current = d->store->GetPackage();
            return d->store->GetUnitIds().Take(*current, above);
        });
    data->customTagsPart = parts.structure.customTagsPart;
    data->pages.resize(size_t(parts.structure.pages.size()));
    data->store = std::make_shared<DocumentStore>(std::move(package), std::move(parts.structure), std::move(problems));
    data->renderer = std::make_unique<OfdPageRenderer>(data->store);
    data->textSource = std::make_unique<OfdTextSource>(data->store);
    result.document.reset(new OfdDocument(std::move(data)));
    return result;
}

OfdDocument::OfdDocument(std::unique_ptr<Private> d)
    : d(std::move(d))
{
}

OfdDocument::~OfdDocument() = default;

QString OfdDocument::GetPath() const
{
    return d->path;
}

QString OfdDocument::GetTitle() const
{
    return d->Structure().title;
}

std::vector<Problem> OfdDocument::GetProblems() const
{
    return d->store->GetProblems().GetProblems();
}

void OfdDocument::ReadAllParts()
{
    const std::shared_ptr<const Package> package = d->store->GetPackage();
    const ProblemScope scope(d->store->GetProblems(), QString());
    const QStringList names = package->GetPartNames();
    for (const ZipEntry& entry : package->GetDirectory().entries) {
        const int used = entry.isFolder ? -1 : package->FindEntry(entry.name);
        if (used >= 0 && &package->GetDirectory().entries[size_t(used)] != &entry)
            ReportProblem(ProblemKind::DuplicateIdentifier, entry.name,
                          QCoreApplication::translate("OfdDocument", "The file has more than one part of this name."));
    }
    for (const QString& name : names) {
        NoDevice nowhere;
        package->ReadTo(name, nowhere);
    }
}

CCA_String OfdDocument::GetDocumentKey()
{
    return CCA_String(d->path.toUtf8());
}

// Pages.

OfdPage* OfdDocument::Private::PageAt(IG_Document* document, int index)
{
    if (index < 0 || index >= int(pages.size()))
        return nullptr;
    std::unique_ptr<OfdPage>& page = pages[size_t(index)];
    if (!page)
        page = std::make_unique<OfdPage>(document, store, index);
    return page.get();
}

int OfdDocument::PageIdFromIndex(int index)
{
    return d->Structure().pages.value(index).id;
}

int OfdDocument::PageIndexFromId(int id)
{
    return d->Structure().pageIndexById.value(id, -1);
}

int OfdDocument::GetPageCount()
{
    return d->Structure().pages.size();
}

IG_Page* OfdDocument::GetPage(int index)
{
    return d->PageAt(this, index);
}

void OfdDocument::ReleasePage(int index, int)
{
    if (index >= 0 && index < int(d->pages.size()) && d->pages[size_t(index)])
        d->pages[size_t(index)]->Unload();
}

QSizeF OfdDocument::PageSizeMm(int index)
{
    return d->store->GetPageSize(index);
}

IG_PageRenderer* OfdDocument::Renderer()
{
    return d->renderer.get();
}

IG_TextSource* OfdDocument::TextSource()
{
    return d->textSource.get();
}

int OfdDocument::ShownTextRevision()
{
    return d->store->GetSession().GetTextRevision();
}

// Templates.

int OfdDocument::GetTemplateCount()
{
    return d->Structure().templates.size();
}

int OfdDocument::GetTemplateIdAt(int position)
{
    return d->Structure().templates.value(position).id;
}

CCA_String OfdDocument::GetTemplateName(int id)
{
    const DocumentStructure& structure = d->Structure();
    return CCA_String(structure.templates.value(structure.templateById.value(id, -1)).name.toUtf8());
}

CCA_String OfdDocument::GetTemplateZOrder(int id)
{
    const LayerKind kind = d->store->GetTemplateKind(id);
    return kind == LayerKind::Foreground ? "Foreground" : kind == LayerKind::Body ? "Body" : "Background";
}

void OfdDocument::SetTemplateVisible(int id, bool visible)
{
    if (d->Structure().templateById.contains(id))
        d->store->GetSession().SetTemplateHidden(id, !visible);
}

bool OfdDocument::IsTemplateVisible(int id)
{
    return d->Structure().templateById.contains(id) && !d->store->GetSession().IsTemplateHidden(id);
}

// Trees.

void OfdDocument::Private::ReadBookmarksOnce()
{
    if (areBookmarksRead)
        return;
    const ProblemScope scope(store->GetProblems(), Structure().documentPart);
    BookmarkSources sources;
    bookmarks = ReadBookmarks(*documentPart, Structure(), &sources);
    bookmarkSources = std::move(sources);
    areBookmarksRead = true;
}

bool OfdDocument::CreateBookmarkRoot()
{
    d->ReadBookmarksOnce();
    if (!d->bookmarks)
        d->bookmarks.reset(G_TreeNode::CreateRoot());
    return true;
}

G_TreeNode* OfdDocument::GetBookmarkRoot()
{
    d->ReadBookmarksOnce();
    return d->bookmarks.get();
}

void OfdDocument::Private::ReadOutlineOnce()
{
    if (isOutlineRead)
        return;
    const ProblemScope scope(store->GetProblems(), Structure().documentPart);
    outline = ReadOutline(*documentPart, Structure(), &outlineElements);
    documentPart->GetPackedBytes()->Pack(); // a long outline's are long, and only a save needs them again
    isOutlineRead = true;
}

bool OfdDocument::CreateOutlineRoot()
{
    d->ReadOutlineOnce();
    if (!d->outline)
        d->outline.reset(G_TreeNode::CreateRoot());
    return true;
}

G_TreeNode* OfdDocument::GetOutlineRoot()
{
    d->ReadOutlineOnce();
    return d->outline.get();
}

void OfdDocument::Private::ReadTagsOnce()
{
    if (areTagsRead)
        return;
    const DocumentStructure& structure = Structure();
    const ProblemScope scope(store->GetProblems(), structure.customTagsPart);
    tags = ReadCustomTags(*store->GetPackage(), structure.customTagsPart, structure.documentFolder);
    areTagsRead = true;
}

bool OfdDocument::AddCustomTagRoot(const char* name, const char* prefix, const char* nameSpace, int)
{
    d->ReadTagsOnce();
    if (!d->MayAddTo(d->customTagsPart))
        return false;
    TagTree tree;
    tree.root.reset(G_TreeNode::CreateRoot());
    tree.prefix = QString::fromUtf8(prefix);
    tree.nameSpace = QString::fromUtf8(nameSpace);
    auto* tag = new G_CustomTagItem; // owned by its node
    tag->tagName = CCA_String(name);
    tree.root->AddSubNode(0, tag);
    d->tags.push_back(std::move(tree));
    return true;
}

int OfdDocument::CustomTagRootCount()
{
    d->ReadTagsOnce();
    return int(d->tags.size());
}

G_TreeNode* OfdDocument::CustomTagRoot(int position)
{
    d->ReadTagsOnce();
    return position >= 0 && position < int(d->tags.size()) ? d->tags[size_t(position)].root.get() : nullptr;
}

void OfdDocument::CustomTagObjects(CCA_LockedArray<G_PageObjectPath>& objects, const G_CustomTagItem* item)
{
    if (!item)
        return;
    for (const G_PageObjRef* reference : item->objects.Values()) {
        OfdPage* page = reference ? d->PageAt(this, PageIndexFromId(reference->pageId)) : nullptr;
        if (!page)
            continue;
        for (const int id : reference->objectIds) {
            const ObjectPlace* place = page->FindObject(id);
            if (!place)
                continue;
            G_PageObjectPath path;
            path.pageIndex = page->GetIndex();
            path.kind = place->outline.isEmpty() ? 1 : 2;
            if (place->outline.isEmpty())
                path.path.AppendRect(GQ_ToCAGRect(place->box));
            else
                path.path = PathOf(place->outline);
            objects.Add(path);
        }
    }
}

std::shared_ptr<const G_ActionList> OfdDocument::GetOpenActions()
{
    const ProblemScope scope(d->store->GetProblems(), d->Structure().documentPart);
    const auto actions = ReadActions(d->documentPart->GetRoot(), ActionEvent::DocumentOpen);
    if (!actions)
        return nullptr;
    auto list = std::make_shared<G_ActionList>();
    for (const ObjectAction& read : *actions)
        list->Add(ResolvedAction(*read.action, d->Structure()));
    return list;
}

// States.

bool OfdDocument::IsModified()
{
    return d->AreBookmarksEdited() || d->IsOutlineEdited() || d->AreTagsEdited() || d->attachments->IsChanged() ||
           d->AreAnnotsEdited();
}

void OfdDocument::Prepare()
{
    d->ReadBookmarksOnce();
    d->ReadOutlineOnce();
    d->store->GetResources();
}

bool OfdDocument::RemoveAnnot(IG_Annot* annot)
{
    auto* page = annot ? dynamic_cast<OfdPage*>(annot->GetOwnerPage()) : nullptr;
    return page && page->GetDocument() == this && page->SetAnnotRemoved(annot, true);
}

bool OfdDocument::ReviveAnnot(IG_Annot* annot)
{
    auto* page = annot ? dynamic_cast<OfdPage*>(annot->GetOwnerPage()) : nullptr;
    return page && page->GetDocument() == this && page->SetAnnotRemoved(annot, false);
}

// Attachments.

int OfdDocument::GetAttachmentCount()
{
    return d->attachments->GetCount();
}

int OfdDocument::GetAttachmentIndexById(int id)
{
    return d->attachments->GetIndexById(id);
}

G_AttachmentInfo OfdDocument::GetAttachment(int index)
{
    return d->attachments->GetInfo(index);
}

bool OfdDocument::WriteAttachment(int index, ICA_StreamWriter* writer)
{
    const ProblemScope scope(d->store->GetProblems(), d->attachments->GetListPart());
    return d->attachments->Write(
        index, [this] { return d->store->GetPackage(); }, writer);
}

bool OfdDocument::AddAttachment(ICA_StreamReader* reader, bool isBigFile, const char* title, const char* format,
                                const char* name, const char*, int)
{
    const std::unique_ptr<ICA_StreamReader> owned(reader);
    if (!d->MayAddTo(d->attachments->GetListPart()))
        return false;
    const QString shown = QString::fromUtf8(title ? title : name);
    G_AttachmentInfo info;
    info.name = CCA_String(HarmlessName(shown).toUtf8());
    info.format = CCA_String(HarmlessName(QString::fromUtf8(format)).toUtf8());
    info.addDate = CCA_String(QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss")).toUtf8());
    return d->attachments->AddFrom(owned.get(), info, isBigFile);
}

bool OfdDocument::RemoveAttachment(int index)
{
    return d->attachments->Remove(index);
}

// Text.

QList<G_TextRects> OfdDocument::SelectTextRange(const CCA_GPoint& start, int startPage, const CCA_GPoint& end,
                                                int endPage, const OVSharedPtr<OVJson>&)
{
    QList<G_TextRects> selection;
    const bool isForward = startPage <= endPage;
    const int first = std::min(startPage, endPage);
    const int last = std::max(startPage, endPage);
    const bool isEmpty = first == last && start.x == end.x && start.y == end.y;
    if (first < 0 || last >= GetPageCount() || isEmpty)
        return selection;
    constexpr float farAway = std::numeric_limits<float>::max();
    for (int index = first; index <= last; ++index) {
        const CCA_GPoint from = index == first ? (isForward ? start : end) : CCA_GPoint{-farAway, -farAway};
        const CCA_GPoint to = index == last ? (isForward ? end : start) : CCA_GPoint{farAway, farAway};
        const std::shared_ptr<const PageText> text = d->store->GetTexts().GetText(index);
        G_TextRects rects;
        rects.pageIndex = index;
        for (const G_TextRun& run : text->RunsBetween(from, to))
            rects.rects.Add(run.rect);
        selection.append(rects);
    }
    return selection;
}

} // namespace ofd
