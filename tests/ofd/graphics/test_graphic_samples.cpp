#include "graphics_pages.h"

#include <ofd/model/problem_log.h>
#include <ofd/ofd_document.h>
#include <tests/ofd/document/sample_files.h>
#include <tests/support/test_main.h>

#include <QTemporaryDir>
#include <QtTest>

namespace {

const QColor White = Qt::white;
const QColor Black = Qt::black;
const QColor Red = Qt::red;
const QColor Green = Qt::green;
const QColor Blue = Qt::blue;
const QColor Ink(47, 111, 222);
const QColor Half(127, 127, 127);

// What a sample of a feature shows at a place on its first page.
struct Probe
{
    const char* sample;
    double x; // mm
    double y;
    QColor colour;
};

const Probe Probes[] = {
    {"pattern", 22.5, 102.5, Red},
    {"pattern", 37.5, 142.5, Green},
    {"pattern", 22.5, 107.5, White},
    {"pattern_steps", 42.5, 117.5, Red},
    {"pattern_steps", 32.5, 102.5, White},
    {"pattern_steps_too_small", 32.5, 112.5, Red},
    {"pattern_mirrored", 32.5, 102.5, Green},
    {"pattern_mirrored", 22.5, 117.5, Red},
    {"pattern_relative_to_page", 32.5, 112.5, Red},
    {"pattern_turned", 22, 104, Red},
    {"pattern_in_pattern", 20.5, 105, Blue},
    {"pattern_in_pattern", 21.5, 105, White},
    {"pattern_tiny_cells", 50, 130, Half},
    {"shading_axial", 25, 130, Red},
    {"shading_axial", 50, 130, Green},
    {"shading_axial", 75, 130, Blue},
    {"shading_axial_one_side", 25, 130, Red},
    {"shading_axial_one_side", 70, 130, White},
    {"shading_axial_reflected", 55, 130, Green},
    {"shading_axial_reflected", 70, 130, Blue},
    {"shading_axial_repeated", 45, 130, Green},
    {"shading_axial_repeated", 35, 130, White},
    {"shading_radial", 62.5, 130, Green},
    {"shading_radial", 76, 130, White},
    {"shading_radial_cone", 78, 130, Blue},
    {"shading_radial_cone", 30, 105, White},
    {"shading_radial_ellipse", 60, 140, Green},
    {"shading_radial_ellipse", 65, 115, White},
    {"shading_radial_repeated", 54, 130, Green},
    {"shading_radial_repeated", 62, 130, Green},
    {"shading_on_a_matrix", 35, 115, Green},
    {"shading_on_a_matrix", 52, 115, White},
    {"shading_triangles", 25, 155, QColor(220, 220, 220)},
    {"shading_triangles", 79.7, 129.7, Qt::yellow},
    {"shading_lattice", 50, 130, White},
    {"shading_lattice", 20.2, 159.8, Black},
    {"shading_unreadable", 50, 130, QColor(0, 128, 0)},
    {"clips_in_common", 40, 140, Ink},
    {"clips_in_common", 70, 140, White},
    {"clips_in_common", 40, 110, White},
    {"clip_of_two_areas", 70, 110, Ink},
    {"clip_of_two_areas", 30, 150, Ink},
    {"clip_of_two_areas", 60, 140, White},
    {"clip_of_letters_and_path", 50, 155, Ink},
    {"clip_of_letters_and_path", 50, 147, White},
    {"clip_without_matrix", 30, 110, Ink},
    {"clip_without_matrix", 45, 125, White},
    {"clip_that_would_miss", 30, 110, Ink},
    {"clip_that_would_miss", 45, 125, White},
    {"alpha_of_composite", 25, 110, Half},
    {"alpha_of_composite", 35, 110, Half},
    {"alpha_of_object_and_colour", 90, 110, QColor(191, 191, 191)},
    {"alpha_of_line_and_filling", 22, 120, Half},
    {"alpha_of_line_and_filling", 40, 120, QColor(255, 127, 127)},
    {"page_resources_for_annotation", 25, 105, Blue},
    {"page_resources_for_annotation", 45, 105, QColor(220, 40, 40)},
    {"page_resources_for_annotation", 55, 115, QColor(240, 200, 40)},
    {"page_resources_for_annotation", 70, 110, Green},
    {"pattern_with_later_parameter", 22.5, 105, Blue},
    {"pattern_with_later_parameter", 72.5, 155, Blue},
    {"pattern_with_later_parameter", 27.5, 105, White},
    {"pattern_with_itself", 22.5, 105, Blue},
    {"pattern_with_itself", 27.5, 105, White},
    {"patterns_that_multiply", 50, 130, Red},
    {"image_profile_png", 40, 120, QColor(188, 0, 255)},
    {"image_profile_gray_png", 40, 120, QColor(188, 188, 188)},
    {"image_profile_jpeg", 40, 120, QColor(188, 0, 255)},
    {"image_profile_tiff", 40, 120, QColor(188, 0, 255)},
    {"image_profile_broken", 40, 120, QColor(128, 0, 255)},
    {"blend_mode_darken", 45, 125, QColor(100, 100, 0)},
    {"blend_mode_darken", 65, 145, QColor(200, 100, 0)},
};

QImage PaintSample(const QString& name)
{
    const ofd::OpenResult opened = ofd::OfdDocument::Open(SamplePath(QStringLiteral("features/") + name));
    if (!opened)
        qFatal("%s: %s", qPrintable(name), qPrintable(opened.error));
    G_RenderRequest request;
    request.pixelsPerMm = PixelsPerMm;
    return opened.document->Renderer()->RenderPage(request).image;
}

// How often a painted page makes the document's log hold a problem of the kind.
int CountProblems(const QByteArray& objects, ofd::ProblemKind kind)
{
    const QTemporaryDir folder;
    const ofd::OpenResult opened =
        ofd::OfdDocument::Open(OfdFile::WithPage(objects).Write(folder.filePath(QStringLiteral("page.ofd"))));
    if (!opened)
        qFatal("%s", qPrintable(opened.error));
    for (int i = 0; i < 3; ++i)
        opened.document->Renderer()->RenderPage(G_RenderRequest());
    int count = 0;
    for (const ofd::Problem& problem : opened.document->GetProblems())
        count += problem.kind == kind;
    return count;
}

} // namespace

class TestOfdGraphicSamples : public QObject
{
    Q_OBJECT

private slots:
    void everySampleShowsWhatItsFeatureMeans_data();
    void everySampleShowsWhatItsFeatureMeans();
    void whatCannotBeReadIsToldOnce_data();
    void whatCannotBeReadIsToldOnce();
    void soundObjectsTellNothing();
};

void TestOfdGraphicSamples::everySampleShowsWhatItsFeatureMeans_data()
{
    QTest::addColumn<QString>("sample");
    QStringList names;
    for (const Probe& probe : Probes) {
        const QString name = QString::fromLatin1(probe.sample);
        if (!names.contains(name)) {
            names.append(name);
            QTest::newRow(probe.sample) << name;
        }
    }
}

void TestOfdGraphicSamples::everySampleShowsWhatItsFeatureMeans()
{
    QFETCH(QString, sample);
    const QImage image = PaintSample(sample);
    for (const Probe& probe : Probes) {
        if (sample == QLatin1String(probe.sample))
            QVERIFY(Shows(image, probe.x, probe.y, probe.colour, 12));
    }
}

void TestOfdGraphicSamples::whatCannotBeReadIsToldOnce_data()
{
    QTest::addColumn<QByteArray>("object");
    QTest::addColumn<int>("kind");
    const auto row = [](const char* name, const QByteArray& object, ofd::ProblemKind kind) {
        QTest::newRow(name) << object << int(kind);
    };
    const QRectF box(10, 10, 20, 20);
    using ofd::ProblemKind;
    row("colour", FilledBox(box, Colour("red 0 0")), ProblemKind::BadValue);
    row("transform", FilledBox(box, Colour("0 0 0"), "CTM=\"1 0 zero 1 0 0\""), ProblemKind::BadValue);
    row("short transform", FilledBox(box, Colour("0 0 0"), "CTM=\"1 0 0 1\""), ProblemKind::BadValue);
    row("singular transform", FilledBox(box, Colour("0 0 0"), "CTM=\"1 1 1 1 0 0\""), ProblemKind::BadValue);
    row("shading", FilledBox(box, "<ofd:FillColor><ofd:AxialShd/></ofd:FillColor>"), ProblemKind::BadValue);
    row("palette", FilledBox(box, "<ofd:FillColor Index=\"3\"/>"), ProblemKind::BadValue);
    row("clip", FilledBox(box, Colour("0 0 0"), {}, "<ofd:Clips><ofd:Clip/></ofd:Clips>"), ProblemKind::BadValue);
    row("blend mode", FilledBox(box, Colour("0 0 0"), "BlendMode=\"Sparkle\""), ProblemKind::Unsupported);
    row("width", FilledBox(box, Colour("0 0 0"), "LineWidth=\"thick\""), ProblemKind::BadValue);
    row("cap", FilledBox(box, Colour("0 0 0"), "Cap=\"Pointed\""), ProblemKind::BadValue);
}

void TestOfdGraphicSamples::whatCannotBeReadIsToldOnce()
{
    QFETCH(QByteArray, object);
    QFETCH(int, kind);
    QCOMPARE(CountProblems(object, ofd::ProblemKind(kind)), 1);
}

void TestOfdGraphicSamples::soundObjectsTellNothing()
{
    const QByteArray object = FilledBox(QRectF(10, 10, 20, 20), Colour("#ff 0,0", "Alpha=\"20\""),
                                        "CTM=\"1,0,0,1,0,0\" BlendMode=\"Multiply\" LineWidth=\"-1\" Cap=\"Round\"");
    for (const ofd::ProblemKind kind :
         {ofd::ProblemKind::BadValue, ofd::ProblemKind::Unsupported, ofd::ProblemKind::DanglingReference})
        QCOMPARE(CountProblems(object, kind), 0);
}

TETO_TEST_MAIN(TestOfdGraphicSamples)

#include "test_graphic_samples.moc"
