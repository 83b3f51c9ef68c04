#include "document_store.h"

#include "content_weight.h"

#include <ofd/package/limits.h>
#include <ofd/package/locations.h>
#include <ofd/package/package.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>
#include <ofd/package/xml_values.h>
#include <ofd/parse/annotation_reader.h>
#include <ofd/parse/content_reader.h>
#include <ofd/parse/page_head.h>
#include <ofd/parse/resource_reader.h>
#include <ofd/render/glyph_stamps.h>
#include <ofd/render/image_store.h>
#include <ofd/render/seal_store.h>
#include <ofd/text/font_store.h>
#include <ofd/text/text_store.h>

#include <QCoreApplication>

#include <algorithm>

namespace ofd {

namespace {

constexpr int CachedContentBytes = 96 << 20;
constexpr int CachedAnnotationBytes = 16 << 20;
constexpr int CachedLinkBytes = 8 << 20;

// What is too heavy for the budget is kept alone: all tiles of a page need it, one after the other.
int CostOf(qint64 bytes, int budget)
{
    return int(std::min<qint64>(bytes, budget - 1)) + 1;
}

ContentResult NoContent(const QString& error, const std::shared_ptr<const Resources>& resources)
{
    auto content = std::make_shared<PageContent>();
    content->resources = resources;
    return {content, error};
}

void CollectIds(const ObjectList& objects, std::vector<int>& ids)
{
    for (const std::unique_ptr<const GraphicObject>& object : objects) {
        if (object->id)
            ids.push_back(object->id);
        if (object->kind == GraphicObject::Kind::Group)
            CollectIds(static_cast<const GroupObject&>(*object).objects, ids);
    }
}

void TellOfUnknownPages(const AnnotationIndex& index, const DocumentStructure& structure)
{
    for (auto it = index.cbegin(); it != index.cend(); ++it) {
        if (!structure.pageIndexById.contains(it.key()))
            ReportProblem(
                ProblemKind::DanglingReference,
                QCoreApplication::translate("OfdDocument", "Annotations belong to page %1, which is not there.")
                    .arg(it.key()));
    }
}

// Tags and panes name objects by page and identifier, so two with one on a page cannot be told apart.
void TellOfDuplicateIds(const PageContent& page)
{
    std::vector<int> ids;
    for (const Layer& layer : page.layers)
        CollectIds(layer.objects, ids);
    std::sort(ids.begin(), ids.end());
    for (size_t i = 1; i < ids.size(); ++i) {
        if (ids[i] != ids[i - 1] || (i > 1 && ids[i] == ids[i - 2]))
            continue;
        const ProblemPlace place(ids[i]);
        ReportProblem(ProblemKind::DuplicateIdentifier,
                      QCoreApplication::translate("OfdDocument", "More than one object of the page has the ID %1.")
                          .arg(quint32(ids[i])));
    }
}

} // namespace

DocumentStore::DocumentStore(std::shared_ptr<Package> package, DocumentStructure structureIn,
                             std::unique_ptr<ProblemLog> problemsIn, int nesting)
    : structure(std::move(structureIn))
    , problems(problemsIn ? std::move(problemsIn) : std::make_unique<ProblemLog>())
    , fonts(std::make_unique<FontStore>())
    , images(std::make_unique<ImageStore>())
    , stamps(std::make_unique<GlyphStamps>())
    , seals(std::make_unique<SealStore>(nesting))
    , texts(std::make_unique<TextStore>(*this))
    , package(std::move(package))
    , pageSizes(structure.pages.size())
    , contents(CachedContentBytes)
    , annotations(CachedAnnotationBytes)
    , links(CachedLinkBytes)
{
}

DocumentStore::~DocumentStore() = default;

std::shared_ptr<const Package> DocumentStore::GetPackage() const
{
    const std::lock_guard<std::mutex> lock(packageMutex);
    return package;
}

void DocumentStore::ReplacePackage(std::shared_ptr<Package> newPackage)
{
    const std::lock_guard<std::mutex> lock(packageMutex);
    package = std::move(newPackage);
}

QSizeF DocumentStore::GetPageSize(int pageIndex)
{
    if (pageIndex < 0 || pageIndex >= structure.pages.size())
        return QSizeF(DefaultPageWidthMm, DefaultPageHeightMm);
    {
        const std::lock_guard<std::mutex> lock(sizeMutex);
        if (pageSizes.at(pageIndex).isValid())
            return pageSizes.at(pageIndex);
    }
    const QSizeF size = ReadPageSize(pageIndex);
    const std::lock_guard<std::mutex> lock(sizeMutex);
    pageSizes[pageIndex] = size;
    return size;
}

// A part that must be inflated whole is so once, however many pages say that it is theirs.
PageHead DocumentStore::GetPageHead(const QString& part)
{
    {
        const std::lock_guard<std::mutex> lock(sizeMutex);
        const auto known = wholeHeads.constFind(part);
        if (known != wholeHeads.constEnd())
            return *known;
    }
    const ProblemScope scope(*problems, part);
    const PageHead head = ReadPageHead(*GetPackage(), part);
    if (head.tookWholePart) {
        const std::lock_guard<std::mutex> lock(sizeMutex);
        wholeHeads.insert(part, head);
    }
    return head;
}

// The page's own area, else that of the first template it uses, else the document's, else a common sheet.
QSizeF DocumentStore::ReadPageSize(int pageIndex)
{
    const std::shared_ptr<const Package> source = GetPackage();
    const PageHead head = GetPageHead(structure.pages.at(pageIndex).part);
    if (head.areaSize.isValid())
        return head.areaSize;
    if (!head.templates.isEmpty()) {
        const int position = structure.templateById.value(head.templates.first().id, -1);
        const QString part = position < 0 ? QString() : structure.templates.at(position).part;
        QSizeF size;
        {
            const std::lock_guard<std::mutex> lock(sizeMutex);
            size = templateSizes.value(part);
        }
        if (!part.isEmpty() && !size.isValid()) {
            const ProblemScope scope(*problems, part);
            size = ReadPageHead(*source, part).areaSize;
            const std::lock_guard<std::mutex> lock(sizeMutex);
            templateSizes.insert(part, size);
        }
        if (size.isValid())
            return size;
    }
    return structure.pageSizeMm.isValid() ? structure.pageSizeMm : QSizeF(DefaultPageWidthMm, DefaultPageHeightMm);
}

std::shared_ptr<const Resources> DocumentStore::GetResources()
{
    const std::lock_guard<std::mutex> lock(resourceMutex);
    if (!resources) {
        const ProblemScope scope(*problems, structure.documentPart);
        const QStringList parts = structure.documentRes + structure.publicRes; // the former win over the latter
        resources =
            ReadResources(*GetPackage(), parts, structure.documentFolder, int(structure.defaultColorSpace), nullptr);
    }
    return resources;
}

ContentResult DocumentStore::GetPageContent(int pageIndex)
{
    const QString part = structure.pages.value(pageIndex).part;
    if (part.isEmpty()) {
        const QString error = QCoreApplication::translate("OfdDocument", "The page is missing in the file.");
        TellOfPage(pageIndex, error);
        return NoContent(error, GetResources());
    }
    const ContentResult result = GetContent(part);
    if (!result.error.isEmpty())
        TellOfPage(pageIndex, result.error);
    return result;
}

void DocumentStore::TellOfPage(int pageIndex, const QString& error)
{
    if (pageIndex < 0 || pageIndex >= structure.pages.size())
        return;
    const PageEntry& page = structure.pages.at(pageIndex);
    const ProblemScope scope(*problems, page.part.isEmpty() ? structure.documentPart : page.part);
    const ProblemPlace place(page.id);
    ReportProblem(ProblemKind::PageFailed,
                  QCoreApplication::translate("OfdDocument", "Page %1 is shown as an empty sheet: %2")
                      .arg(pageIndex + 1)
                      .arg(error));
}

ContentResult DocumentStore::GetContent(const QString& part)
{
    ContentResult result;
    if (FindContent(part, &result))
        return result;
    const ReadingTurns::Turn turn(contentTurns, part);
    if (FindContent(part, &result)) // another thread has just read it
        return result;
    result = ReadContent(part);
    const int cost = CostOf(result.content->bytes, CachedContentBytes);
    const std::lock_guard<std::mutex> lock(contentMutex);
    contents.insert(part, new ContentResult(result), cost);
    return result;
}

bool DocumentStore::FindContent(const QString& part, ContentResult* result)
{
    const std::lock_guard<std::mutex> lock(contentMutex);
    const ContentResult* known = contents.object(part); // not owned
    if (known)
        *result = *known;
    return known;
}

KeptBytes DocumentStore::GetKeptBytes()
{
    KeptBytes kept;
    {
        const std::lock_guard<std::mutex> lock(contentMutex);
        kept.contents = contents.totalCost();
    }
    {
        const std::lock_guard<std::mutex> lock(annotationMutex);
        kept.annotations = annotations.totalCost();
    }
    kept.images = images->GetKeptBytes();
    kept.stamps = stamps->GetKeptBytes();
    kept.texts = texts->GetKeptBytes();
    {
        const std::lock_guard<std::mutex> lock(linkMutex);
        kept.links = links.totalCost();
    }
    kept.limit = CachedContentBytes + CachedAnnotationBytes + CachedLinkBytes + images->GetLimit() +
                 stamps->GetLimit() + texts->GetLimit();
    return kept;
}

ContentResult DocumentStore::ReadContent(const QString& part)
{
    const std::shared_ptr<const Package> source = GetPackage();
    std::shared_ptr<const Resources> known = GetResources();
    const ProblemScope scope(*problems, part);
    PackageError error;
    const std::unique_ptr<XmlPart> xml = XmlPart::Load(*source, part, &error);
    if (!xml)
        return NoContent(error.text, known);
    LocationContext context;
    context.holderPart = part;
    context.documentFolder = structure.documentFolder;
    QStringList pageRes;
    for (const pugi::xml_node& reference : ChildElements(xml->GetRoot(), "PageRes")) {
        const QString found = ResolveLocation(*source, TrimmedText(reference), context).part;
        if (!found.isEmpty())
            pageRes.append(found);
    }
    if (!pageRes.isEmpty())
        known = ReadResources(*source, pageRes, structure.documentFolder, known->defaultColorSpace, known);
    const std::shared_ptr<PageContent> content = ReadPageContent(xml->GetRoot(), known);
    content->bytes = WeightOf(*content);
    TellOfDuplicateIds(*content);
    return {content, QString()};
}

std::shared_ptr<const PageContent> DocumentStore::GetTemplateContent(int templateId)
{
    const int position = structure.templateById.value(templateId, -1);
    const QString part = position < 0 ? QString() : structure.templates.at(position).part;
    return part.isEmpty() ? NoContent(QString(), GetResources()).content : GetContent(part).content;
}

std::shared_ptr<const PageAnnotations> DocumentStore::GetPageAnnotations(int pageIndex)
{
    const std::shared_ptr<const Resources> known = GetResources();
    const std::lock_guard<std::mutex> lock(annotationMutex);
    const auto kept = keptAnnotations.constFind(pageIndex);
    if (kept != keptAnnotations.constEnd())
        return *kept;
    if (const auto* found = annotations.object(pageIndex))
        return *found;
    const std::shared_ptr<const Package> source = GetPackage();
    const ProblemScope scope(*problems, structure.annotationsPart);
    if (!annotationIndex) {
        annotationIndex = std::make_unique<AnnotationIndex>(
            ReadAnnotationIndex(*source, structure.annotationsPart, structure.documentFolder, &isAnnotationListBroken));
        TellOfUnknownPages(*annotationIndex, structure);
    }
    QStringList parts;
    const PageEntry entry = structure.pages.value(pageIndex);
    if (structure.pageIndexById.value(entry.id, -1) == pageIndex) // of two pages with one id the first has them
        parts = annotationIndex->value(entry.id);
    // Appearances draw with the resources of their page too.
    const bool hasOwn = !parts.isEmpty() && !entry.part.isEmpty() && HasPageResources(*source, entry.part);
    const std::shared_ptr<PageAnnotations> page =
        ReadPageAnnotations(*source, parts, hasOwn ? GetContent(entry.part).content->resources : known);
    page->isBroken |= isAnnotationListBroken;
    qint64 bytes = qint64(sizeof(PageAnnotations));
    for (const AnnotationRecord& annotation : page->annotations)
        bytes += qint64(sizeof(AnnotationRecord)) + WeightOf(annotation.objects);
    annotations.insert(pageIndex, new std::shared_ptr<const PageAnnotations>(page),
                       CostOf(bytes, CachedAnnotationBytes));
    return page;
}

// The mouse moves over the same few pages, so their links are placed once.
std::shared_ptr<const PlacedLinks> DocumentStore::GetPageLinks(int pageIndex)
{
    {
        const std::lock_guard<std::mutex> lock(linkMutex);
        if (const auto* known = links.object(pageIndex))
            return *known;
    }
    const std::shared_ptr<const PlacedLinks> placed = PlaceLinks(*this, pageIndex);
    const std::lock_guard<std::mutex> lock(linkMutex);
    links.insert(pageIndex, new std::shared_ptr<const PlacedLinks>(placed), CostOf(placed->bytes, CachedLinkBytes));
    return placed;
}

void DocumentStore::KeepPageAnnotations(int pageIndex, const std::shared_ptr<const PageAnnotations>& list)
{
    const std::lock_guard<std::mutex> lock(annotationMutex);
    keptAnnotations.insert(pageIndex, list);
}

LayerKind DocumentStore::GetTemplateKind(int templateId)
{
    const int position = structure.templateById.value(templateId, -1);
    if (position < 0 || !structure.templates.at(position).zOrder.isEmpty())
        return GetTemplateKind(templateId, QString());
    std::call_once(templateOrdersOnce, [this] {
        const int count = std::min(structure.pages.size(), limits::MaxPagesAskedForTemplates);
        for (int i = 0; i < count; ++i) {
            for (const TemplateRef& reference : GetPageHead(structure.pages.at(i).part).templates) {
                if (!templateOrders.contains(reference.id))
                    templateOrders.insert(reference.id, reference.zOrder);
            }
        }
    });
    return GetTemplateKind(templateId, templateOrders.value(templateId));
}

LayerKind DocumentStore::GetTemplateKind(int templateId, const QString& onPage) const
{
    const int position = structure.templateById.value(templateId, -1);
    QString word = onPage;
    if (word.isEmpty() && position >= 0)
        word = structure.templates.at(position).zOrder;
    const QByteArray text = word.toUtf8();
    if (EqualsWord(text.constData(), "Foreground"))
        return LayerKind::Foreground;
    return EqualsWord(text.constData(), "Body") ? LayerKind::Body : LayerKind::Background;
}

} // namespace ofd
