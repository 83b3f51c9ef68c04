#pragma once

#include <ofd/model/content.h>

#include <pugixml.hpp>

namespace ofd {

struct DrawParam;

// Resolves what an object does not say itself: its own attributes come first, then its draw parameter and what that is
// relative to, then the layer's.
class StyleChain
{
public:
    explicit StyleChain(const Resources& resources)
        : resources(resources)
    {
    }
    // Appends a draw parameter with all that it is relative to. Unknown ids are as good as none; cycles end.
    void Append(int drawParamId);

    const Resources& GetResources() const { return resources; }
    StrokeStyle ReadStroke(const pugi::xml_node& object) const;
    Paint ReadFill(const pugi::xml_node& object, const QColor& missing) const;
    Paint ReadStrokePaint(const pugi::xml_node& object, const QColor& missing) const;

private:
    template <typename T>
    T Inherited(std::optional<T> DrawParam::*member, const T& missing) const;

    const Resources& resources;
    QVector<const DrawParam*> params; // not owned; the nearest first
};

// Reads the attributes that a draw parameter and an object share, without the colours, whose defaults differ.
DrawParam ReadDrawParam(const pugi::xml_node& element);
// Reads the colours of a draw parameter.
void ReadDrawParamColors(const pugi::xml_node& element, const Resources& resources, DrawParam& param);

// Reads the border of a picture.
ImageBorder ReadImageBorder(const pugi::xml_node& element, const Resources& resources);

} // namespace ofd
