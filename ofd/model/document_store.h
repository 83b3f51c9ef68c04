#pragma once

#include "annotations.h"
#include "page_links.h"
#include "problem_log.h"
#include "reading_turns.h"
#include "resources.h"
#include "session_state.h"
#include "structure.h"
#include "unit_ids.h"

#include <ofd/parse/page_head.h>

#include <QCache>

#include <QSizeF>

#include <memory>
#include <mutex>

namespace ofd {

class FontStore;
class GlyphStamps;
class ImageStore;
class Package;
class SealStore;
class TextStore;

// A page's content, or why there is none.
struct ContentResult
{
    std::shared_ptr<const PageContent> content; // never null; empty on failure
    QString error;
};

// What is kept of what was read, in bytes, each within a budget of its own. Fonts have a limit where they are opened.
struct KeptBytes
{
    qint64 contents = 0;
    qint64 annotations = 0;
    qint64 images = 0;
    qint64 stamps = 0;
    qint64 texts = 0;
    qint64 links = 0;
    qint64 limit = 0; // of all together

    qint64 Sum() const { return contents + annotations + images + stamps + texts + links; }
};

// Everything that is read from an open document at first use, shared by the main thread and the painting threads. What
// it hands out is immutable and stays valid as long as it is held, also while the document is saved.
class DocumentStore
{
public:
    // `problems` has what opening met; null begins a new log.
    DocumentStore(std::shared_ptr<Package> package, DocumentStructure structure,
                  std::unique_ptr<ProblemLog> problems = nullptr, int nesting = 0);
    ~DocumentStore();

    const DocumentStructure& GetStructure() const { return structure; }
    SessionState& GetSession() { return session; }
    UnitIds& GetUnitIds() { return unitIds; }
    // What was wrong in the file as far as it was read.
    ProblemLog& GetProblems() { return *problems; }
    FontStore& GetFonts() { return *fonts; }
    ImageStore& GetImages() { return *images; }
    GlyphStamps& GetStamps() { return *stamps; }
    SealStore& GetSeals() { return *seals; }
    TextStore& GetTexts() { return *texts; }

    // The package to read from now. A save replaces it.
    std::shared_ptr<const Package> GetPackage() const;
    void ReplacePackage(std::shared_ptr<Package> newPackage);

    // Null-safe for any index: out of range gives the default size, or an empty page with an error.
    QSizeF GetPageSize(int pageIndex);
    ContentResult GetPageContent(int pageIndex);
    // Empty when there is no such template.
    std::shared_ptr<const PageContent> GetTemplateContent(int templateId);
    std::shared_ptr<const PageAnnotations> GetPageAnnotations(int pageIndex);
    // From now on the page's annotations are these, whatever a save makes of the file: what is hidden or removed is
    // told by its position among them.
    void KeepPageAnnotations(int pageIndex, const std::shared_ptr<const PageAnnotations>& list);
    // What of the page can be clicked. Main thread.
    std::shared_ptr<const PlacedLinks> GetPageLinks(int pageIndex);
    std::shared_ptr<const Resources> GetResources();
    // The z-order of a template on a page that says `onPage` of it.
    LayerKind GetTemplateKind(int templateId, const QString& onPage) const;
    // The one that the document gives it, else that of the first page that uses it, among the first pages.
    LayerKind GetTemplateKind(int templateId);
    KeptBytes GetKeptBytes();

private:
    PageHead GetPageHead(const QString& part);
    QSizeF ReadPageSize(int pageIndex);
    ContentResult GetContent(const QString& part);
    void TellOfPage(int pageIndex, const QString& error);
    ContentResult ReadContent(const QString& part);
    bool FindContent(const QString& part, ContentResult* result);

    const DocumentStructure structure;
    const std::unique_ptr<ProblemLog> problems; // never null
    UnitIds unitIds{structure};
    SessionState session;
    std::unique_ptr<FontStore> fonts;
    std::unique_ptr<ImageStore> images;
    std::unique_ptr<GlyphStamps> stamps; // behind the fonts: it names their faces
    std::unique_ptr<SealStore> seals;
    std::unique_ptr<TextStore> texts;

    mutable std::mutex packageMutex;
    std::shared_ptr<Package> package;

    // The caches have a lock each. Sizes and contents are read without holding it; resources and annotations under it,
    // so that they are read once.
    std::mutex sizeMutex;
    QVector<QSizeF> pageSizes;            // invalid until known
    QHash<QString, QSizeF> templateSizes; // by part
    QHash<QString, PageHead> wholeHeads;  // by part; of those that had to be inflated whole
    std::mutex contentMutex;
    QCache<QString, ContentResult> contents; // by part; weighed in bytes
    ReadingTurns contentTurns;
    std::mutex resourceMutex;
    std::shared_ptr<const Resources> resources;
    std::once_flag templateOrdersOnce;
    QHash<int, QString> templateOrders; // by id; what the first page says of it
    std::mutex annotationMutex;
    std::unique_ptr<AnnotationIndex> annotationIndex;
    bool isAnnotationListBroken = false;                                // known with the index
    QCache<int, std::shared_ptr<const PageAnnotations>> annotations;    // by page index; weighed in bytes
    QHash<int, std::shared_ptr<const PageAnnotations>> keptAnnotations; // by page index; never dropped
    std::mutex linkMutex;
    QCache<int, std::shared_ptr<const PlacedLinks>> links; // by page index; weighed in bytes
};

} // namespace ofd
