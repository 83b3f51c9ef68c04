#include "lists.h"
#include "output.h"

#include <QStringList>

namespace {

QString Field(const OVJson& item, const char* key)
{
    return OneLine(item.Member(key).ToQString());
}

QString Indent(const OVJson& item)
{
    return QString(2 * (item.Member("level").ToInt() - 1), QLatin1Char(' '));
}

QString PageField(const OVJson& item)
{
    if (!item.HasMember("page"))
        return Field(item, "uri");
    const int page = item.Member("page").ToInt();
    return page > 0 ? QStringLiteral("page %1").arg(page) : QStringLiteral("no page");
}

QString ActionField(const OVJson& action)
{
    if (action.HasMember("page") || action.HasMember("uri"))
        return PageField(action);
    const QString kind = Field(action, "kind");
    return action.HasMember("attachment") ? kind + QLatin1Char(' ') + Field(action, "attachment") : kind;
}

} // namespace

QString OutlineLine(const OVJson& item)
{
    QStringList targets;
    const OVJson actions = item.Member("actions");
    for (int i = 0; i < actions.Size(); ++i)
        targets += ActionField(actions.At(i));
    return Indent(item) + Field(item, "title") + QLatin1Char('\t') + targets.join(QLatin1Char('\t'));
}

QString BookmarkLine(const OVJson& item)
{
    return Field(item, "name") + QLatin1Char('\t') + PageField(item);
}

QString TagLine(const OVJson& item)
{
    QStringList objects;
    const OVJson references = item.Member("objects");
    for (int i = 0; i < references.Size(); ++i) {
        const OVJson ids = references.At(i).Member("objectIds");
        for (int k = 0; k < ids.Size(); ++k)
            objects += Field(references.At(i), "pageId") + QLatin1Char(':') + ids.At(k).ToQString();
    }
    QStringList attributes;
    for (int i = 0; i < item.Member("attributes").Size(); ++i)
        attributes += OneLine(item.Member("attributes").At(i).ToQString());
    return Indent(item) + Field(item, "name") + QLatin1Char('\t') + objects.join(QLatin1Char(' ')) + QLatin1Char('\t') +
           attributes.join(QLatin1Char('\t'));
}

QString AnnotationLine(const OVJson& item)
{
    return QStringList{PageField(item),        Field(item, "id"),   Field(item, "type"),  Field(item, "subtype"),
                       Field(item, "creator"), Field(item, "date"), Field(item, "remark")}
        .join(QLatin1Char('\t'));
}

QString AttachmentLine(const OVJson& item)
{
    const QString hidden = item.Member("visible").ToBool() ? QString() : QStringLiteral("hidden");
    return QStringList{Field(item, "id"),     Field(item, "name"),
                       Field(item, "format"), Field(item, "sizeKb") + QStringLiteral(" KB"),
                       Field(item, "date"),   hidden}
        .join(QLatin1Char('\t'));
}

QString LayerLine(const OVJson& item)
{
    const QString what = item.HasMember("template") ? QStringLiteral("template ") + Field(item, "template")
                                                    : QStringLiteral("layer ") + Field(item, "layer");
    return QStringList{PageField(item), what, Field(item, "kind"), Field(item, "name")}.join(QLatin1Char('\t'));
}
