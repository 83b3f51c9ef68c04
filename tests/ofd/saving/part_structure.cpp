#include "part_structure.h"

#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>

#include <QRegularExpression>

#include <map>
#include <utility>
#include <vector>

namespace {

// Children in their order: "a! b? c* d+" is one a, at most one b, any number of c, at least one d. Attributes: a '!'
// for those that must be there, then what they hold. Of elements with text, what that is.
struct Rule
{
    const char* root;
    const char* element;
    const char* children;
    const char* attributes;
    const char* text = "";
};

const Rule Rules[] = {
    {"Document", "Document",
     "CommonData! Pages! Outlines? Permissions? Actions? VPreferences? Bookmarks? Annotations? CustomTags? "
     "Attachments? Extensions?",
     ""},
    {"Document", "CommonData", "MaxUnitID! PageArea! PublicRes* DocumentRes* TemplatePage* DefaultCS?", ""},
    {"Document", "MaxUnitID", "", "", "id"},
    {"Document", "Pages", "Page+", ""},
    {"Document", "Page", "", "ID!id BaseLoc!any"},
    {"Document", "Outlines", "OutlineElem+", ""},
    {"Document", "OutlineElem", "Actions? OutlineElem*", "Title!any Count:integer Expanded:boolean"},
    {"Document", "Actions", "Action+", ""},
    {"Document", "Action", "Region? Goto? URI? GotoA? Sound? Movie?", "Event!any"},
    {"Document", "Goto", "Dest? Bookmark?", ""},
    {"Document", "Dest", "", "Type!mode PageID!id Left:number Top:number Right:number Bottom:number Zoom:number"},
    {"Document", "URI", "", "URI!any"},
    {"Document", "Bookmarks", "Bookmark+", ""},
    {"Document", "Bookmark", "Dest?", "Name!any"},
    {"Document", "Annotations", "", "", "location"},
    {"Document", "CustomTags", "", "", "location"},
    {"Document", "Attachments", "", "", "location"},
    {"Annotations", "Annotations", "Page*", ""},
    {"Annotations", "Page", "FileLoc!", "PageID!id"},
    {"Annotations", "FileLoc", "", "", "location"},
    {"PageAnnot", "PageAnnot", "Annot+", ""},
    {"PageAnnot", "Annot", "Remark? Parameters? Appearance!",
     "ID!id Type!any Creator!any LastModDate!date Visible:boolean ReadOnly:boolean"},
    {"PageAnnot", "Parameters", "Parameter+", ""},
    {"PageAnnot", "Parameter", "", "Name!any"},
    {"Attachments", "Attachments", "Attachment*", ""},
    {"Attachments", "Attachment", "FileLoc!", "ID!any Name!any CreationDate:time Size:number Visible:boolean"},
    {"Attachments", "FileLoc", "", "", "location"},
    {"CustomTags", "CustomTags", "CustomTag*", ""},
    {"CustomTags", "CustomTag", "SchemaLoc? FileLoc!", "NameSpace!any"},
    {"CustomTags", "FileLoc", "", "", "location"},
};

bool Fits(const QString& value, const QString& kind)
{
    static const std::map<QString, QRegularExpression> forms = {
        {"id", QRegularExpression("^[1-9][0-9]*$")},
        {"integer", QRegularExpression("^-?[0-9]+$")},
        {"number", QRegularExpression("^-?[0-9]+(\\.[0-9]+)?$")},
        {"boolean", QRegularExpression("^(true|false)$")},
        {"mode", QRegularExpression("^(XYZ|Fit|FitH|FitV|FitR)$")},
        {"date", QRegularExpression("^\\d{4}-\\d\\d-\\d\\d( \\d\\d:\\d\\d:\\d\\d)?$")},
        {"time", QRegularExpression("^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d$")},
        {"location", QRegularExpression("^[^\\\\]*[^\\\\/]$")},
        {"any", QRegularExpression()},
    };
    return forms.at(kind).match(value).hasMatch();
}

QString NameOf(const pugi::xml_node& node)
{
    const std::string_view name = ofd::LocalName(node);
    return QString::fromUtf8(name.data(), int(name.size()));
}

class Checker
{
public:
    explicit Checker(const pugi::xml_node& root)
        : rootName(NameOf(root))
    {
        std::vector<pugi::xml_node> pending{root};
        while (!pending.empty()) {
            const pugi::xml_node element = pending.back();
            pending.pop_back();
            const Rule* rule = RuleFor(NameOf(element));
            if (!rule)
                continue; // foreign, or of a kind that no save writes
            place = NameOf(element) + QLatin1Char(' ') + ofd::AttributeText(element, "ID");
            CheckChildren(element, QString::fromLatin1(rule->children).split(' ', Qt::SkipEmptyParts));
            CheckAttributes(element, QString::fromLatin1(rule->attributes).split(' ', Qt::SkipEmptyParts));
            if (*rule->text && !Fits(ofd::TrimmedText(element), QString::fromLatin1(rule->text)))
                Add("is no " + QString::fromLatin1(rule->text));
            for (const pugi::xml_node& child : ofd::ChildElements(element))
                pending.push_back(child);
        }
    }

    QStringList faults;

private:
    void Add(const QString& text) { faults.append(place + QStringLiteral(": ") + text); }

    const Rule* RuleFor(const QString& element) const
    {
        for (const Rule& rule : Rules) {
            if (rootName == QLatin1String(rule.root) && element == QLatin1String(rule.element))
                return &rule;
        }
        return nullptr;
    }

    void CheckChildren(const pugi::xml_node& element, const QStringList& wanted)
    {
        std::map<QString, int> counts;
        int reached = 0;
        for (const pugi::xml_node& child : ofd::ChildElements(element)) {
            const QString name = NameOf(child);
            int at = 0;
            while (at < wanted.size() && wanted.at(at).chopped(1) != name)
                ++at;
            if (at == wanted.size()) {
                if (!wanted.isEmpty())
                    Add("has the child " + name);
                continue;
            }
            if (at < reached)
                Add(name + " stands too late");
            reached = std::max(reached, at);
            ++counts[name];
        }
        for (const QString& item : wanted) {
            const int count = counts[item.chopped(1)];
            const bool mustBe = item.endsWith('!') || item.endsWith('+');
            const bool mayRepeat = item.endsWith('*') || item.endsWith('+');
            if ((mustBe && count == 0) || (!mayRepeat && count > 1))
                Add(QStringLiteral("has %1 of %2").arg(count).arg(item.chopped(1)));
        }
    }

    void CheckAttributes(const pugi::xml_node& element, const QStringList& wanted)
    {
        static const QRegularExpression form("^(\\w+)([!:])(\\w+)$");
        for (const QString& item : wanted) {
            const QRegularExpressionMatch match = form.match(item);
            const QByteArray name = match.captured(1).toLatin1();
            if (!ofd::HasAttribute(element, name.constData())) {
                if (match.captured(2) == QLatin1String("!"))
                    Add("lacks " + match.captured(1));
            } else if (!Fits(ofd::AttributeText(element, name.constData()), match.captured(3))) {
                Add(match.captured(1) + " is no " + match.captured(3));
            }
        }
    }

    const QString rootName;
    QString place;
};

} // namespace

QStringList StructureFaults(const QByteArray& part)
{
    const auto xml = ofd::XmlPart::Parse(QString(), part);
    return xml ? Checker(xml->GetRoot()).faults : QStringList(QStringLiteral("not XML"));
}

QStringList NewFaults(const QByteArray& before, const QByteArray& after)
{
    QStringList faults = StructureFaults(after);
    if (before.isEmpty())
        return faults;
    for (const QString& fault : StructureFaults(before))
        faults.removeOne(fault);
    return faults;
}
