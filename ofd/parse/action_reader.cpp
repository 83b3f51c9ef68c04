#include "action_reader.h"

#include "attachment_reader.h"
#include "outline_reader.h"
#include "path_data.h"

#include <ofd/model/problem_log.h>
#include <ofd/model/structure.h>
#include <ofd/package/limits.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_text.h>
#include <ofd/package/xml_values.h>

#include <QCoreApplication>

namespace ofd {

namespace {

CCA_String Utf8(const QString& text)
{
    return CCA_String(text.toUtf8());
}

// As it is read: the attachments of the document are not known yet.
class NamedAttachment : public G_ActionAttachment
{
public:
    explicit NamedAttachment(const QString& identifier)
        : identifier(identifier)
    {
    }
    G_Action* Clone() const override { return new NamedAttachment(*this); }

    const QString identifier; // as the file spells it
};

ActionEvent EventOf(const pugi::xml_node& action)
{
    const char* word = Attribute(action, "Event").as_string();
    return EqualsWord(word, "DO")   ? ActionEvent::DocumentOpen
           : EqualsWord(word, "PO") ? ActionEvent::PageOpen
                                    : ActionEvent::Click;
}

// Writes the pieces of a region as those of an outline, which are the same under other names: so one reader draws both.
class RegionText
{
public:
    void AddArea(const pugi::xml_node& area)
    {
        Add("M", {"Start"}, area);
        for (pugi::xml_node piece = FirstElement(area); piece && HasRoom(); piece = NextElement(piece))
            AddPiece(piece);
    }
    bool HasRoom() const { return pieces < limits::MaxRegionPieces; }
    const QByteArray& Get() const { return text; }

private:
    void AddPiece(const pugi::xml_node& piece)
    {
        const std::string_view name = LocalName(piece);
        if (name == "Move")
            Add("M", {"Point1"}, piece);
        else if (name == "Line")
            Add("L", {"Point1"}, piece);
        else if (name == "QuadraticBezier")
            Add("Q", {"Point1", "Point2"}, piece);
        else if (name == "CubicBezier")
            AddCubic(piece);
        else if (name == "Arc")
            AddArc(piece);
        else if (name == "Close")
            Append("C", {});
    }

    // A piece whose points cannot be read is left out.
    void Add(const char* letter, std::initializer_list<std::string_view> names, const pugi::xml_node& piece)
    {
        std::vector<double> numbers;
        for (const std::string_view& name : names) {
            const std::optional<QPointF> point = PointOf(piece, name);
            if (!point)
                return;
            current = *point;
            numbers.push_back(point->x());
            numbers.push_back(point->y());
        }
        Append(letter, numbers);
    }

    // The first control point may be missing, and is then where the curve begins; the second, where it ends.
    void AddCubic(const pugi::xml_node& piece)
    {
        const std::optional<QPointF> end = PointOf(piece, "Point3");
        if (!end)
            return;
        const QPointF first = HasAttribute(piece, "Point1") ? PointOf(piece, "Point1").value_or(current) : current;
        const QPointF second = HasAttribute(piece, "Point2") ? PointOf(piece, "Point2").value_or(*end) : *end;
        Append("B", {first.x(), first.y(), second.x(), second.y(), end->x(), end->y()});
        current = *end;
    }

    void AddArc(const pugi::xml_node& piece)
    {
        const std::optional<QPointF> end = PointOf(piece, "EndPoint");
        const QVector<double> radii = ArrayAttribute(piece, "EllipseSize").value_or(QVector<double>());
        if (!end || radii.isEmpty())
            return;
        const double flags[] = {BooleanAttribute(piece, "LargeArc", false) ? 1.0 : 0.0,
                                BooleanAttribute(piece, "SweepDirection", false) ? 1.0 : 0.0};
        Append("A", {radii.first(), radii.value(1, radii.first()), NumberAttribute(piece, "RotationAngle"), flags[0],
                     flags[1], end->x(), end->y()});
        current = *end;
    }

    static std::optional<QPointF> PointOf(const pugi::xml_node& piece, std::string_view name)
    {
        const char* value = Attribute(piece, name).as_string();
        const std::optional<QPointF> point = ParsePosition(value);
        if (!point)
            ReportProblem(ProblemKind::BadValue,
                          QCoreApplication::translate("OfdDocument", "\"%1\" is no point of a region.")
                              .arg(QString::fromUtf8(value).left(40)));
        return point;
    }

    void Append(const char* letter, const std::vector<double>& numbers)
    {
        text += letter + QByteArray(" ") + FormatNumbers(numbers) + ' ';
        ++pieces;
    }

    QByteArray text;
    QPointF current;
    int pieces = 0;
};

QPainterPath ReadRegion(const pugi::xml_node& region)
{
    if (!region)
        return {};
    RegionText text;
    for (pugi::xml_node area = FirstElement(region); area && text.HasRoom(); area = NextElement(area)) {
        if (IsElement(area, "Area"))
            text.AddArea(area);
    }
    QPainterPath path = ParsePathData(text.Get().toStdString());
    path.setFillRule(Qt::WindingFill);
    return path;
}

// Null when the action goes nowhere in this document.
std::unique_ptr<G_Action> ReadJump(const pugi::xml_node& element)
{
    const pugi::xml_node dest = ChildElement(element, "Dest");
    const pugi::xml_node bookmark = ChildElement(element, "Bookmark");
    if (!dest && !bookmark)
        return nullptr;
    auto jump = std::make_unique<G_ActionGoto>();
    jump->dest->pageIndex = -1;
    if (dest)
        *jump->dest = ReadDestination(dest);
    else
        jump->bookmarkName = Utf8(AttributeText(bookmark, "Name")); // looked up when it is followed
    return jump;
}

} // namespace

std::unique_ptr<G_Action> ReadOtherAction(const pugi::xml_node& action)
{
    if (const pugi::xml_node uri = ChildElement(action, "URI")) {
        auto opens = std::make_unique<G_ActionUri>();
        opens->uri = Utf8(AttributeText(uri, "URI"));
        opens->base = Utf8(AttributeText(uri, "Base"));
        return opens;
    }
    if (const pugi::xml_node attachment = ChildElement(action, "GotoA")) {
        auto shows = std::make_unique<NamedAttachment>(AttributeText(attachment, "AttachID"));
        shows->opensNewWindow = BooleanAttribute(attachment, "NewWindow", true);
        return shows;
    }
    const int type = ChildElement(action, "Sound")   ? G_Action::Sound
                     : ChildElement(action, "Movie") ? G_Action::Movie
                                                     : G_Action::Other;
    return std::make_unique<G_Action>(type);
}

std::unique_ptr<G_Action> ResolvedAction(const G_Action& action, const DocumentStructure& structure)
{
    std::unique_ptr<G_Action> copy(action.Clone());
    if (auto* jump = dynamic_cast<G_ActionGoto*>(copy.get()); jump && jump->bookmarkName.IsEmpty())
        ResolvePage(*jump->dest, structure);
    else if (auto* shows = dynamic_cast<NamedAttachment*>(copy.get()))
        shows->attachmentId = FindAttachmentId(structure.attachmentIds, shows->identifier);
    return copy;
}

std::unique_ptr<const ObjectActions> ReadActions(const pugi::xml_node& holder, ActionEvent event)
{
    std::unique_ptr<ObjectActions> actions; // most objects have none, so nothing is made for them
    for (pugi::xml_node list = FirstElement(holder); list; list = NextElement(list)) {
        if (!IsElement(list, "Actions"))
            continue;
        for (pugi::xml_node element = FirstElement(list); element; element = NextElement(element)) {
            if (!IsElement(element, "Action") || EventOf(element) != event)
                continue;
            if (!actions)
                actions = std::make_unique<ObjectActions>();
            if (int(actions->size()) >= limits::MaxActionsOfObject)
                return actions;
            std::unique_ptr<G_Action> action = ReadJump(ChildElement(element, "Goto"));
            actions->push_back(
                {ReadRegion(ChildElement(element, "Region")), action ? std::move(action) : ReadOtherAction(element)});
        }
    }
    return actions;
}

} // namespace ofd
