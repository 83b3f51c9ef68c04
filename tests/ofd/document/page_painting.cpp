#include "page_painting.h"

#include <ofd/ofd_document.h>

#include <QTemporaryDir>

const QByteArray SquareData = "<ofd:AbbreviatedData>M 0 0 L 20 0 L 20 20 L 0 20 C</ofd:AbbreviatedData>";
const QByteArray FontResource = "<ofd:Fonts><ofd:Font ID=\"10\" FontName=\"Arial\"/></ofd:Fonts>";

QByteArray FilledSquare(int x, int y, const QByteArray& colour, const QByteArray& more)
{
    return "<ofd:PathObject ID=\"1\" Boundary=\"" + QByteArray::number(x) + ' ' + QByteArray::number(y) +
           " 20 20\" Stroke=\"false\" Fill=\"true\" " + more + "><ofd:FillColor " + colour + "/>" + SquareData +
           "</ofd:PathObject>";
}

QByteArray TextObject(const QByteArray& attributes, const QByteArray& code)
{
    return "<ofd:TextObject ID=\"2\" Font=\"10\" " + attributes + ">" + code + "</ofd:TextObject>";
}

QImage PaintFile(const OfdFile& file, const G_RenderRequest& request)
{
    const QTemporaryDir folder;
    const ofd::OpenResult opened = ofd::OfdDocument::Open(file.Write(folder.filePath(QStringLiteral("page.ofd"))));
    if (!opened)
        qFatal("%s", qPrintable(opened.error));
    G_RenderRequest fine = request;
    fine.pixelsPerMm = PixelsPerMm;
    const G_RenderResult result = opened.document->Renderer()->RenderPage(fine);
    if (!result.error.isEmpty())
        qFatal("%s", qPrintable(result.error));
    return result.image;
}

QImage PaintPage(const QByteArray& objects, const QByteArray& resources)
{
    return PaintFile(OfdFile::WithPage(objects).Resources(resources));
}

QColor ColourAt(const QImage& image, double xMm, double yMm)
{
    return image.pixelColor(int(xMm * PixelsPerMm), int(yMm * PixelsPerMm));
}

bool IsNear(const QColor& a, const QColor& b, int tolerance)
{
    return qAbs(a.red() - b.red()) <= tolerance && qAbs(a.green() - b.green()) <= tolerance &&
           qAbs(a.blue() - b.blue()) <= tolerance;
}

QRectF InkBox(const QImage& image)
{
    QRect box;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qGray(image.pixel(x, y)) < 200)
                box |= QRect(x, y, 1, 1);
        }
    }
    return QRectF(box.x() / PixelsPerMm, box.y() / PixelsPerMm, box.width() / PixelsPerMm, box.height() / PixelsPerMm);
}
