#pragma once

#include <frame/document/ig_annot.h>
#include <frame/document/ig_page.h>
#include <frame/document/page_renderer.h>
#include <frame/document/payloads.h>

class ICA_StreamReader;
class ICA_StreamWriter;
class IG_TextSource;

// An open document. Whoever opened it owns it; it owns its trees, pages and annotations. Main thread only, except the
// attachment calls, which are guarded inside and may come from a worker thread, the renderer and the text source.
class FRAME_EXPORT IG_Document
{
public:
    virtual ~IG_Document();

    // Absolute native path, UTF-8; unique among open documents. A document without a file has a unique key too.
    virtual CCA_String GetDocumentKey() = 0;
    virtual int PageIdFromIndex(int index) = 0; // 0 when out of range
    virtual int PageIndexFromId(int id) = 0;    // negative when not found

    virtual int GetTemplateCount() = 0;
    virtual int GetTemplateIdAt(int position) = 0; // 0 when out of range
    virtual CCA_String GetTemplateName(int id) = 0;
    // "Foreground", "Body" or "Background".
    virtual CCA_String GetTemplateZOrder(int id) = 0;
    // Session state for all pages, never saved.
    virtual void SetTemplateVisible(int id, bool visible) = 0;
    virtual bool IsTemplateVisible(int id) = 0; // false when there is no such template

    virtual int GetPageCount() = 0;
    // Null when the page does not exist or is known to fail. No content is read for it, so IG_Page::Load may still
    // fail. Pair with ReleasePage.
    virtual IG_Page* GetPage(int index) = 0;
    // Lets heavy content go; harmless when unmatched. The flags are 0.
    virtual void ReleasePage(int index, int flags) = 0;
    // Size of a page without loading its content, in mm; a default size when out of range.
    virtual QSizeF PageSizeMm(int index) = 0;

    // The Create calls keep an existing root and are then true; a root, once made, is not replaced until the document
    // closes. The Get calls give null before.
    virtual bool CreateOutlineRoot() = 0;
    virtual G_TreeNode* GetOutlineRoot() = 0;
    virtual bool CreateBookmarkRoot() = 0;
    virtual G_TreeNode* GetBookmarkRoot() = 0;

    // Makes a tag tree whose top tag has the name; `prefix` and `nameSpace` are those of its part. The flags are 0.
    virtual bool AddCustomTagRoot(const char* name, const char* prefix, const char* nameSpace, int flags) = 0;
    virtual int CustomTagRootCount() = 0;
    virtual G_TreeNode* CustomTagRoot(int position) = 0; // null when out of range
    // Appends the outlines of the objects a tag refers to.
    virtual void CustomTagObjects(CCA_LockedArray<G_PageObjectPath>& objects, const G_CustomTagItem* item) = 0;

    // True when the file or its folder cannot be written, or when it was opened read-only.
    virtual bool IsReadOnly() = 0;
    // Called with true: do the document's permissions and their period allow editing today?
    virtual bool CheckRight(bool edit) = 0;

    virtual int GetAttachmentCount() = 0;
    virtual int GetAttachmentIndexById(int id) = 0;        // negative when not found
    virtual G_AttachmentInfo GetAttachment(int index) = 0; // a default one when out of range
    // Streams the content; false when the index is out of range or the content cannot be read or written.
    virtual bool WriteAttachment(int index, ICA_StreamWriter* writer) = 0;
    // Takes the reader over. All texts UTF-8. False when nothing was added.
    virtual bool AddAttachment(ICA_StreamReader* reader, bool isBigFile, const char* title, const char* format,
                               const char* name, const char* extension, int flags) = 0;
    // False, and nothing happens, when the index is out of range.
    virtual bool RemoveAttachment(int index) = 0;

    // Text between two points, one entry a page; an empty array when a page does not exist. `options` may hold the
    // number "SelectModeEnum".
    virtual QList<G_TextRects> SelectTextRange(const CCA_GPoint& start, int startPage, const CCA_GPoint& end,
                                               int endPage, const OVSharedPtr<OVJson>& options) = 0;

    // What the host needs beside the panes.
    virtual void Prepare() = 0;         // reads what may be read before the first use; cheap to repeat
    virtual bool HasPermissions() = 0;  // the document carries permissions at all
    virtual bool MayEdit() = 0;         // they allow editing (true without permissions)
    virtual bool MayAnnotate() = 0;     // they allow annotations
    virtual bool MayExport() = 0;       // they allow export of content
    virtual bool MayPrint();            // they allow printing (true without permissions)
    virtual int MostCopies();           // of a page that may be printed at a time; negative: any number
    virtual bool IsSignProtected() = 0; // it carries signatures
    virtual bool IsEncrypted() = 0;
    // True when something is changed that Save would write.
    virtual bool IsModified() = 0;
    // Null when the document paints nothing.
    virtual IG_PageRenderer* Renderer() = 0;
    // Reads text off the main thread. Null when all text is at hand at once.
    virtual IG_TextSource* TextSource();
    // Changes whenever text of the document is hidden or shown: what was known of pages' texts no longer holds.
    virtual int ShownTextRevision();
    // What the document would like to be run when it is opened; null for nothing, as here. A document comes from
    // anywhere, so a host follows its jumps at most: it must not open addresses or files that nobody clicked on.
    virtual std::shared_ptr<const G_ActionList> GetOpenActions();
};
Q_DECLARE_METATYPE(IG_Document*)
