#include "page_picture.h"

#include <frame/document/ig_document.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QImageWriter>
#include <QSaveFile>
#include <QTransform>

namespace {

constexpr double MmOfInch = 25.4;

class Texts
{
    Q_DECLARE_TR_FUNCTIONS(PagePicture)
};

QByteArray FormatOf(const QString& path)
{
    const QByteArray ending = QFileInfo(path).suffix().toLower().toLatin1();
    return QImageWriter::supportedImageFormats().contains(ending) ? ending : QByteArray("png");
}

} // namespace

QString PictureRefusal(IG_Document& document)
{
    return document.MayExport() ? QString() : Texts::tr("The document's rights do not allow pictures of its pages.");
}

JobOutcome SavePicture(IG_PageRenderer& renderer, const PictureOrder& order, const JobControl& control)
{
    G_RenderRequest request;
    request.pageIndex = order.page;
    request.pixelsPerMm = order.dotsPerInch / MmOfInch;
    request.withAnnotations = order.withAnnotations;
    request.cancelled = control.cancelled;
    const G_RenderResult result = renderer.RenderPage(request);
    if (control.IsCancelled())
        return {true, {}, {}};
    if (result.image.isNull())
        return {false, Texts::tr("Page %1 cannot be painted.\n%2").arg(order.page + 1).arg(result.error), {}};
    QImage picture = result.image.transformed(QTransform().rotate(order.rotation));
    picture.setDotsPerMeterX(qRound(order.dotsPerInch * 1000 / MmOfInch));
    picture.setDotsPerMeterY(picture.dotsPerMeterX());
    QSaveFile file(order.path);
    const bool isWritten = file.open(QIODevice::WriteOnly) && QImageWriter(&file, FormatOf(order.path)).write(picture);
    if (control.IsCancelled())
        return {true, {}, {}};
    if (!isWritten || !file.commit())
        return {false,
                Texts::tr("The file %1 cannot be written.\n%2")
                    .arg(QDir::toNativeSeparators(order.path), file.errorString()),
                {}};
    return {};
}
