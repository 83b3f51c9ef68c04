#pragma once

#include "document_facts.h"

#include <frame/document/ig_document.h>
#include <ofd/model/problem_log.h>

#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

namespace ofd {

class DocumentStore;
class OfdDocument;
class OfdPage;

// What came of opening a file.
struct OpenResult
{
    std::unique_ptr<OfdDocument> document; // null on failure
    QString error;                         // a sentence for people; empty on success

    explicit operator bool() const { return document != nullptr; }
};

// What came of saving a document.
struct DocumentSaveResult
{
    bool isSaved = false;
    QString error; // a sentence for people; empty on success
    // The file was changed, replaced or removed by somebody else since it was opened; nothing was written. Ask, and
    // save again with `overwritesForeignChange`.
    bool isForeignChange = false;
    // Kinds of changes that are in memory and could not be written, as words for people.
    QStringList notWritten;

    explicit operator bool() const { return isSaved; }
};

// A document in an OFD file. Opening reads the entry part, the document part and what they list; page content,
// resources, annotations and tags are read at first use. Threads as in IG_Document.
class OfdDocument : public IG_Document
{
public:
    // Opens by content, whatever the name. Never throws; the reason of a failure is in the result.
    static OpenResult Open(const QString& path, bool readOnly = false);
    ~OfdDocument() override;

    // Writes the changed parts into a new file that replaces the old one at once; without a change the bytes stay the
    // same. The document goes on with the new file; trees, pages and annotations keep their objects.
    DocumentSaveResult Save(bool overwritesForeignChange = false);
    // The same to another path; the document is that file from then on, and its key changes.
    DocumentSaveResult SaveAs(const QString& path);

    // Writes the document as it is now to another path and goes on with its own file. A new file is not waited for
    // until it is on the disk.
    DocumentSaveResult SaveCopy(const QString& path) const;

    // Whether saving now would change or remove a part that a signature covers. The reader asks before that.
    bool BreaksSignatures() const;

    // The file behind the document.
    QString GetPath() const;
    // True when the file behind the document is not the one that was opened or last saved.
    bool IsChangedOnDisk() const;
    // Title from the document's information, trimmed; empty without one.
    QString GetTitle() const;
    // Kinds of changes in memory that Save does not write.
    QStringList GetUnsavableChanges() const;

    // What the document says of itself. Cheap: reads the entry part, no page.
    DocumentFacts GetFacts();
    // At most so many signatures; reads the part of each of these.
    SignatureList GetSignatures(int most) const;
    // At most so many of the fonts that the document's resources name; looks for a stand-in for those it does not
    // bring.
    FontList GetFonts(int most);

    // What was wrong in the file, as far as it was read and painted until now.
    std::vector<Problem> GetProblems() const;
    // Reads every part of the file through to its end, whoever refers to it, so that GetProblems tells of damage in any
    // of them. Keeps none of it.
    void ReadAllParts();

    // Takes an annotation off its page; the object stays, inert. False when it is not on a page.
    bool RemoveAnnot(IG_Annot* annot);
    // Puts a removed annotation back to its place.
    bool ReviveAnnot(IG_Annot* annot);

    CCA_String GetDocumentKey() override;
    int PageIdFromIndex(int index) override;
    int PageIndexFromId(int id) override;
    int GetTemplateCount() override;
    int GetTemplateIdAt(int position) override;
    CCA_String GetTemplateName(int id) override;
    CCA_String GetTemplateZOrder(int id) override;
    void SetTemplateVisible(int id, bool visible) override;
    bool IsTemplateVisible(int id) override;
    int GetPageCount() override;
    IG_Page* GetPage(int index) override;
    void ReleasePage(int index, int flags) override;
    QSizeF PageSizeMm(int index) override;
    bool CreateOutlineRoot() override;
    G_TreeNode* GetOutlineRoot() override;
    bool CreateBookmarkRoot() override;
    G_TreeNode* GetBookmarkRoot() override;
    bool AddCustomTagRoot(const char* name, const char* prefix, const char* nameSpace, int flags) override;
    int CustomTagRootCount() override;
    G_TreeNode* CustomTagRoot(int position) override;
    void CustomTagObjects(CCA_LockedArray<G_PageObjectPath>& objects, const G_CustomTagItem* item) override;
    bool IsReadOnly() override;
    bool CheckRight(bool edit) override;
    int GetAttachmentCount() override;
    int GetAttachmentIndexById(int id) override;
    G_AttachmentInfo GetAttachment(int index) override;
    bool WriteAttachment(int index, ICA_StreamWriter* writer) override;
    bool AddAttachment(ICA_StreamReader* reader, bool isBigFile, const char* title, const char* format,
                       const char* name, const char* extension, int flags) override;
    bool RemoveAttachment(int index) override;
    QList<G_TextRects> SelectTextRange(const CCA_GPoint& start, int startPage, const CCA_GPoint& end, int endPage,
                                       const OVSharedPtr<OVJson>& options) override;
    void Prepare() override;
    bool HasPermissions() override;
    bool MayEdit() override;
    bool MayAnnotate() override;
    bool MayExport() override;
    bool MayPrint() override;
    int MostCopies() override;
    bool IsSignProtected() override;
    bool IsEncrypted() override;
    bool IsModified() override;
    IG_PageRenderer* Renderer() override;
    IG_TextSource* TextSource() override;
    int ShownTextRevision() override;
    std::shared_ptr<const G_ActionList> GetOpenActions() override;

private:
    struct Private;
    explicit OfdDocument(std::unique_ptr<Private> d);
    static OpenResult Read(const QString& path, bool readOnly);
    DocumentSaveResult WhileMemoryLasts(const std::function<DocumentSaveResult()>& save) const;

    std::unique_ptr<Private> d;
};

} // namespace ofd
