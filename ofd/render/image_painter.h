#pragma once

#include <ofd/model/content.h>

#include <QPainter>

#include <functional>

#include <optional>

namespace ofd {

class ImageStore;
class Package;
class PaintingWork;
struct Resources;

// Averages a picture down to about the size in pixels that it is painted in; painting alone would only pick some of its
// pixels. The picture itself when it is not much larger.
QImage ShrunkTo(const QImage& image, const QSizeF& sizePx);
// The lengths of the sides of the unit square under the transform.
QSizeF SidesOf(const QTransform& transform);

// Where the border of a picture runs: in millimetres along the sides of the picture, and from there to the container.
struct PictureFrame
{
    QPainterPath outline; // empty when the picture has no area
    QTransform toContainer;
};

// Paints the pictures of a page: the picture or the one that stands in for it, seen through its mask. Made for one
// object on one thread.
class ImagePainter
{
public:
    // `isCancelled` may be empty; decoding is given up when it says so. All outlive this.
    ImagePainter(QPainter& painter, ImageStore& images, const Package& package, PaintingWork& work,
                 const std::function<bool()>& isCancelled)
        : painter(painter)
        , images(images)
        , package(package)
        , work(work)
        , isCancelled(isCancelled)
    {
    }

    // What the picture covers without its border, in its container's space.
    static QRectF BoxOf(const ImageObject& object);
    // For an object that has a border.
    static PictureFrame FrameOf(const ImageObject& object);
    // Paints with a painter whose transform maps the container to pixels and whose clip is set. False, and nothing
    // painted, when neither the picture nor its substitute can be read, or when it or its mask is too much work.
    bool Paint(const ImageObject& object, const Resources& resources, double alpha);

private:
    QImage PictureOf(const ImageObject& object, const Resources& resources) const;
    bool TakePicture(const QString& part) const;
    std::optional<QImage> ImageOf(int mediaId, const Resources& resources, const QSizeF& sidesPx) const;
    void PaintPicture(const QImage& image, const ImageObject& object, double alpha);

    QPainter& painter;
    ImageStore& images;
    const Package& package;
    PaintingWork& work;
    const std::function<bool()>& isCancelled;
};

} // namespace ofd
