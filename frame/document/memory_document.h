#pragma once

#include <frame/document/ig_document.h>

#include <QString>

#include <memory>

// A document without a file that keeps the whole contract: what most tests use and what an integrator can compare
// with. Built by calls or from a short text form, one item a line, indentation by two blanks nests:
//
//     page 210 297            a page, size in mm; ids count from 1 unless "id=7" is given
//       text 20 30 Hello      a text at (x, y) mm to the end of the line: boxes 2 mm wide and 4 mm high a character
//       layer 1 Body          a layer: kind 0..2 and a name
//       template 101 Background
//       annot id=5 type=8 subtype=Stamp creator=Li date=2020-01-02 rect=10,10,40,20 remark=…
//     template 101 Background Name
//     bookmark "Name" page=2 rect=0,0,100,50 zoom=1 mode=0
//     outline "Title" page=1  nests; "closed" collapses it, "uri=…" adds an address
//     tag "Name" key=value …  nests; the top one begins a tree; "objects=pageId:1,2" ties objects of one page
//     attachment name format sizeKb id [hidden]
//     rights edit=no annot=no export=no print=no copies=2
//     readonly                and likewise "signed" and "encrypted"
//     open page=2             what the document asks for when it is opened: actions, as below
//
// In a page, "link rect=10,10,40,20 uri=…" is a link; its actions are "uri=…" (then "base=…"), "page=2" (then "mode=",
// "zoom=" and "to=left,top,right,bottom"), "bookmark=Name", "attachment=31", "sound" and "movie". "annot=41" ties it to
// an annotation of the page.
//
// "page=" names a page by its id; "index=2" instead gives a page index from 0 and no id. An annotation knows "points=",
// "visible=no", "locked=yes" and "hidden=yes" too. A part in double quotes keeps its blanks. Empty lines and lines that
// begin with "#" are passed over; anything unknown is an error that names the line.
class FRAME_EXPORT MemoryDocument : public IG_Document
{
public:
    MemoryDocument();
    ~MemoryDocument() override;
    // Null, and `error` set, when the text is malformed. Owned by the caller.
    static std::unique_ptr<MemoryDocument> FromText(const QString& text, QString* error = nullptr);

    // Building. Adds a page and gives its id.
    int AddPage(float widthMm, float heightMm, int id = 0);
    // The page's object stays, with the index -1; false when out of range.
    bool RemovePage(int pageIndex);
    // Adds a text; the objects of a page have the ids 1, 2, … in the order of adding. A text belongs to the layer that
    // was added last.
    void AddText(int pageIndex, float xMm, float yMm, const QString& text);
    void AddLayer(int pageIndex, int kind, const QString& name);
    void AddTemplate(int id, const QString& zOrder, const QString& name);
    void AddTemplateRef(int pageIndex, int templateId, const QString& zOrder);
    struct AnnotRecord;
    // An id that is unset or taken in the document is replaced by a free one. Null when there is no such page.
    IG_Annot* AddAnnot(int pageIndex, const AnnotRecord& record);
    void RemoveAnnot(IG_Annot* annot); // the object stays, inert
    void ReviveAnnot(IG_Annot* annot);
    // The link belongs to the annotation of that id, else to the layer that was added last.
    void AddLink(int pageIndex, const G_PageLink& link, int annotId = 0);
    void SetOpenActions(std::shared_ptr<const G_ActionList> actions);
    void AddAttachmentData(const G_AttachmentInfo& info, const QByteArray& data);

    // Switches for tests: rights, states and failures.
    void SetDocumentKey(const CCA_String& key);
    void SetReadOnly(bool readOnly);
    void SetRights(bool hasPermissions, bool edit, bool annotate, bool exportContent);
    void SetPrintRight(bool print, int mostCopies); // counts as long as there are permissions
    void SetSignProtected(bool isSigned);
    void SetEncrypted(bool encrypted);
    void SetPageFailure(int pageIndex, bool fails); // GetPage then gives null
    void SetCreateRootFailure(bool fails);          // the Create…Root calls then give false
    // False makes the present state the one that counts as unchanged.
    void SetModified(bool modified);
    int LoadedPageCount() const; // pages whose content is in memory now

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
    int ShownTextRevision() override;
    std::shared_ptr<const G_ActionList> GetOpenActions() override;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

// What an annotation of the in-memory document holds.
struct MemoryDocument::AnnotRecord
{
    int id = 0;
    int type = AnnotHighlight;
    CCA_String subType;
    CCA_String creator;
    CCA_String date;
    CCA_String remark;
    CCA_GRect boundary;
    CCA_String points;
    bool visible = true;
    bool locked = false;
    bool hiddenFromList = false;
};
