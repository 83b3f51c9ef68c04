// What painting a page takes against what nobody can avoid: a page of text against drawing the same glyphs from memory
// with QPainter::drawGlyphRun, a page of pictures against decoding them.

#include "measuring.h"

#include <ofd/ofd_document.h>
#include <samples/document_builder.h>
#include <samples/report.h>

#include <QBuffer>
#include <QGlyphRun>
#include <QGuiApplication>
#include <QImageReader>
#include <QPainter>
#include <QTemporaryDir>
#include <QTextLayout>

#include <cstdio>
#include <random>
#include <vector>

namespace {

constexpr double textBudget = 3;    // times the glyph runs
constexpr double imageBudget = 1.5; // times decoding
constexpr double pixelsPerMm = 96 / 25.4;
constexpr int textRounds = 60;
constexpr int imageRounds = 15;

ofd::OpenResult Open(const QString& path)
{
    ofd::OpenResult opened = ofd::OfdDocument::Open(path);
    if (!opened)
        qFatal("%s", qPrintable(opened.error));
    return opened;
}

G_RenderResult Paint(IG_Document& document, int page, double scale)
{
    G_RenderRequest request;
    request.pageIndex = page;
    request.pixelsPerMm = scale;
    G_RenderResult result = document.Renderer()->RenderPage(request);
    if (result.image.isNull() || !result.error.isEmpty())
        qFatal("a page was not painted");
    return result;
}

// The lines of a page, shaped once and ready to be drawn.
struct Lines
{
    std::vector<QList<QGlyphRun>> runs;
    std::vector<QPointF> places;
    int glyphs = 0;

    Lines(IG_Document& document, int page)
    {
        IG_Page* content = document.GetPage(page);                                         // not owned
        IG_TextPage* text = content && content->Load() ? content->GetTextPage() : nullptr; // not owned
        if (!text || !text->Parse(0))
            qFatal("the page has no text");
        QFont font(QStringLiteral("Helvetica"));
        font.setPixelSize(16);
        font.setHintingPreference(QFont::PreferNoHinting);
        for (const G_TextRun& run : text->AllRuns()) {
            QTextLayout layout(run.text, font);
            layout.beginLayout();
            layout.createLine();
            layout.endLayout();
            runs.push_back(layout.glyphRuns());
            places.emplace_back(double(run.rect.left) * pixelsPerMm, double(run.rect.top) * pixelsPerMm);
            for (const QGlyphRun& part : runs.back())
                glyphs += part.glyphIndexes().size();
        }
        document.ReleasePage(page, 0);
    }

    void Draw(const QSize& size) const
    {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        for (size_t i = 0; i < runs.size(); ++i) {
            for (const QGlyphRun& run : runs[i])
                painter.drawGlyphRun(places[i], run);
        }
    }
};

void MeasureText(const QTemporaryDir& folder)
{
    samples::ReportSetup setup;
    setup.pages = 70;
    setup.entries = 10;
    const QString path = folder.filePath(QStringLiteral("text.ofd"));
    if (!samples::MakeReport(setup).Save(path))
        qFatal("the report cannot be written");
    const ofd::OpenResult opened = Open(path);
    const Lines lines(*opened.document, 0);
    const QSize size = Paint(*opened.document, 0, pixelsPerMm).image.size();
    lines.Draw(size);
    std::vector<double> glyphRuns, again, fresh;
    for (int i = 0; i < textRounds; ++i) {
        glyphRuns.push_back(MillisecondsOf([&] { lines.Draw(size); }));
        again.push_back(MillisecondsOf([&] { Paint(*opened.document, 0, pixelsPerMm); }));
        fresh.push_back(MillisecondsOf([&] { Paint(*opened.document, i + 1, pixelsPerMm); }));
    }
    const double base = Median(glyphRuns);
    std::printf("%d glyphs from memory, drawGlyphRun   %8.2f ms\n", lines.glyphs, base);
    std::printf("the page, read before                 %8.2f ms  %5.2f times (budget %.0f)\n", Median(again),
                Median(again) / base, textBudget);
    std::printf("a page for the first time             %8.2f ms  %5.2f times\n", Median(fresh), Median(fresh) / base);
}

// A picture with as much detail as a scan has.
QImage Scan(const QSize& size)
{
    QImage image(size, QImage::Format_RGB32);
    std::mt19937 random(7);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const bool isInk = (x / 9 * 7 + y / 13 * 5) % 11 < 3 && y / 26 % 2 == 0;
            const int noise = int(random() % 12);
            const int grey = (isInk ? 30 : 235) + noise;
            image.setPixel(x, y, qRgb(grey, grey, qMax(0, grey - 6)));
        }
    }
    return image;
}

void MeasureImage(const QTemporaryDir& folder, const char* format, double scale)
{
    const QImage scan = Scan(QSize(1654, 2339)); // a sheet at 200 dots an inch
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!scan.save(&buffer, format, 85))
        qFatal("a picture cannot be written");
    samples::DocumentBuilder document(QStringLiteral("A scan"));
    const int image = document.AddImage(QStringLiteral("scan.%1").arg(QLatin1String(format)), bytes,
                                        QString::fromLatin1(format).toUpper());
    document.AddPage({}, [&](samples::PageBuilder& page) {
        page.BeginLayer();
        page.Objects().Image(QRectF(0, 0, 210, 297), image);
    });
    const QString path = folder.filePath(QString::fromLatin1(format) + QStringLiteral(".ofd"));
    if (!document.Build().Save(path))
        qFatal("the scan cannot be written");
    std::vector<double> decoding, painting;
    for (int i = 0; i < imageRounds; ++i) {
        decoding.push_back(MillisecondsOf([&] {
            QBuffer source(&bytes);
            if (QImageReader(&source).read().isNull())
                qFatal("a picture cannot be decoded");
        }));
        const ofd::OpenResult opened = Open(path); // its pictures are not decoded yet
        painting.push_back(MillisecondsOf([&] { Paint(*opened.document, 0, scale); }));
    }
    const double base = Median(decoding);
    std::printf("decoding a scan, %-4s                 %8.2f ms\n", format, base);
    std::printf("its page at %3.0f dots an inch          %8.2f ms  %5.2f times (budget %.1f)\n", scale * 25.4,
                Median(painting), Median(painting) / base, imageBudget);
}

} // namespace

int main(int argc, char** argv)
{
    PaintOffscreenByDefault();
    QGuiApplication application(argc, argv);
    const QTemporaryDir folder;
    MeasureText(folder);
    for (const double scale : {96 / 25.4, 192 / 25.4}) {
        MeasureImage(folder, "jpg", scale);
        MeasureImage(folder, "png", scale);
    }
    return 0;
}
