#include "annotation_reader.h"

#include "content_reader.h"

#include <ofd/model/problem_log.h>
#include <ofd/package/limits.h>
#include <ofd/package/locations.h>
#include <ofd/package/package.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>
#include <ofd/package/xml_text.h>
#include <ofd/package/xml_values.h>

#include <QCoreApplication>
#include <QSet>

namespace ofd {

namespace {

// The boxes of all objects together, for appearances that tell none of their own.
QRectF UnionOfBoundaries(const ObjectList& objects)
{
    QRectF all;
    for (const std::unique_ptr<const GraphicObject>& object : objects) {
        if (object->kind == GraphicObject::Kind::Group)
            all |= UnionOfBoundaries(static_cast<const GroupObject&>(*object).objects);
        else
            all |= object->boundary.normalized();
    }
    return all;
}

const PathObject* FirstPath(const ObjectList& objects)
{
    for (const std::unique_ptr<const GraphicObject>& object : objects) {
        if (object->kind == GraphicObject::Kind::Path)
            return static_cast<const PathObject*>(object.get());
        if (object->kind == GraphicObject::Kind::Group) {
            if (const PathObject* path = FirstPath(static_cast<const GroupObject&>(*object).objects))
                return path;
        }
    }
    return nullptr;
}

// The points of the first outline of the appearance, on the page.
QString PointsOfAppearance(const AnnotationRecord& annotation)
{
    const PathObject* path = FirstPath(annotation.objects);
    if (!path)
        return QString();
    const QTransform toPage =
        path->toContainer * QTransform::fromTranslate(annotation.origin.x(), annotation.origin.y());
    std::vector<double> numbers;
    for (int i = 0; i < std::min(path->path.elementCount(), limits::MaxAnnotationPoints); ++i) {
        const QPointF point = toPage.map(QPointF(path->path.elementAt(i)));
        numbers.push_back(point.x());
        numbers.push_back(point.y());
    }
    return QString::fromLatin1(FormatNumbers(numbers));
}

QString PointsParameter(const pugi::xml_node& element)
{
    for (const pugi::xml_node& parameter : ChildElements(ChildElement(element, "Parameters"), "Parameter")) {
        if (AttributeText(parameter, "Name") == QLatin1String("Points"))
            return TrimmedText(parameter);
    }
    return QString();
}

AnnotationRecord ReadAnnotation(const pugi::xml_node& element, const Resources& resources)
{
    AnnotationRecord annotation;
    annotation.id = int(IdAttribute(element, "ID"));
    annotation.typeWord = AttributeText(element, "Type").trimmed();
    annotation.subType = AttributeText(element, "Subtype");
    annotation.creator = AttributeText(element, "Creator");
    const QString date = AttributeText(element, "LastModDate");
    annotation.date = date.trimmed();
    if (annotation.date.size() != date.size())
        annotation.blankDate = date;
    annotation.remark = ElementText(ChildElement(element, "Remark"));
    annotation.isVisible = BooleanAttribute(element, "Visible", true);
    annotation.isPrinted = BooleanAttribute(element, "Print", true);
    annotation.isReadOnly = BooleanAttribute(element, "ReadOnly", true);
    const pugi::xml_node appearance = ChildElement(element, "Appearance");
    annotation.objects = ReadObjects(appearance, resources);
    const std::optional<QRectF> boundary = BoxAttribute(appearance, "Boundary");
    annotation.boundary = boundary ? *boundary : UnionOfBoundaries(annotation.objects);
    annotation.origin = boundary ? boundary->topLeft() : QPointF();
    annotation.pointsText = PointsParameter(element);
    if (annotation.pointsText.isEmpty())
        annotation.pointsText = PointsOfAppearance(annotation);
    return annotation;
}

void TellOfId(int id, QSet<int>& ids)
{
    if (id != 0 && ids.contains(id))
        ReportProblem(ProblemKind::DuplicateIdentifier,
                      QCoreApplication::translate("OfdDocument", "More than one annotation of the page has the ID %1.")
                          .arg(quint32(id)));
    ids.insert(id);
}

} // namespace

AnnotationIndex ReadAnnotationIndex(const Package& package, const QString& listPart, const QString& documentFolder,
                                    bool* isBroken)
{
    AnnotationIndex index;
    const std::unique_ptr<XmlPart> xml = listPart.isEmpty() ? nullptr : XmlPart::Load(package, listPart);
    if (isBroken)
        *isBroken = !xml && !listPart.isEmpty();
    if (!xml)
        return index;
    LocationContext context;
    context.holderPart = listPart;
    context.documentFolder = documentFolder;
    const ProblemScope scope(listPart);
    QSet<QString> seen; // a part that is listed twice is read once, for the first page that it is listed for
    for (const pugi::xml_node& page : ChildElements(xml->GetRoot(), "Page")) {
        const ProblemPlace place(0, xml->PlaceOf(page));
        const QString part = ResolveLocation(package, TrimmedText(ChildElement(page, "FileLoc")), context).part;
        if (part.isEmpty() || seen.contains(part))
            continue;
        seen.insert(part);
        index[int(IdAttribute(page, "PageID"))].append(part);
    }
    return index;
}

std::shared_ptr<PageAnnotations> ReadPageAnnotations(const Package& package, const QStringList& parts,
                                                     const std::shared_ptr<const Resources>& resources)
{
    auto page = std::make_shared<PageAnnotations>();
    page->resources = resources;
    QSet<int> ids;
    for (const QString& part : parts) {
        const std::unique_ptr<XmlPart> xml = XmlPart::Load(package, part);
        page->isBroken |= !xml;
        if (!xml)
            continue;
        const ProblemScope scope(part);
        int ordinal = 0;
        for (const pugi::xml_node& element : ChildElements(xml->GetRoot(), "Annot")) {
            const ProblemPlace place(IdForPlace(element), xml->PlaceOf(element));
            page->annotations.push_back(ReadAnnotation(element, *resources));
            TellOfId(page->annotations.back().id, ids);
            page->annotations.back().part = part;
            page->annotations.back().ordinal = ordinal++;
        }
    }
    return page;
}

} // namespace ofd
