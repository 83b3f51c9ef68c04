#include "document_private.h"

#include <ofd/model/record_sources.h>
#include <ofd/package/byte_source.h>
#include <ofd/package/target_file.h>
#include <ofd/package/xml_edit.h>
#include <ofd/package/xml_names.h>
#include <ofd/parse/document_reader.h>
#include <ofd/write/annotation_writer.h>
#include <ofd/write/attachment_writer.h>
#include <ofd/write/custom_tag_list.h>
#include <ofd/write/custom_tag_writer.h>
#include <ofd/write/part_making.h>
#include <ofd/write/part_references.h>

#include <QCoreApplication>
#include <QDateTime>

#include <algorithm>
#include <new>

namespace ofd {

namespace {

// The bookmarks below a node, parents before children: the format knows a flat list only.
void CollectBookmarks(const G_TreeNode* node, std::vector<G_Bookmark*>& list)
{
    for (int i = 0; i < node->SubNodeCount(); ++i) {
        const G_TreeNode* child = node->SubNode(i);
        if (auto* bookmark = dynamic_cast<G_Bookmark*>(child->data))
            list.push_back(bookmark);
        CollectBookmarks(child, list);
    }
}

} // namespace

std::vector<G_Bookmark*> OfdDocument::Private::CurrentBookmarks() const
{
    std::vector<G_Bookmark*> list;
    if (bookmarks)
        CollectBookmarks(bookmarks.get(), list);
    return list;
}

bool OfdDocument::Private::AreBookmarksEdited() const
{
    return areBookmarksRead && AreBookmarksChanged(bookmarkSources, CurrentBookmarks());
}

bool OfdDocument::Private::IsOutlineEdited() const
{
    return isOutlineRead && IsOutlineChanged(outlineElements, outline.get());
}

bool OfdDocument::Private::AreTagsEdited() const
{
    return std::any_of(tags.begin(), tags.end(), AreTagsChanged);
}

std::vector<OfdAnnot*> OfdDocument::Private::AllAnnots() const
{
    std::vector<OfdAnnot*> all;
    for (const std::unique_ptr<OfdPage>& page : pages) {
        if (!page)
            continue;
        for (const std::unique_ptr<OfdAnnot>& annot : page->Annots())
            all.push_back(annot.get());
    }
    return all;
}

bool OfdDocument::Private::AreAnnotsEdited() const
{
    const std::vector<OfdAnnot*> all = AllAnnots();
    return std::any_of(all.begin(), all.end(), [](const OfdAnnot* annot) { return annot->IsEdited(); });
}

bool OfdDocument::Private::CollectDocumentPart(SavePlan& plan, PackageError& error) const
{
    XmlEdit edit(*documentPart); // in the order of the format, since new neighbours do not see each other
    if (IsOutlineEdited() && !WriteOutline(edit, *documentPart, Structure(), outlineElements, outline.get(), error))
        return false;
    if (AreBookmarksEdited())
        WriteBookmarks(edit, *documentPart, Structure(), bookmarkSources, CurrentBookmarks());
    if (!CollectTags(plan, edit, error) || !CollectAttachments(plan, edit, error))
        return false;
    RaiseMaxUnitId(edit, documentPart->GetRoot(), plan.highestNewId);
    if (edit.IsEmpty())
        return true;
    const QByteArray bytes = edit.Apply(&error);
    if (bytes.isEmpty())
        return false;
    plan.changes.SetPart(documentPart->GetName(), bytes);
    return true;
}

bool OfdDocument::Private::MayAddTo(const QString& listPart) const
{
    PackageError error;
    const std::shared_ptr<const Package> package = store->GetPackage();
    LoadList(*package, listPart, error);
    return !error;
}

bool OfdDocument::Private::CollectAttachments(SavePlan& plan, XmlEdit& edit, PackageError& error) const
{
    plan.attachmentsPart = attachments->GetListPart();
    if (!attachments->IsChanged())
        return true;
    const std::shared_ptr<const Package> package = store->GetPackage();
    AttachmentWriter writer(*package, *documentPart, edit, Structure().documentFolder, plan.attachmentsPart);
    if (!writer.Write(attachments->GetEntries(), plan.changes, error))
        return false;
    plan.areAttachmentsWritten = true;
    plan.attachments = writer.GetWritten();
    plan.attachmentsPart = writer.GetListPart();
    plan.highestNewId = std::max(plan.highestNewId, writer.GetHighestNewId());
    return true;
}

bool OfdDocument::Private::CollectAnnotations(SavePlan& plan, PackageError& error) const
{
    plan.emptiedAnnotParts = emptiedAnnotParts;
    if (!AreAnnotsEdited())
        return true;
    const std::shared_ptr<const Package> package = store->GetPackage();
    AnnotationWriter writer(*package, Structure().documentFolder, Structure().annotationsPart, emptiedAnnotParts);
    if (!writer.Write(AllAnnots(), plan.changes, error))
        return false;
    plan.annotations = writer.GetPlaces();
    plan.emptiedAnnotParts = writer.GetEmptied();
    plan.highestNewId = std::max(plan.highestNewId, writer.GetHighestNewId());
    return true;
}

bool OfdDocument::Private::CollectTags(SavePlan& plan, XmlEdit& edit, PackageError& error) const
{
    plan.customTagsPart = customTagsPart;
    if (!AreTagsEdited())
        return true;
    const std::shared_ptr<const Package> package = store->GetPackage();
    CustomTagListWriter writer(*package, *documentPart, edit, Structure().documentFolder, customTagsPart);
    if (!writer.Write(tags, plan.changes, error))
        return false;
    plan.tagParts = writer.GetParts();
    plan.customTagsPart = writer.GetListPart();
    return true;
}

// Of all documents in the package: the signatures of the others cover the entry part too.
const SignedParts& OfdDocument::Private::Signed() const
{
    if (!signedParts)
        signedParts = std::make_unique<SignedParts>(ReadSignedParts(*store->GetPackage()));
    return *signedParts;
}

// Keeps the date of the last change up to date where the document tells one and no signature covers it.
void OfdDocument::Private::StampModificationDate(PackageChanges& changes) const
{
    const std::shared_ptr<const Package> package = store->GetPackage();
    if (changes.IsEmpty() || Signed().Covers(package->GetEntryPoint()))
        return;
    const std::unique_ptr<XmlPart> entry = XmlPart::Load(*package, package->GetEntryPoint());
    const pugi::xml_node date = entry ? Descend(entry->GetRoot(), {"DocBody", "DocInfo", "ModDate"}) : pugi::xml_node();
    if (!date)
        return;
    XmlEdit edit(*entry);
    edit.SetText(date, QDate::currentDate().toString(Qt::ISODate));
    const QByteArray bytes = edit.Apply();
    if (!bytes.isEmpty() && bytes != entry->GetBytes())
        changes.SetPart(package->GetEntryPoint(), bytes);
}

// Parts whose entries went leave the package only when nothing else needs them.
void OfdDocument::Private::KeepPartsInUse(PackageChanges& changes) const
{
    QStringList removed;
    for (auto change = changes.GetChanges().cbegin(); change != changes.GetChanges().cend(); ++change) {
        if (change->isRemoval)
            removed.append(change.key());
    }
    if (removed.isEmpty())
        return;
    QStringList pageParts;
    for (const PageEntry& page : Structure().pages)
        pageParts.append(page.part);
    const std::shared_ptr<const Package> package = store->GetPackage();
    for (const QString& part : PartsInUse(*package, changes, removed, pageParts, Structure().documentFolder))
        changes.Revert(part);
}

bool OfdDocument::Private::CollectChanges(SavePlan& plan, PackageError& error) const
{
    if (isBehindItsFile) {
        error = {PackageErrorKind::WriteFailed, WithoutMemory().error};
        return false;
    }
    if (!CollectAnnotations(plan, error) || !CollectDocumentPart(plan, error))
        return false;
    KeepPartsInUse(plan.changes);
    StampModificationDate(plan.changes);
    return true;
}

DocumentSaveResult OfdDocument::Private::Write(const QString& target, bool overwritesForeignChange)
{
    DocumentSaveResult result;
    SavePlan plan;
    PackageError error;
    if (!CollectChanges(plan, error)) {
        result.error = error.text;
        return result;
    }
    SaveOptions options;
    options.overwritesForeignChange = overwritesForeignChange;
    SaveResult saved = SavePackage(*store->GetPackage(), plan.changes, target, options);
    if (!saved) {
        result.error = saved.error.text;
        result.isForeignChange = saved.error.kind == PackageErrorKind::SourceChanged;
        return result;
    }
    isBehindItsFile = true; // for good, when memory runs out meanwhile: edits would go to the wrong places
    AdoptSaved(std::move(saved.package), plan, target);
    isBehindItsFile = false;
    result.isSaved = true;
    return result;
}

DocumentSaveResult OfdDocument::Private::WithoutMemory() const
{
    DocumentSaveResult result;
    result.error =
        isBehindItsFile
            ? QCoreApplication::translate("OfdDocument", "The document was saved, but there was not enough memory to "
                                                         "go on with it. Open it again.")
            : QCoreApplication::translate("OfdDocument", "There is not enough memory to save the document.");
    return result;
}

// Goes on with the new file.
void OfdDocument::Private::AdoptSaved(std::unique_ptr<Package> saved, const SavePlan& plan, const QString& target)
{
    const std::shared_ptr<Package> package(std::move(saved));
    for (const AnnotationWriter::Place& place : plan.annotations)
        place.annot->MarkSaved(place.ordinal, place.oldXml);
    emptiedAnnotParts = plan.emptiedAnnotParts;
    store->ReplacePackage(package);
    path = target;
    if (plan.areAttachmentsWritten)
        attachments->AdoptSaved(plan.attachments, plan.attachmentsPart);
    if (plan.changes.GetChanges().contains(documentPart->GetName())) {
        std::unique_ptr<XmlPart> document = LoadDocumentPart(*package, documentPart->GetName());
        if (!document)
            return; // the saver has read it back already, so this is a broken medium; the old tree serves on
        documentPart = std::move(document);
    }
    AdoptSavedBookmarks();
    AdoptSavedOutline();
    AdoptSavedTags(plan);
    documentPart->GetPackedBytes()->Pack();
}

// Records get the sources of their new elements, so that the next save compares with what is in the file now; copies
// that undo steps hold keep their old sources, which still have the old bytes.
void OfdDocument::Private::AdoptSavedBookmarks()
{
    if (!areBookmarksRead)
        return;
    BookmarkSources sources;
    ReadBookmarks(*documentPart, Structure(), &sources);
    const std::vector<G_Bookmark*> current = CurrentBookmarks();
    for (size_t i = 0; i < current.size() && i < sources.size(); ++i)
        current[i]->source = sources[i];
    bookmarkSources = std::move(sources);
}

void OfdDocument::Private::AdoptSavedOutline()
{
    if (!isOutlineRead || !IsOutlineEdited())
        return;
    outlineElements.reset();
    const TreeRoot fresh = ReadOutline(*documentPart, Structure(), &outlineElements);
    if (fresh)
        AdoptOutlineSources(outline.get(), fresh.get());
}

void OfdDocument::Private::AdoptSavedTags(const SavePlan& plan)
{
    if (plan.tagParts.isEmpty())
        return;
    customTagsPart = plan.customTagsPart;
    for (size_t i = 0; i < tags.size(); ++i) {
        TagTree& tree = tags[i];
        const bool isChanged = AreTagsChanged(tree);
        tree.part = plan.tagParts.at(int(i));
        if (!isChanged)
            continue;
        tree.elements.reset();
        const std::unique_ptr<XmlPart> part =
            tree.part.isEmpty() ? nullptr : XmlPart::Load(*store->GetPackage(), tree.part);
        if (!part)
            continue;
        const TreeRoot fresh(G_TreeNode::CreateRoot());
        tree.elements = ReadTagTree(*part, fresh.get());
        AdoptTagSources(tree.root.get(), fresh.get());
    }
}

DocumentSaveResult OfdDocument::Save(bool overwritesForeignChange)
{
    if (d->isReadOnly) {
        DocumentSaveResult result;
        result.error =
            QCoreApplication::translate("OfdDocument", "The document is read-only. Save it under another name.");
        return result;
    }
    return WhileMemoryLasts([&] {
        if (!IsModified() && !IsChangedOnDisk()) // the file is what it should be
            return DocumentSaveResult{true, QString(), false, {}};
        return d->Write(d->path, overwritesForeignChange);
    });
}

DocumentSaveResult OfdDocument::SaveAs(const QString& path)
{
    return WhileMemoryLasts([&] {
        const QString target = TargetFile::FollowLinks(path);
        const DocumentSaveResult result = d->Write(target, target != d->path);
        if (result.isSaved)
            d->isReadOnly = false; // it could be written just now
        return result;
    });
}

DocumentSaveResult OfdDocument::SaveCopy(const QString& path) const
{
    return WhileMemoryLasts([&] {
        DocumentSaveResult result;
        Private::SavePlan plan;
        PackageError error;
        const bool isCollected = d->CollectChanges(plan, error);
        if (isCollected) {
            SaveOptions options;
            options.overwritesForeignChange = true;
            options.waitsForDisk = false;
            error = SavePackage(*d->store->GetPackage(), plan.changes, path, options).error;
        }
        result.isSaved = isCollected && !error;
        result.error = error.text;
        return result;
    });
}

DocumentSaveResult OfdDocument::WhileMemoryLasts(const std::function<DocumentSaveResult()>& save) const
{
    try {
        DocumentSaveResult result = save();
        result.notWritten = GetUnsavableChanges();
        return result;
    } catch (const std::bad_alloc&) {
        return d->WithoutMemory();
    }
}

bool OfdDocument::BreaksSignatures() const
{
    if (!d->Signed().CoversAny())
        return false;
    Private::SavePlan plan;
    PackageError error;
    if (!d->CollectChanges(plan, error))
        return false; // there will be no save
    const auto& changes = plan.changes.GetChanges();
    return std::any_of(changes.keyBegin(), changes.keyEnd(),
                       [this](const QString& part) { return d->Signed().Covers(part); });
}

bool OfdDocument::IsChangedOnDisk() const
{
    FileIdentity now;
    const std::shared_ptr<const Package> package = d->store->GetPackage();
    return !ByteSource::IdentityOfPath(d->path, now) || now != package->GetSource().GetIdentityAtOpening();
}

QStringList OfdDocument::GetUnsavableChanges() const
{
    QStringList kinds;
    // A part holds one top tag; no pane makes more of them.
    const bool hasMore =
        std::any_of(d->tags.begin(), d->tags.end(), [](const TagTree& tree) { return tree.root->SubNodeCount() > 1; });
    if (hasMore)
        kinds.append(QCoreApplication::translate("OfdDocument", "custom tags"));
    return kinds;
}

} // namespace ofd
