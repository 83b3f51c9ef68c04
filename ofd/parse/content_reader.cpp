#include "content_reader.h"

#include "action_reader.h"
#include "clip_reader.h"
#include "geometry_reader.h"
#include "object_style.h"
#include "text_reader.h"

#include <ofd/model/problem_log.h>
#include <ofd/model/resources.h>
#include <ofd/package/limits.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_values.h>

#include <QCoreApplication>

#include <algorithm>

namespace ofd {

namespace {

struct BlendWord
{
    const char* word;
    BlendMode mode;
};

constexpr BlendWord BlendWords[] = {
    {"Normal", BlendMode::Normal},         {"Multiply", BlendMode::Multiply},     {"Screen", BlendMode::Screen},
    {"Overlay", BlendMode::Overlay},       {"Darken", BlendMode::Darken},         {"Lighten", BlendMode::Lighten},
    {"ColorDodge", BlendMode::ColorDodge}, {"ColorBurn", BlendMode::ColorBurn},   {"HardLight", BlendMode::HardLight},
    {"SoftLight", BlendMode::SoftLight},   {"Difference", BlendMode::Difference}, {"Exclusion", BlendMode::Exclusion},
};

// The format has no blend modes, but files do.
BlendMode ReadBlendMode(const pugi::xml_node& element)
{
    const pugi::xml_attribute attribute = Attribute(element, "BlendMode");
    if (!attribute)
        return BlendMode::Normal;
    for (const BlendWord& known : BlendWords) {
        if (EqualsWord(attribute.value(), known.word))
            return known.mode;
    }
    ReportProblem(ProblemKind::Unsupported,
                  QCoreApplication::translate("OfdDocument", "The blend mode \"%1\" is unknown.")
                      .arg(QString::fromUtf8(attribute.value()).left(40)));
    return BlendMode::Normal;
}

class ObjectReader
{
public:
    explicit ObjectReader(const Resources& resources, int layerDrawParam = 0)
        : resources(resources)
        , layerDrawParam(layerDrawParam)
    {
    }

    ObjectList ReadAll(const pugi::xml_node& parent) const
    {
        ObjectList objects;
        ReadInto(objects, parent, 0);
        return objects;
    }

    // The objects that a writer put into no layer of a page.
    ObjectList ReadLoose(const pugi::xml_node& content) const
    {
        ObjectList objects;
        for (pugi::xml_node child = FirstElement(content); child; child = NextElement(child)) {
            if (!IsElement(child, "Layer"))
                ReadChild(objects, child, 0);
        }
        return objects;
    }

private:
    // Blocks have no transform of their own, so what lies too deep belongs to the innermost block that is kept.
    void ReadInto(ObjectList& objects, const pugi::xml_node& parent, int depth) const
    {
        for (pugi::xml_node child = FirstElement(parent); child; child = NextElement(child))
            ReadChild(objects, child, depth);
    }

    void ReadChild(ObjectList& objects, const pugi::xml_node& child, int depth) const
    {
        if (IsElement(child, "PageBlock"))
            ReadBlock(objects, child, depth);
        else if (std::unique_ptr<GraphicObject> object = Read(child))
            objects.push_back(std::move(object));
        else if (IsElement(child, "Layer")) // inside of another one: a block of it, with draw parameters of its own
            ObjectReader(resources, int(IdAttribute(child, "DrawParam", quint32(layerDrawParam))))
                .ReadBlock(objects, child, depth);
    }

    // The nesting of elements is bound by the XML reader, that of the groups that are walked later here.
    void ReadBlock(ObjectList& objects, const pugi::xml_node& element, int depth) const
    {
        if (depth >= limits::MaxBlockDepth) {
            ReadInto(objects, element, depth);
            return;
        }
        auto group = std::make_unique<GroupObject>();
        group->id = int(IdAttribute(element, "ID"));
        group->isVisible = BooleanAttribute(element, "Visible", true);
        group->alpha = ReadAlpha(element);
        ReadInto(group->objects, element, depth + 1);
        objects.push_back(std::move(group));
    }

    // Null for elements that are no objects.
    std::unique_ptr<GraphicObject> Read(const pugi::xml_node& element) const
    {
        const std::string_view name = LocalName(element);
        const ProblemPlace place(int(IdAttribute(element, "ID")), qint64(element.offset_debug()) - 1);
        if (name == "TextObject")
            return Common(element, ReadText(element));
        if (name == "PathObject")
            return Common(element, ReadPathObject(element));
        if (name == "ImageObject")
            return Common(element, ReadImage(element));
        if (name == "CompositeObject")
            return Common(element, ReadComposite(element));
        return nullptr;
    }

    static double ReadAlpha(const pugi::xml_node& element)
    {
        return std::clamp(NumberAttribute(element, "Alpha", 255), 0.0, 255.0) / 255;
    }

    StyleChain ChainOf(const pugi::xml_node& element) const
    {
        StyleChain chain(resources);
        chain.Append(int(IdAttribute(element, "DrawParam")));
        chain.Append(layerDrawParam);
        return chain;
    }

    std::unique_ptr<GraphicObject> Common(const pugi::xml_node& element, std::unique_ptr<GraphicObject> object) const
    {
        object->id = int(IdAttribute(element, "ID"));
        object->isVisible = BooleanAttribute(element, "Visible", true);
        object->boundary = BoxAttribute(element, "Boundary").value_or(QRectF());
        object->toContainer = MatrixAttribute(element, &object->hasMatrix) * MoveTo(object->boundary);
        object->toContainer.type(); // settles its lazy kind before threads share it
        object->alpha = ReadAlpha(element);
        object->blendMode = ReadBlendMode(element);
        object->clips = ReadClips(element, *object, resources);
        object->actions = ReadActions(element, ActionEvent::Click);
        return object;
    }

    std::unique_ptr<GraphicObject> ReadText(const pugi::xml_node& element) const
    {
        auto text = std::make_unique<TextObject>();
        const StyleChain chain = ChainOf(element);
        text->stroke = chain.ReadStroke(element);
        text->isFilled = BooleanAttribute(element, "Fill", true);
        text->isStroked = BooleanAttribute(element, "Stroke", false);
        text->fillPaint = chain.ReadFill(element, Qt::black);
        text->strokePaint = chain.ReadStrokePaint(element, Qt::transparent);
        ReadTextObject(element, *text);
        return text;
    }

    std::unique_ptr<GraphicObject> ReadPathObject(const pugi::xml_node& element) const
    {
        auto path = std::make_unique<PathObject>();
        const StyleChain chain = ChainOf(element);
        path->stroke = chain.ReadStroke(element);
        path->isStroked = BooleanAttribute(element, "Stroke", true);
        path->isFilled = BooleanAttribute(element, "Fill", false);
        path->strokePaint = chain.ReadStrokePaint(element, Qt::black);
        path->fillPaint = chain.ReadFill(element, Qt::transparent); // a fill without a colour fills nothing
        path->path = ReadPath(element);
        return path;
    }

    std::unique_ptr<GraphicObject> ReadImage(const pugi::xml_node& element) const
    {
        auto image = std::make_unique<ImageObject>();
        image->mediaId = int(IdAttribute(element, "ResourceID"));
        image->substitutionId = int(IdAttribute(element, "Substitution"));
        image->maskId = int(IdAttribute(element, "ImageMask"));
        if (const pugi::xml_node border = ChildElement(element, "Border"))
            image->border = ReadImageBorder(border, resources);
        return image;
    }

    std::unique_ptr<GraphicObject> ReadComposite(const pugi::xml_node& element) const
    {
        auto composite = std::make_unique<CompositeObject>();
        composite->unitId = int(IdAttribute(element, "ResourceID"));
        return composite;
    }

    const Resources& resources;
    const int layerDrawParam;
};

LayerKind KindOfLayer(const pugi::xml_node& layer)
{
    const char* type = Attribute(layer, "Type").as_string();
    return EqualsWord(type, "Background")   ? LayerKind::Background
           : EqualsWord(type, "Foreground") ? LayerKind::Foreground
                                            : LayerKind::Body;
}

} // namespace

std::shared_ptr<PageContent> ReadPageContent(const pugi::xml_node& page,
                                             const std::shared_ptr<const Resources>& resources)
{
    auto content = std::make_shared<PageContent>();
    content->resources = resources;
    content->actions = ReadActions(page, ActionEvent::Click);
    for (const pugi::xml_node& reference : ChildElements(page, "Template"))
        content->templates.append(
            {int(IdAttribute(reference, "TemplateID")), AttributeText(reference, "ZOrder").trimmed()});
    for (const pugi::xml_node& holder : ChildElements(page, "Content")) {
        for (const pugi::xml_node& element : ChildElements(holder, "Layer")) {
            Layer layer;
            layer.id = int(IdAttribute(element, "ID"));
            layer.kind = KindOfLayer(element);
            layer.name = AttributeText(element, "Name");
            layer.objects = ObjectReader(*resources, int(IdAttribute(element, "DrawParam"))).ReadAll(element);
            content->layers.push_back(std::move(layer));
        }
        Layer loose; // objects that a writer put into no layer
        loose.objects = ObjectReader(*resources).ReadLoose(holder);
        if (!loose.objects.empty())
            content->layers.push_back(std::move(loose));
    }
    return content;
}

ObjectList ReadObjects(const pugi::xml_node& parent, const Resources& resources)
{
    return ObjectReader(resources).ReadAll(parent);
}

} // namespace ofd
