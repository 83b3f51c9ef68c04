#include "memory_document.h"

#include "memory_private.h"
#include "memory_tags.h"

#include <frame/base/converters.h>

#include <QCoreApplication>
#include <QStandardPaths>

#include <algorithm>

namespace {

// A path that no file has and no other document: what stands for the file of a document without one.
CCA_String UniqueKey()
{
    static std::atomic<int> documentCount{0};
    return GQ_ToCAS(QStringLiteral("%1/untitled-%2-%3")
                        .arg(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation))
                        .arg(QCoreApplication::applicationPid())
                        .arg(++documentCount));
}

// The one of the three orders that a text names; any other word counts as "Background".
CCA_String KnownZOrder(const QString& word)
{
    const bool isKnown = word == QLatin1String("Foreground") || word == QLatin1String("Body");
    return isKnown ? GQ_ToCAS(word) : CCA_String("Background");
}

} // namespace

MemoryDocument::Private::Private()
    : renderer([this](const G_RenderRequest& request, MemorySheet* sheet) { return FillSheet(request, sheet); })
{
}

MemoryPage* MemoryDocument::Private::PageAt(int index) const
{
    return index >= 0 && index < static_cast<int>(pages.size()) ? pages[static_cast<size_t>(index)].get() : nullptr;
}

const MemoryDocument::Private::Template* MemoryDocument::Private::FindTemplate(int id) const
{
    const auto found =
        std::find_if(templates.cbegin(), templates.cend(), [id](const Template& item) { return item.id == id; });
    return found != templates.cend() ? &*found : nullptr;
}

void MemoryDocument::Private::NumberPages()
{
    pageIndexById.clear();
    int index = 0;
    for (const auto& page : pages) {
        pageIndexById.insert(page->PageId(), index);
        page->SetIndex(index++);
    }
}

bool MemoryDocument::Private::FillSheet(const G_RenderRequest& request, MemorySheet* sheet) const
{
    const std::lock_guard<std::mutex> lock(mutex);
    MemoryPage* page = PageAt(request.pageIndex);
    if (!page)
        return false;
    sheet->sizeMm = QSizeF(page->GetPageWidth(), page->GetPageHeight());
    if (page->Fails())
        return false;
    const QVector<MemoryText> texts = page->Texts();
    for (const MemoryText& text : texts) {
        if (text.IsShown())
            sheet->texts.append(text);
    }
    const QVector<MemoryPage::TemplateRef> refs = page->TemplateRefs();
    for (const MemoryPage::TemplateRef& ref : refs) {
        const Template* item = FindTemplate(ref.id);
        if (item && item->isVisible && !request.ignoredTemplates.contains(ref.id))
            sheet->templateNames.append(GQ_ToQStringFromUtf8(item->name));
    }
    if (request.withAnnotations)
        sheet->annotBoxes = page->PaintedAnnotBoxes();
    return true;
}

MemoryDocument::MemoryDocument()
    : d(std::make_unique<Private>())
{
    d->key = UniqueKey();
    SetModified(false);
}

MemoryDocument::~MemoryDocument() = default;

int MemoryDocument::AddPage(float widthMm, float heightMm, int id)
{
    if (id <= 0 || PageIndexFromId(id) >= 0)
        id = d->highestPageId + 1;
    d->highestPageId = std::max(d->highestPageId, id);
    const std::lock_guard<std::mutex> lock(d->mutex);
    const int index = GetPageCount();
    d->pages.push_back(std::make_unique<MemoryPage>(this, &d->isModified, &d->textRevision, id, widthMm, heightMm));
    d->pages.back()->SetIndex(index);
    d->pageIndexById.insert(id, index);
    return id;
}

bool MemoryDocument::RemovePage(int pageIndex)
{
    MemoryPage* page = d->PageAt(pageIndex);
    if (!page)
        return false;
    const std::lock_guard<std::mutex> lock(d->mutex);
    page->Unload();
    page->SetIndex(-1);
    d->removedPages.push_back(std::move(d->pages[static_cast<size_t>(pageIndex)]));
    d->pages.erase(d->pages.begin() + pageIndex);
    d->NumberPages();
    d->isModified = true;
    return true;
}

void MemoryDocument::AddText(int pageIndex, float xMm, float yMm, const QString& text)
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    if (MemoryPage* page = d->PageAt(pageIndex))
        page->AddText(xMm, yMm, text);
}

void MemoryDocument::AddLayer(int pageIndex, int kind, const QString& name)
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    if (MemoryPage* page = d->PageAt(pageIndex))
        page->AddLayer(kind, name);
}

void MemoryDocument::AddTemplate(int id, const QString& zOrder, const QString& name)
{
    Private::Template added;
    added.id = id;
    added.name = GQ_ToCAS(name);
    added.zOrder = KnownZOrder(zOrder);
    const std::lock_guard<std::mutex> lock(d->mutex);
    if (!d->FindTemplate(id))
        d->templates.append(added);
}

void MemoryDocument::AddTemplateRef(int pageIndex, int templateId, const QString& zOrder)
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    if (MemoryPage* page = d->PageAt(pageIndex))
        page->AddTemplateRef({templateId, KnownZOrder(zOrder)});
}

IG_Annot* MemoryDocument::AddAnnot(int pageIndex, const AnnotRecord& record)
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    MemoryPage* page = d->PageAt(pageIndex);
    if (!page)
        return nullptr;
    AnnotRecord added = record;
    if (added.id <= 0 || d->annotIds.contains(added.id))
        added.id = d->highestAnnotId + 1;
    d->annotIds.insert(added.id);
    d->highestAnnotId = std::max(d->highestAnnotId, added.id);
    return page->AddAnnot(added);
}

void MemoryDocument::AddLink(int pageIndex, const G_PageLink& link, int annotId)
{
    if (MemoryPage* page = d->PageAt(pageIndex))
        page->AddLink(link, annotId);
}

void MemoryDocument::SetOpenActions(std::shared_ptr<const G_ActionList> actions)
{
    d->openActions = std::move(actions);
}

std::shared_ptr<const G_ActionList> MemoryDocument::GetOpenActions()
{
    return d->openActions;
}

void MemoryDocument::RemoveAnnot(IG_Annot* annot)
{
    for (const auto& page : d->pages) {
        if (page->SetAnnotRemoved(annot, true))
            d->isModified = true;
    }
}

void MemoryDocument::ReviveAnnot(IG_Annot* annot)
{
    for (const auto& page : d->pages) {
        if (page->SetAnnotRemoved(annot, false))
            d->isModified = true;
    }
}

void MemoryDocument::SetDocumentKey(const CCA_String& key)
{
    d->key = key;
}

void MemoryDocument::SetReadOnly(bool readOnly)
{
    d->isReadOnly = readOnly;
}

void MemoryDocument::SetRights(bool hasPermissions, bool edit, bool annotate, bool exportContent)
{
    d->rights.hasPermissions = hasPermissions;
    d->rights.edit = edit;
    d->rights.annotate = annotate;
    d->rights.exportContent = exportContent;
}

void MemoryDocument::SetPrintRight(bool print, int mostCopies)
{
    d->rights.print = print;
    d->rights.copies = mostCopies;
}

void MemoryDocument::SetSignProtected(bool isSigned)
{
    d->isSigned = isSigned;
}

void MemoryDocument::SetEncrypted(bool encrypted)
{
    d->isEncrypted = encrypted;
}

void MemoryDocument::SetPageFailure(int pageIndex, bool fails)
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    if (MemoryPage* page = d->PageAt(pageIndex))
        page->SetFails(fails);
}

void MemoryDocument::SetCreateRootFailure(bool fails)
{
    d->failsToCreateRoots = fails;
}

void MemoryDocument::SetModified(bool modified)
{
    d->isModified = modified;
    if (!modified)
        d->savedTrees = FingerprintTrees(this);
}

int MemoryDocument::LoadedPageCount() const
{
    return static_cast<int>(
        std::count_if(d->pages.cbegin(), d->pages.cend(), [](const auto& page) { return page->IsLoaded(); }));
}

CCA_String MemoryDocument::GetDocumentKey()
{
    return d->key;
}

int MemoryDocument::PageIdFromIndex(int index)
{
    MemoryPage* page = d->PageAt(index);
    return page ? page->PageId() : 0;
}

int MemoryDocument::PageIndexFromId(int id)
{
    return d->pageIndexById.value(id, -1);
}

int MemoryDocument::GetTemplateCount()
{
    return d->templates.size();
}

int MemoryDocument::GetTemplateIdAt(int position)
{
    return d->templates.value(position).id;
}

CCA_String MemoryDocument::GetTemplateName(int id)
{
    const Private::Template* item = d->FindTemplate(id);
    return item ? item->name : CCA_String();
}

CCA_String MemoryDocument::GetTemplateZOrder(int id)
{
    const Private::Template* item = d->FindTemplate(id);
    return item ? item->zOrder : CCA_String("Background");
}

void MemoryDocument::SetTemplateVisible(int id, bool visible)
{
    const std::lock_guard<std::mutex> lock(d->mutex);
    for (Private::Template& item : d->templates) {
        if (item.id == id)
            item.isVisible = visible;
    }
}

bool MemoryDocument::IsTemplateVisible(int id)
{
    const Private::Template* item = d->FindTemplate(id);
    return item && item->isVisible;
}

int MemoryDocument::GetPageCount()
{
    return static_cast<int>(d->pages.size());
}

IG_Page* MemoryDocument::GetPage(int index)
{
    MemoryPage* page = d->PageAt(index);
    return page && !page->Fails() ? page : nullptr;
}

void MemoryDocument::ReleasePage(int index, int)
{
    if (MemoryPage* page = d->PageAt(index))
        page->Unload();
}

QSizeF MemoryDocument::PageSizeMm(int index)
{
    MemoryPage* page = d->PageAt(index);
    return page ? QSizeF(page->GetPageWidth(), page->GetPageHeight()) : QSizeF(210, 297);
}

bool MemoryDocument::CreateOutlineRoot()
{
    if (!d->outlineRoot && !d->failsToCreateRoots)
        d->outlineRoot.reset(G_TreeNode::CreateRoot());
    return d->outlineRoot && !d->failsToCreateRoots;
}

G_TreeNode* MemoryDocument::GetOutlineRoot()
{
    return d->outlineRoot.get();
}

bool MemoryDocument::CreateBookmarkRoot()
{
    if (!d->bookmarkRoot && !d->failsToCreateRoots)
        d->bookmarkRoot.reset(G_TreeNode::CreateRoot());
    return d->bookmarkRoot && !d->failsToCreateRoots;
}

G_TreeNode* MemoryDocument::GetBookmarkRoot()
{
    return d->bookmarkRoot.get();
}

bool MemoryDocument::AddCustomTagRoot(const char* name, const char*, const char*, int)
{
    if (d->failsToCreateRoots)
        return false;
    auto topTag = std::make_unique<G_CustomTagItem>();
    topTag->tagName = name;
    std::unique_ptr<G_TreeNode> root(G_TreeNode::CreateRoot());
    root->AddSubNode(0, topTag.release());
    d->tagRoots.push_back(std::move(root));
    return true;
}

int MemoryDocument::CustomTagRootCount()
{
    return static_cast<int>(d->tagRoots.size());
}

G_TreeNode* MemoryDocument::CustomTagRoot(int position)
{
    const bool exists = position >= 0 && position < CustomTagRootCount();
    return exists ? d->tagRoots[static_cast<size_t>(position)].get() : nullptr;
}

void MemoryDocument::CustomTagObjects(CCA_LockedArray<G_PageObjectPath>& objects, const G_CustomTagItem* item)
{
    const QVector<G_PageObjRef*> refs = item ? item->objects.Values() : QVector<G_PageObjRef*>();
    for (const G_PageObjRef* ref : refs) {
        const MemoryPage* page = ref ? d->PageAt(PageIndexFromId(ref->pageId)) : nullptr;
        if (!page)
            continue;
        for (const int objectId : ref->objectIds) {
            CCA_GRect box;
            if (!page->ObjectBox(objectId, &box))
                continue;
            G_PageObjectPath outline;
            outline.pageIndex = PageIndexFromId(ref->pageId);
            outline.kind = 1;
            outline.path.AppendRect(box);
            objects.Add(outline);
        }
    }
}

bool MemoryDocument::IsReadOnly()
{
    return d->isReadOnly;
}

bool MemoryDocument::CheckRight(bool edit)
{
    return !edit || MayEdit();
}

void MemoryDocument::Prepare() {}

bool MemoryDocument::HasPermissions()
{
    return d->rights.hasPermissions;
}

bool MemoryDocument::MayEdit()
{
    return !d->rights.hasPermissions || d->rights.edit;
}

bool MemoryDocument::MayAnnotate()
{
    return !d->rights.hasPermissions || d->rights.annotate;
}

bool MemoryDocument::MayExport()
{
    return !d->rights.hasPermissions || d->rights.exportContent;
}

bool MemoryDocument::MayPrint()
{
    return !d->rights.hasPermissions || (d->rights.print && d->rights.copies != 0);
}

int MemoryDocument::MostCopies()
{
    return d->rights.hasPermissions ? d->rights.copies : -1;
}

bool MemoryDocument::IsSignProtected()
{
    return d->isSigned;
}

bool MemoryDocument::IsEncrypted()
{
    return d->isEncrypted;
}

bool MemoryDocument::IsModified()
{
    return d->isModified || FingerprintTrees(this) != d->savedTrees;
}

IG_PageRenderer* MemoryDocument::Renderer()
{
    return &d->renderer;
}

int MemoryDocument::ShownTextRevision()
{
    return d->textRevision;
}
