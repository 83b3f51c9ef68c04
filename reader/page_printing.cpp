#include "page_printing.h"

#include <frame/document/ig_document.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPageSize>
#include <QPainter>
#include <QPrinter>
#include <QSet>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {

constexpr double MmOfInch = 25.4;
constexpr int MostDotsOfInch = 600;  // finer is not seen on paper, and takes four times the time
constexpr int BandPixels = 16000000; // of a page that are in memory at a time
constexpr int SampledPixels = 20000;
constexpr int MostDrawnColours = 2000; // of the samples: more are a photograph

class Texts
{
    Q_DECLARE_TR_FUNCTIONS(PagePrinting)
};

// Letters and lines must not blur, photographs must not take megabytes.
bool IsDrawing(const QImage& image)
{
    QSet<QRgb> colours;
    const qint64 pixels = qint64(image.width()) * image.height();
    const qint64 step = std::max<qint64>(1, pixels / SampledPixels);
    for (qint64 i = 0; i < pixels; i += step)
        colours.insert(image.pixel(int(i % image.width()), int(i / image.width())));
    return colours.size() <= MostDrawnColours;
}

// A page and where it goes.
struct Placed
{
    int page = 0;
    QSizeF sizeMm;
    QRectF target;          // the page, in dots of the printer
    double pixelsPerMm = 1; // it is painted at
};

class Printing
{
public:
    Printing(QPrinter& printer, IG_PageRenderer& renderer, const PrintOrder& order, const JobControl& control)
        : printer(printer)
        , renderer(renderer)
        , order(order)
        , control(control)
    {
    }

    JobOutcome Run()
    {
        for (int i = 0; i < order.pages.size(); ++i) {
            const QString error = PrintPage(i);
            const bool isGivenUp = control.IsCancelled();
            if (isGivenUp || !error.isEmpty())
                return {isGivenUp, isGivenUp ? QString() : error, Abort()};
            control.tell(i + 1, order.pages.size());
        }
        const bool isDone = painter.isActive() && painter.end() && printer.printerState() != QPrinter::Error;
        return {false, isDone ? QString() : NoPrinter(), {}};
    }

private:
    // Not every way to a printer can take back what it was given. Answers with what the user should know.
    QString Abort()
    {
        const bool isBegun = painter.isActive();
        const bool isTakenBack = printer.abort();
        painter.end();
        const bool mayPrint = isBegun && !isTakenBack && printer.outputFileName().isEmpty();
        return mayPrint ? Texts::tr("Pages that were ready may still be printed.") : QString();
    }

    static QString NoPrinter() { return Texts::tr("The printer, or the file, does not take the pages."); }

    // The paper must be chosen before the page begins.
    QString PrintPage(int position)
    {
        const int page = order.pages.at(position);
        const QSizeF sizeMm = order.sizesMm.isEmpty() ? renderer.PageSizeMm(page) : order.sizesMm.value(position);
        if (sizeMm.isEmpty())
            return Texts::tr("Page %1 has no size.").arg(page + 1);
        ChoosePaper(sizeMm);
        const bool isNext = painter.isActive() ? printer.newPage() : painter.begin(&printer);
        if (!isNext)
            return NoPrinter();
        return PaintPage(Place(page, sizeMm));
    }

    void ChoosePaper(const QSizeF& sizeMm)
    {
        printer.setFullPage(true);
        if (order.size == PrintSize::OwnSheet) {
            printer.setPageMargins(QMarginsF());
            printer.setPageOrientation(QPageLayout::Portrait); // the size itself is as wide as it is
            printer.setPageSize(QPageSize(sizeMm, QPageSize::Millimeter, QString(), QPageSize::ExactMatch));
        } else if (sizeMm.width() != sizeMm.height()) {
            const bool isLandscape = sizeMm.width() > sizeMm.height();
            printer.setPageOrientation(isLandscape ? QPageLayout::Landscape : QPageLayout::Portrait);
        }
    }

    // In the middle of what can be printed on.
    Placed Place(int page, const QSizeF& sizeMm) const
    {
        QPageLayout paper = printer.pageLayout();
        const QRectF whole = paper.fullRectPixels(printer.resolution());
        paper.setMode(QPageLayout::StandardMode);
        const QRectF room = order.size == PrintSize::FitPaper ? paper.paintRectPixels(printer.resolution()) : whole;
        const double dotsPerMm = printer.resolution() / MmOfInch;
        QSizeF size = sizeMm * dotsPerMm;
        if (order.size == PrintSize::FitPaper)
            size *= std::min(room.width() / size.width(), room.height() / size.height());
        Placed placed{page, sizeMm, QRectF(QPointF(), size), 1};
        placed.target.moveCenter(room.center());
        const double coarser = std::min(1.0, MostDotsOfInch / double(printer.resolution()));
        placed.pixelsPerMm = size.width() / sizeMm.width() * coarser;
        return placed;
    }

    // From the top down, in bands: a page at the printer's resolution would take hundreds of megabytes.
    QString PaintPage(const Placed& placed)
    {
        const QSize pixels(std::max(1, qRound(placed.sizeMm.width() * placed.pixelsPerMm)),
                           std::max(1, qRound(placed.sizeMm.height() * placed.pixelsPerMm)));
        const int rows = std::max(1, BandPixels / pixels.width());
        for (int top = 0; top < pixels.height(); top += rows) {
            // One row more than its own, which the next band covers: no seam shows between them.
            const QRect band(0, top, pixels.width(), std::min(rows + 1, pixels.height() - top));
            const QString error = PaintBand(placed, pixels, band);
            if (!error.isEmpty() || control.IsCancelled())
                return error;
        }
        return QString();
    }

    QString PaintBand(const Placed& placed, const QSize& pixels, const QRect& band)
    {
        G_RenderRequest request;
        request.pageIndex = placed.page;
        request.pixelsPerMm = placed.pixelsPerMm;
        request.region = band;
        request.withAnnotations = order.withAnnotations;
        request.isForPaper = true;
        request.cancelled = control.cancelled;
        const G_RenderResult result = renderer.RenderPage(request);
        if (control.IsCancelled())
            return QString();
        if (result.image.isNull())
            return Texts::tr("Page %1 cannot be painted.\n%2").arg(placed.page + 1).arg(result.error);
        const double dotsPerPixel = placed.target.width() / pixels.width();
        const QRectF target(placed.target.left(), placed.target.top() + band.top() * dotsPerPixel,
                            placed.target.width(), result.image.height() * dotsPerPixel);
        painter.setRenderHint(QPainter::LosslessImageRendering, IsDrawing(result.image));
        painter.drawImage(target, result.image);
        return QString();
    }

    QPrinter& printer;
    IG_PageRenderer& renderer;
    const PrintOrder& order;
    const JobControl& control;
    QPainter painter;
};

// In the folder of the file, so that it can be renamed.
QString UnfinishedName(const QString& path)
{
    const QFileInfo info(path);
    return info.dir().filePath(
        QStringLiteral(".%1.%2.part").arg(info.fileName()).arg(QCoreApplication::applicationPid()));
}

void AddCopies(QVector<int>& pages, int copies, bool isCollated)
{
    const QVector<int> once = pages;
    pages.clear();
    for (int i = 0; i < once.size() * copies; ++i)
        pages << once.at(isCollated ? i % once.size() : i / copies);
}

} // namespace

QVector<int> PagesToPrint(const QPrinter& printer, int pageCount, int currentPage)
{
    int first = 0;
    int last = pageCount - 1;
    if (printer.printRange() == QPrinter::CurrentPage) {
        first = last = currentPage;
    } else if (printer.printRange() == QPrinter::PageRange && printer.fromPage() > 0) {
        first = printer.fromPage() - 1;
        last = std::min(last, printer.toPage() - 1);
    }
    QVector<int> pages;
    for (int page = std::max(0, first); page <= last; ++page)
        pages << page;
    if (printer.pageOrder() == QPrinter::LastPageFirst)
        std::reverse(pages.begin(), pages.end());
    if (!printer.supportsMultipleCopies() && printer.copyCount() > 1)
        AddCopies(pages, printer.copyCount(), printer.collateCopies());
    return pages;
}

PrintOrder OrderFor(const QPrinter& printer, IG_Document& document, int currentPage)
{
    PrintOrder order;
    order.pages = PagesToPrint(printer, document.GetPageCount(), currentPage);
    IG_PageRenderer* renderer = document.Renderer();
    if (!order.pages.isEmpty() && renderer && renderer->PageSizeMm(order.pages.first()).isValid())
        return order; // which tells them on the thread that prints: those of a long document take a while
    for (const int page : qAsConst(order.pages))
        order.sizesMm << document.PageSizeMm(page);
    return order;
}

QString PrintRefusal(IG_Document& document, int copies)
{
    if (!document.MayPrint())
        return Texts::tr("The document's rights do not allow printing.");
    const int most = document.MostCopies();
    if (most >= 0 && copies > most)
        return Texts::tr("The document's rights do not allow so many copies. Copies at a time: at most %1.").arg(most);
    return QString();
}

JobOutcome PrintPages(QPrinter& printer, IG_PageRenderer& renderer, const PrintOrder& order, const JobControl& control)
{
    const QString path = printer.outputFileName();
    if (path.isEmpty())
        return Printing(printer, renderer, order, control).Run();
    const QString unfinished = UnfinishedName(path);
    printer.setOutputFileName(unfinished);
    JobOutcome outcome = Printing(printer, renderer, order, control).Run();
    printer.setOutputFileName(path);
    if (!outcome.error.isEmpty() || outcome.wasGivenUp) {
        QFile::remove(unfinished);
    } else if (std::rename(QFile::encodeName(unfinished).constData(), QFile::encodeName(path).constData()) != 0) {
        QFile::remove(unfinished);
        outcome.error = Texts::tr("The file %1 cannot be written.").arg(QDir::toNativeSeparators(path));
    }
    return outcome;
}
