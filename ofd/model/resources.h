#pragma once

#include "content.h"

#include <QHash>

#include <optional>

namespace ofd {

class ColorProfile;

struct ColorSpace
{
    enum class Kind { Gray, Rgb, Cmyk };

    Kind kind = Kind::Rgb;
    int bits = 8;
    QVector<QVector<double>> palette;            // channel values
    std::shared_ptr<const ColorProfile> profile; // null: the plain formulas of the device

    int GetChannelCount() const { return kind == Kind::Gray ? 1 : kind == Kind::Rgb ? 3 : 4; }
};

// Attributes that objects share. What is not set comes from `relative`, then from the outer one.
struct DrawParam
{
    int relative = 0;
    std::optional<double> lineWidth;
    std::optional<Qt::PenCapStyle> cap;
    std::optional<Qt::PenJoinStyle> join;
    std::optional<double> miterLimit;
    std::optional<double> dashOffset;
    std::optional<QVector<double>> dashes;
    std::optional<Paint> fill;
    std::optional<Paint> stroke;
};

struct FontResource
{
    QString fontName;
    QString familyName;
    QString charset; // as written, "big5" for one; empty when not given
    QString part;    // the embedded font; empty when there is none
    bool isItalic = false;
    bool isBold = false;
    bool isSerif = false;
    bool isFixedWidth = false;
};

struct MediaResource
{
    QString type;   // Image, Audio, Video
    QString format; // as written; never trusted
    QString part;   // empty when missing
};

struct CompositeUnit
{
    double width = 0;
    double height = 0;
    ObjectList objects;
};

// Resources of a page (which then has an `outer`) or of the document. An identifier is looked up among resources of the
// wanted kind only. Immutable once read.
struct Resources
{
    QHash<int, ColorSpace> colorSpaces;
    QHash<int, DrawParam> drawParams;
    QHash<int, FontResource> fonts;
    QHash<int, MediaResource> media;
    QHash<int, std::shared_ptr<const CompositeUnit>> units;
    int defaultColorSpace = 0;
    std::shared_ptr<const Resources> outer; // null for the document's

    // Null when there is no such resource here or further out. Valid as long as this object.
    const ColorSpace* FindColorSpace(int id) const { return Find(id, &Resources::colorSpaces); }
    const DrawParam* FindDrawParam(int id) const { return Find(id, &Resources::drawParams); }
    const FontResource* FindFont(int id) const { return Find(id, &Resources::fonts); }
    const MediaResource* FindMedia(int id) const { return Find(id, &Resources::media); }
    const CompositeUnit* FindUnit(int id) const
    {
        const std::shared_ptr<const CompositeUnit>* unit = Find(id, &Resources::units);
        return unit ? unit->get() : nullptr;
    }

private:
    template <typename T>
    const T* Find(int id, QHash<int, T> Resources::*table) const
    {
        const Resources* at = this; // not owned
        for (; at && id; at = at->outer.get()) {
            const auto found = (at->*table).constFind(id);
            if (found != (at->*table).constEnd())
                return &*found;
        }
        return nullptr;
    }
};

} // namespace ofd
