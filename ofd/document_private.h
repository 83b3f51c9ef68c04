#pragma once

#include "ofd_document.h"
#include "ofd_page.h"

#include <ofd/model/attachment_table.h>
#include <ofd/model/document_store.h>
#include <ofd/package/package.h>
#include <ofd/package/package_changes.h>
#include <ofd/package/package_writer.h>
#include <ofd/package/xml_part.h>
#include <ofd/parse/custom_tag_reader.h>
#include <ofd/parse/outline_reader.h>
#include <ofd/parse/signature_reader.h>
#include <ofd/render/page_renderer.h>
#include <ofd/text/text_source.h>
#include <ofd/write/annotation_writer.h>
#include <ofd/write/bookmark_writer.h>
#include <ofd/write/outline_writer.h>

namespace ofd {

class XmlEdit;

// What an open document holds. Private to the sources of OfdDocument.
struct OfdDocument::Private
{
    const DocumentStructure& Structure() const { return store->GetStructure(); }
    OfdPage* PageAt(IG_Document* document, int index);

    // The trees are read when they are first asked for.
    void ReadBookmarksOnce();
    void ReadOutlineOnce();
    void ReadTagsOnce();
    std::vector<G_Bookmark*> CurrentBookmarks() const;
    bool AreBookmarksEdited() const;
    bool IsOutlineEdited() const;
    bool AreTagsEdited() const;
    std::vector<OfdAnnot*> AllAnnots() const; // that were asked for so far
    bool AreAnnotsEdited() const;

    // Whether a list of parts could be saved with a new entry. What could not be is refused at once, not at the save.
    bool MayAddTo(const QString& listPart) const;

    // What a save leaves behind besides the new file.
    struct SavePlan
    {
        PackageChanges changes;
        bool areAttachmentsWritten = false;   // else they did not change
        QVector<AttachmentEntry> attachments; // with their new places
        QString attachmentsPart;
        QStringList tagParts; // of each tree; empty when tags did not change
        QString customTagsPart;
        std::vector<AnnotationWriter::Place> annotations; // that are in edited parts
        EmptiedParts emptiedAnnotParts;
        int highestNewId = 0;
    };

    // Saving. Collects what changed as new bytes of parts; false, with the reason, when a part cannot be edited.
    bool CollectChanges(SavePlan& plan, PackageError& error) const;
    bool CollectDocumentPart(SavePlan& plan, PackageError& error) const;
    bool CollectAttachments(SavePlan& plan, XmlEdit& edit, PackageError& error) const;
    bool CollectAnnotations(SavePlan& plan, PackageError& error) const;
    bool CollectTags(SavePlan& plan, XmlEdit& edit, PackageError& error) const;
    void KeepPartsInUse(PackageChanges& changes) const;
    void StampModificationDate(PackageChanges& changes) const;
    const SignedParts& Signed() const;
    DocumentSaveResult Write(const QString& target, bool overwritesForeignChange);
    DocumentSaveResult WithoutMemory() const;
    void AdoptSaved(std::unique_ptr<Package> saved, const SavePlan& plan, const QString& target);
    void AdoptSavedBookmarks();
    void AdoptSavedOutline();
    void AdoptSavedTags(const SavePlan& plan);

    QString path;
    bool isReadOnly = false;
    std::shared_ptr<DocumentStore> store;
    std::unique_ptr<XmlPart> documentPart;            // as in the file; for reading trees and for edits
    mutable std::unique_ptr<SignedParts> signedParts; // null until asked for
    bool isBehindItsFile = false;                     // what was saved could not be taken over: no memory
    std::unique_ptr<AttachmentTable> attachments;
    std::unique_ptr<OfdPageRenderer> renderer;
    std::unique_ptr<OfdTextSource> textSource;
    std::vector<std::unique_ptr<OfdPage>> pages; // null until asked for

    bool areBookmarksRead = false;
    TreeRoot bookmarks;              // null when there is no list
    BookmarkSources bookmarkSources; // of the elements in the document part, in order
    bool isOutlineRead = false;
    TreeRoot outline;
    OutlineTree outlineElements; // of the document part; null when it has no outline
    bool areTagsRead = false;
    std::vector<TagTree> tags;
    EmptiedParts emptiedAnnotParts;
    QString customTagsPart; // empty when the document has no list of them
};

} // namespace ofd
