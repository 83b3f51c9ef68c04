#include "tour.h"

#include "pictures.h"
#include "tour_pages.h"

#include <QFile>

namespace samples {

const QColor kInk(0x26, 0x32, 0x4A), kBlue(0x2F, 0x6F, 0xDE), kOrange(0xF2, 0x8C, 0x28), kGreen(0x2F, 0xA0, 0x8A),
    kPale(0xEE, 0xF3, 0xFC), kMuted(0x7A, 0x86, 0x9A);

namespace {

// A free font that a Debian machine usually has. Without it the tour says so and goes on.
const char* const kFreeFont = "/usr/share/fonts/truetype/dejavu/DejaVuSerif.ttf";

void AddFonts(Tour& tour)
{
    DocumentBuilder& document = tour.document;
    tour.hei = document.AddFont(QString::fromUtf8("黑体"), Face::Cjk, {{"FamilyName", "SimHei"}});
    tour.song = document.AddFont(QString::fromUtf8("宋体"), Face::Cjk, {{"FamilyName", "SimSun"}, {"Serif", "true"}});
    tour.kai = document.AddFont(QString::fromUtf8("楷体"), Face::Cjk, {{"FamilyName", "KaiTi"}});
    tour.sans = document.AddFont("Arial", Face::Sans);
    tour.mono = document.AddFont("Courier New", Face::Mono, {{"FixedWidth", "true"}});
    QFile file(QString::fromLatin1(kFreeFont));
    if (file.open(QIODevice::ReadOnly))
        tour.embedded = document.AddEmbeddedFont("DejaVu Serif", "DejaVuSerif.ttf", file.readAll());
    else
        qWarning("%s is not there: the tour embeds no font", kFreeFont);
}

void AddPictures(Tour& tour)
{
    tour.landscapePng = tour.document.AddImage("landscape.png", LandscapePng(), "PNG");
    tour.landscapeJpeg = tour.document.AddImage("landscape.jpg", LandscapeJpeg(), "JPEG");
    tour.logo = tour.document.AddImage("logo.png", LogoPng(), "PNG");
    tour.code = tour.document.AddImage("code.png", CodePng(), "PNG");
    tour.softLine =
        tour.document.AddDrawParam({{"LineWidth", "0.8"}, {"Cap", "Round"}, {"Join", "Round"}}, kPale, kGreen);
    tour.badge = tour.document.AddComposite(QSizeF(20, 20), [](ObjectWriter& objects) {
        objects.Ellipse(QRectF(1, 1, 18, 18), Filled(kBlue));
        PathStyle tick = Stroked(Qt::white, 1.8);
        tick.more = {{"Cap", "Round"}, {"Join", "Round"}};
        objects.Path(QRectF(0, 0, 20, 20), "M 5.5 10.5 L 9 14 L 14.8 6.8", tick);
    });
}

void AddTemplates(Tour& tour)
{
    const QSizeF size(210, 297);
    tour.background = tour.document.AddTemplate(
        QString::fromUtf8("页眉页脚 Header and footer"), "Background", size, [&tour](PageBuilder& page) {
            page.BeginLayer("Background");
            ObjectWriter& objects = page.Objects();
            objects.Rect(QRectF(0, 0, 210, 6), Filled(kBlue));
            objects.Rect(QRectF(0, 6, 210, 0.8), Filled(kOrange));
            objects.Line(QPointF(20, 281), QPointF(190, 281), Stroked(QColor(0xC9, 0xD2, 0xE0), 0.2));
            Mixed(objects, tour, QPointF(20, 286.5),
                  QString::fromUtf8("版式文档一览  A tour of a fixed-layout document"), 2.8, kMuted);
        });
    tour.foreground = tour.document.AddTemplate(
        QString::fromUtf8("角标 Corner mark"), "Foreground", size, [&tour](PageBuilder& page) {
            page.BeginLayer("Foreground");
            ObjectWriter& objects = page.Objects();
            objects.Path(QRectF(182, 7, 28, 28), "M 0 0 L 28 0 L 28 28 C", Filled(QColor(0xF2, 0x8C, 0x28, 150)));
            objects.TextTurned(QPointF(200.5, 18.5), 45, "FOREGROUND", Styled(tour.sans, 2.6, Qt::white));
        });
}

} // namespace

TextStyle Styled(const Font& font, double sizeMm, const QColor& colour)
{
    TextStyle style;
    style.font = font;
    style.sizeMm = sizeMm;
    style.colour = colour;
    return style;
}

PathStyle Stroked(const QColor& colour, double widthMm)
{
    PathStyle style;
    style.stroke = colour;
    style.widthMm = widthMm;
    return style;
}

PathStyle Filled(const QColor& colour)
{
    PathStyle style;
    style.stroke = QColor();
    style.fill = colour;
    return style;
}

double Mixed(ObjectWriter& objects, const Tour& tour, const QPointF& at, const QString& text, double sizeMm,
             const QColor& colour, bool isHeading)
{
    double x = at.x();
    QString run;
    bool isWideRun = false;
    auto endRun = [&] {
        if (run.isEmpty())
            return;
        TextStyle style = Styled(isWideRun ? (isHeading ? tour.hei : tour.song) : tour.sans, sizeMm, colour);
        style.weight = isHeading && !isWideRun ? 700 : 400;
        objects.Text(QPointF(x, at.y()), run, style);
        x += TextWidth(style.font, run) * sizeMm;
        run.clear();
    };
    for (uint codePoint : text.toUcs4()) {
        if (IsWide(codePoint) != isWideRun)
            endRun();
        isWideRun = IsWide(codePoint);
        run += QString::fromUcs4(&codePoint, 1);
    }
    endRun();
    return x;
}

void Heading(ObjectWriter& objects, const Tour& tour, const QString& number, const QString& chinese,
             const QString& english, double right)
{
    objects.Rect(QRectF(20, 20, 11, 11), Filled(kBlue));
    TextStyle digit = Styled(tour.sans, 7, Qt::white);
    digit.weight = 700;
    objects.TextCentred(QPointF(25.5, 28.1), number, digit);
    const double x = Mixed(objects, tour, QPointF(35, 28), chinese, 7, kInk, true);
    objects.Text(QPointF(x + 4, 28), english, Styled(tour.sans, 4.6, kMuted));
    objects.Line(QPointF(20, 34), QPointF(right, 34), Stroked(kBlue, 0.4));
}

void Caption(ObjectWriter& objects, const Tour& tour, const QPointF& at, const QString& text)
{
    Mixed(objects, tour, at, text, 3.0, kMuted);
}

Package MakeTour()
{
    Tour tour;
    AddFonts(tour);
    AddPictures(tour);
    AddTemplates(tour);
    AddCover(tour);
    AddTextPage(tour);
    AddTablePage(tour);
    AddPathPage(tour);
    AddColourPage(tour);
    AddImagePage(tour);
    AddLayerPage(tour);
    AddAnnotationPage(tour);
    AddTagPage(tour);
    AddTourAnnotations(tour);
    AddTourLists(tour);
    return tour.document.Build();
}

} // namespace samples
