// A font that a document brings along: its glyphs by character and by number, outlined, measured and painted.
#include "fuzz_support.h"

#include <ofd/model/content.h>
#include <ofd/text/font_face.h>

#include <QImage>
#include <QPainter>

namespace {

constexpr int GlyphsTried = 48;

void PaintGlyph(const ofd::FontFace& face, quint32 glyph)
{
    face.AdvanceOf(glyph);
    QTransform place = QTransform::fromScale(12, 12);
    place.translate(0.2, 1);
    const QPainterPath outline = ofd::PrivateCopy(place.map(face.OutlineOf(glyph)));
    QImage image(24, 24, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(outline, Qt::black);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    fuzz::StartApplication(argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const auto face = ofd::FontFace::FromBytes(QByteArray(reinterpret_cast<const char*>(data), static_cast<int>(size)));
    if (!face)
        return 0;
    for (uint code = 'A'; code < 'A' + GlyphsTried; ++code)
        PaintGlyph(*face, face->GlyphOf(code));
    for (quint32 glyph = 0; glyph < GlyphsTried; ++glyph)
        PaintGlyph(*face, glyph);
    PaintGlyph(*face, 0xffffffff);
    return 0;
}
