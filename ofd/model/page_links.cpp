#include "page_links.h"

#include "document_store.h"
#include "problem_log.h"

#include <ofd/package/limits.h>
#include <ofd/package/package.h>
#include <ofd/package/xml_values.h>
#include <ofd/parse/action_reader.h>
#include <ofd/text/glyph_layout.h>

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace ofd {

namespace {

constexpr LayerKind PaintingOrder[] = {LayerKind::Background, LayerKind::Body, LayerKind::Foreground};

bool IsFinite(const QRectF& box)
{
    return std::isfinite(box.left()) && std::isfinite(box.top()) && std::isfinite(box.right()) &&
           std::isfinite(box.bottom());
}

// One page being walked. Cycles and repetitions end where painting ends them.
class LinkWalker
{
public:
    LinkWalker(DocumentStore& store, PlacedLinks& found)
        : store(store)
        , package(store.GetPackage())
        , found(found)
    {
    }

    // What the page itself runs lies under everything on it.
    void WalkPage(int pageIndex)
    {
        const ProblemScope scope(store.GetProblems(), store.GetStructure().pages.value(pageIndex).part);
        const std::shared_ptr<const PageContent> page = store.GetPageContent(pageIndex).content;
        if (page->actions) {
            QPainterPath sheet;
            sheet.addRect(QRectF(QPointF(), store.GetPageSize(pageIndex)));
            Add(*page->actions, sheet, QTransform());
        }
        WalkLayers(*page, true);
        place = PlacedLink();
        WalkAnnotations(pageIndex);
    }

private:
    void WalkLayers(const PageContent& page, bool isPage)
    {
        for (const LayerKind kind : PaintingOrder) {
            WalkTemplates(page, kind);
            for (int i = 0; i < int(page.layers.size()); ++i) {
                const Layer& layer = page.layers[size_t(i)];
                place.layer = isPage ? i : -1;
                if (layer.kind == kind)
                    WalkObjects(layer.objects, *page.resources, QTransform());
            }
            place.layer = -1;
        }
    }

    void WalkTemplates(const PageContent& page, LayerKind kind)
    {
        for (const TemplateRef& reference : page.templates) {
            const bool isOpen = place.templates.contains(reference.id);
            if (isOpen || place.templates.size() >= limits::MaxReferenceDepth ||
                store.GetTemplateKind(reference.id, reference.zOrder) != kind)
                continue;
            if (++templateCount > limits::MaxTemplatesOnPage)
                return;
            const DocumentStructure& structure = store.GetStructure();
            const int position = structure.templateById.value(reference.id, -1);
            const ProblemScope scope(position < 0 ? QString() : structure.templates.at(position).part);
            place.templates.append(reference.id);
            const std::shared_ptr<const PageContent> content = store.GetTemplateContent(reference.id);
            WalkLayers(*content, false);
            place.templates.removeLast();
        }
    }

    // The file may hide an annotation that is nothing but a link, since there is nothing to see of it.
    void WalkAnnotations(int pageIndex)
    {
        const std::shared_ptr<const PageAnnotations> page = store.GetPageAnnotations(pageIndex);
        for (int i = 0; i < int(page->annotations.size()); ++i) {
            const AnnotationRecord& annotation = page->annotations[size_t(i)];
            const QByteArray type = annotation.typeWord.toUtf8();
            if (!annotation.isVisible && !EqualsWord(type.constData(), "Link"))
                continue;
            const ProblemScope scope(annotation.part);
            place.annotation = i;
            WalkObjects(annotation.objects, *page->resources,
                        QTransform::fromTranslate(annotation.origin.x(), annotation.origin.y()));
        }
    }

    void WalkObjects(const ObjectList& objects, const Resources& resources, const QTransform& toPage)
    {
        for (const std::unique_ptr<const GraphicObject>& object : objects) {
            if (!openUnits.isEmpty() && ++repeatedObjects > limits::MaxRepeatedObjects)
                return;
            if (object->actions) {
                const ProblemPlace problemPlace(object->id);
                Add(*object->actions, AreaOf(*object, resources, toPage), object->toContainer * toPage);
            }
            if (object->kind == GraphicObject::Kind::Group)
                WalkObjects(static_cast<const GroupObject&>(*object).objects, resources, toPage);
            else if (object->kind == GraphicObject::Kind::Composite)
                WalkUnit(static_cast<const CompositeObject&>(*object), resources, toPage);
        }
    }

    void WalkUnit(const CompositeObject& object, const Resources& resources, const QTransform& toPage)
    {
        const CompositeUnit* unit = resources.FindUnit(object.unitId);
        if (!unit || openUnits.contains(unit) || openUnits.size() >= limits::MaxReferenceDepth)
            return;
        openUnits.append(unit);
        WalkObjects(unit->objects, resources, object.toContainer * toPage);
        openUnits.removeLast();
    }

    // The boundary on the page. Boundaries of texts are often empty; what is painted stands in for those that are.
    QPainterPath AreaOf(const GraphicObject& object, const Resources& resources, const QTransform& toPage) const
    {
        QPolygonF box(object.boundary.normalized());
        QTransform boxToPage = toPage;
        if (object.boundary.normalized().isEmpty()) {
            box = QPolygonF(PaintedBox(object, resources));
            boxToPage = object.toContainer * toPage;
        }
        QPainterPath area;
        area.addPolygon(boxToPage.map(box));
        area.closeSubpath();
        return area;
    }

    // In the object's own space; empty when nothing is known of it.
    QRectF PaintedBox(const GraphicObject& object, const Resources& resources) const
    {
        if (object.kind == GraphicObject::Kind::Path)
            return PrivateCopy(static_cast<const PathObject&>(object).path).boundingRect();
        if (object.kind == GraphicObject::Kind::Image)
            return object.hasMatrix ? QRectF(0, 0, 1, 1) : QRectF();
        QRectF cells;
        if (object.kind == GraphicObject::Kind::Text) {
            const TextLayout layout =
                LayOutText(static_cast<const TextObject&>(object), resources, *package, store.GetFonts());
            for (const TextCluster& cluster : layout.clusters)
                cells |= cluster.box.boundingRect();
        }
        return cells;
    }

    // Actions that follow each other and share their area are one link.
    void Add(const ObjectActions& actions, const QPainterPath& whole, const QTransform& toPage)
    {
        for (size_t i = 0; i < actions.size();) {
            const QPainterPath region = PrivateCopy(actions[i].region);
            const auto list = std::make_shared<G_ActionList>();
            do {
                list->Add(ResolvedAction(*actions[i].action, store.GetStructure()));
                ++i;
            } while (i < actions.size() && PrivateCopy(actions[i].region) == region);
            AddLink(region.isEmpty() ? whole : OnPage(region, toPage), list);
        }
    }

    // Very long outlines are taken for the boxes around them, since every movement of the mouse asks for their inside.
    QPainterPath OnPage(const QPainterPath& region, const QTransform& toPage)
    {
        QPainterPath area = toPage.map(region);
        area.setFillRule(region.fillRule());
        regionPoints += area.elementCount();
        if (regionPoints <= limits::MaxRegionPointsOnPage)
            return area;
        QPainterPath box;
        box.addRect(area.controlPointRect());
        return box;
    }

    void AddLink(const QPainterPath& area, const std::shared_ptr<const G_ActionList>& list)
    {
        const QRectF box = area.controlPointRect();
        if (box.isEmpty() || !IsFinite(box))
            return;
        if (int(found.links.size()) >= limits::MaxLinksOnPage) {
            ReportProblem(ProblemKind::Limit,
                          QCoreApplication::translate("OfdDocument", "The page has too many links."));
            return;
        }
        PlacedLink link = place;
        link.link.area = area;
        link.link.actions = list;
        link.link.isOfAnnotation = place.annotation >= 0;
        link.link.templateId = place.templates.value(0);
        found.links.push_back(link);
        constexpr int actionBytes = 256;
        found.bytes += qint64(sizeof(PlacedLink)) + list->Actions().GetSize() * actionBytes +
                       area.elementCount() * qint64(sizeof(QPainterPath::Element));
    }

    DocumentStore& store;
    const std::shared_ptr<const Package> package;
    PlacedLinks& found;
    PlacedLink place;                        // where the walk is
    QVector<const CompositeUnit*> openUnits; // not owned
    int repeatedObjects = 0;                 // visited so far as contents of composites
    int templateCount = 0;
    qint64 regionPoints = 0; // of all regions so far
};

} // namespace

std::shared_ptr<const PlacedLinks> PlaceLinks(DocumentStore& store, int pageIndex)
{
    auto found = std::make_shared<PlacedLinks>();
    LinkWalker(store, *found).WalkPage(pageIndex);
    return found;
}

} // namespace ofd
