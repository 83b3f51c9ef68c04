#include <ofd/model/color_profile.h>
#include <ofd/ofd_document.h>
#include <ofd/render/embedded_profile.h>
#include <ofd/render/image_decoder.h>
#include <ofd/render/picture_colors.h>
#include <samples/profiled_pictures.h>
#include <samples/profiles.h>
#include <tests/ofd/document/page_painting.h>
#include <tests/support/test_main.h>

#include <QTemporaryDir>
#include <QtTest>

#include <lcms2.h>

class TestOfdColorSpaces : public QObject
{
    Q_OBJECT

private slots:
    void coloursFollowTheProfileOfTheirSpace_data();
    void coloursFollowTheProfileOfTheirSpace();
    void profilesThatCannotBeUsedGiveWayToTheDevice_data();
    void profilesThatCannotBeUsedGiveWayToTheDevice();
    void aProfileThatCannotBeUsedIsToldOnce();
    void palettesCountInTheSpaceOfTheirBits();
    void stepsThatAreNoneCountAsEight();
    void brokenProfilesAreRefusedOrHarmless();
    void picturesFollowTheProfileThatTheyCarry_data();
    void picturesFollowTheProfileThatTheyCarry();
    void aProfileLeavesTransparencyAlone();
    void brokenProfilesOfPicturesAreToldAndLeaveThePicture();
    void profilesOfPicturesAreFoundOnlyWhole();
};

namespace {

// The colour of a square in space 20.
QColor Painted(const QByteArray& spaceAttributes, const QByteArray& palette, const QByteArray& colour,
               const QByteArray& profile = {})
{
    OfdFile file = OfdFile::WithPage(FilledSquare(10, 10, "ColorSpace=\"20\" " + colour));
    file.Resources("<ofd:ColorSpaces><ofd:ColorSpace ID=\"20\" " + spaceAttributes + ">" + palette +
                   "</ofd:ColorSpace></ofd:ColorSpaces>");
    if (!profile.isEmpty())
        file.Set(QStringLiteral("Doc_0/Res/space.icc"), profile);
    return ColourAt(PaintFile(file), 20, 20);
}

// What the colour library makes of a colour that is told by its look, without any of our profiles.
QColor ScreenColourOf(const double (&lab)[3])
{
    cmsHPROFILE source = cmsCreateLab4Profile(nullptr);
    cmsHPROFILE screen = cmsCreate_sRGBProfile();
    cmsHTRANSFORM transform =
        cmsCreateTransform(source, TYPE_Lab_DBL, screen, TYPE_RGB_8, INTENT_RELATIVE_COLORIMETRIC, 0);
    quint8 rgb[3] = {};
    cmsDoTransform(transform, lab, rgb, 1);
    cmsDeleteTransform(transform);
    cmsCloseProfile(screen);
    cmsCloseProfile(source);
    return QColor(rgb[0], rgb[1], rgb[2]);
}

} // namespace

void TestOfdColorSpaces::coloursFollowTheProfileOfTheirSpace_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("profile");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QColor>("expected");
    const QByteArray gray = samples::LinearGrayProfile(), rgb = samples::LinearRgbProfile(),
                     inks = samples::InkProfile();
    // Half of the light is 188 of 255 on a screen.
    QTest::newRow("gray") << QByteArray("GRAY") << gray << QByteArray("128") << QColor(188, 188, 188);
    QTest::newRow("white") << QByteArray("GRAY") << gray << QByteArray("255") << QColor(255, 255, 255);
    QTest::newRow("lights") << QByteArray("RGB") << rgb << QByteArray("128 0 255") << QColor(188, 0, 255);
    QTest::newRow("no ink") << QByteArray("CMYK") << inks << QByteArray("0 0 0 0") << QColor(255, 255, 255);
    QTest::newRow("first ink") << QByteArray("CMYK") << inks << QByteArray("255 0 0 0")
                               << ScreenColourOf(samples::InkLab);
    QTest::newRow("an ink without colour")
        << QByteArray("CMYK") << inks << QByteArray("0 255 255 0") << QColor(255, 255, 255);
    QTest::newRow("black") << QByteArray("CMYK") << inks << QByteArray("0 0 0 255") << QColor(0, 0, 0);
}

void TestOfdColorSpaces::coloursFollowTheProfileOfTheirSpace()
{
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, profile);
    QFETCH(QByteArray, value);
    QFETCH(QColor, expected);
    const QColor found = Painted("Type=\"" + type + "\" Profile=\"space.icc\"", {}, "Value=\"" + value + "\"", profile);
    QVERIFY2(IsNear(found, expected, 3), qPrintable(found.name() + QLatin1Char(' ') + expected.name()));
}

void TestOfdColorSpaces::profilesThatCannotBeUsedGiveWayToTheDevice_data()
{
    QTest::addColumn<QByteArray>("profile");
    QTest::newRow("missing") << QByteArray();
    QTest::newRow("no profile") << QByteArray("no profile at all");
    QTest::newRow("cut off") << samples::LinearRgbProfile().left(200);
    QTest::newRow("of other channels") << samples::InkProfile();
}

void TestOfdColorSpaces::profilesThatCannotBeUsedGiveWayToTheDevice()
{
    QFETCH(QByteArray, profile);
    QCOMPARE(Painted("Type=\"RGB\" Profile=\"space.icc\"", {}, "Value=\"128 0 255\"", profile), QColor(128, 0, 255));
}

void TestOfdColorSpaces::aProfileThatCannotBeUsedIsToldOnce()
{
    const QTemporaryDir folder;
    OfdFile file = OfdFile::WithPage(FilledSquare(10, 10, "ColorSpace=\"20\" Value=\"1 2 3\"") +
                                     FilledSquare(40, 10, "ColorSpace=\"21\" Value=\"1 2 3\""));
    file.Resources("<ofd:ColorSpaces><ofd:ColorSpace ID=\"20\" Type=\"RGB\" Profile=\"space.icc\"/>"
                   "<ofd:ColorSpace ID=\"21\" Type=\"RGB\" Profile=\"space.icc\"/></ofd:ColorSpaces>");
    file.Set(QStringLiteral("Doc_0/Res/space.icc"), "no profile");
    const ofd::OpenResult opened = ofd::OfdDocument::Open(file.Write(folder.filePath(QStringLiteral("page.ofd"))));
    QVERIFY(opened);
    opened.document->Renderer()->RenderPage(G_RenderRequest());
    int told = 0;
    for (const ofd::Problem& problem : opened.document->GetProblems())
        told += problem.kind == ofd::ProblemKind::BadValue && problem.part == QLatin1String("Doc_0/Res/space.icc");
    QCOMPARE(told, 1);
}

void TestOfdColorSpaces::palettesCountInTheSpaceOfTheirBits()
{
    const QByteArray palette = "<ofd:Palette><ofd:CV>0 0 0</ofd:CV><ofd:CV>65535 32768 0</ofd:CV></ofd:Palette>";
    const QByteArray sixteen = "Type=\"RGB\" BitsPerComponent=\"16\"";
    QVERIFY(IsNear(Painted(sixteen, palette, "Index=\"1\""), QColor(255, 128, 0), 1));
    QCOMPARE(Painted(sixteen, palette, "Index=\"0\""), QColor(0, 0, 0));
    QCOMPARE(Painted(sixteen, palette, "Index=\"7\""), QColor(0, 0, 0)); // there is none: all channels are 0
    QCOMPARE(Painted("Type=\"CMYK\" BitsPerComponent=\"1\"", "<ofd:Palette><ofd:CV>0 1 1 0</ofd:CV></ofd:Palette>",
                     "Index=\"0\""),
             QColor(255, 0, 0));
    const QByteArray hexadecimal = "<ofd:Palette><ofd:CV>#ee #20 #25</ofd:CV></ofd:Palette>";
    QCOMPARE(Painted("Type=\"RGB\"", hexadecimal, "Index=\"0\""), QColor(0xee, 0x20, 0x25));
    const QByteArray grays = "<ofd:Palette><ofd:CV>2</ofd:CV></ofd:Palette>";
    QVERIFY(IsNear(Painted("Type=\"GRAY\" BitsPerComponent=\"2\"", grays, "Index=\"0\""), QColor(170, 170, 170), 1));
    QVERIFY(IsNear(Painted("Type=\"GRAY\" Profile=\"space.icc\"", "<ofd:Palette><ofd:CV>128</ofd:CV></ofd:Palette>",
                           "Index=\"0\"", samples::LinearGrayProfile()),
                   QColor(188, 188, 188), 3));
}

void TestOfdColorSpaces::stepsThatAreNoneCountAsEight()
{
    for (const char* bits : {"0", "-1", "7", "1000", "many"})
        QCOMPARE(Painted(QByteArray("Type=\"RGB\" BitsPerComponent=\"") + bits + "\"", {}, "Value=\"255 0 128\""),
                 QColor(255, 0, 128));
}

void TestOfdColorSpaces::brokenProfilesAreRefusedOrHarmless()
{
    const QByteArray whole = samples::InkProfile();
    QVERIFY(ofd::ColorProfile::FromBytes(whole, 4));
    QVERIFY(!ofd::ColorProfile::FromBytes(whole, 3));
    QVERIFY(!ofd::ColorProfile::FromBytes(QByteArray(), 3));
    for (int length = 0; length < whole.size() - 32; length += 13)
        QVERIFY(!ofd::ColorProfile::FromBytes(whole.left(length), 4));
    for (int at = 0; at < whole.size(); ++at) {
        QByteArray changed = whole;
        changed[at] = char(~changed[at]);
        if (const auto profile = ofd::ColorProfile::FromBytes(changed, 4))
            QVERIFY(profile->ColorOf({0.5, 0.5, 0.5, 0.5}).isValid());
    }
}

void TestOfdColorSpaces::picturesFollowTheProfileThatTheyCarry_data()
{
    QTest::addColumn<QByteArray>("picture");
    QTest::addColumn<QColor>("expected");
    using namespace samples;
    const QByteArray gray = LinearGrayProfile(), rgb = LinearRgbProfile(), inks = InkProfile();
    const QColor violet(128, 0, 255);
    const QColor seen(188, 0, 255);
    QTest::newRow("PNG") << ProfiledPng(violet, rgb) << seen;
    QTest::newRow("PNG without") << ProfiledPng(violet, {}) << violet;
    QTest::newRow("PNG with a palette") << ProfiledPalettePng(violet, rgb) << seen;
    QTest::newRow("gray PNG") << ProfiledGrayPng(128, gray) << QColor(188, 188, 188);
    QTest::newRow("gray PNG, white") << ProfiledGrayPng(255, gray) << QColor(255, 255, 255);
    QTest::newRow("PNG of sixteen grays") << ProfiledSixteenGraysPng(8, gray) << QColor(193, 193, 193);
    QTest::newRow("PNG of sixteen grays without") << ProfiledSixteenGraysPng(8, {}) << QColor(136, 136, 136);
    QTest::newRow("gray PNG with a profile of lights") << ProfiledGrayPng(128, rgb) << QColor(128, 128, 128);
    QTest::newRow("PNG with a profile of grays") << ProfiledPng(violet, gray) << violet;
    QTest::newRow("PNG with a profile of inks") << ProfiledPng(violet, inks) << violet;
    QTest::newRow("JPEG") << ProfiledJpeg(violet, rgb) << seen;
    QTest::newRow("gray JPEG") << ProfiledGrayJpeg(128, gray) << QColor(188, 188, 188);
    QTest::newRow("TIFF") << ProfiledTiff(violet, rgb) << seen;
    QTest::newRow("inks") << ProfiledInkJpeg(false, inks) << ScreenColourOf(InkLab);
    QTest::newRow("marked inks") << ProfiledInkJpeg(true, inks) << ScreenColourOf(InkLab);
    QTest::newRow("inks without") << ProfiledInkJpeg(true, {}) << QColor(0, 255, 255);
    QTest::newRow("inks with a profile of lights") << ProfiledInkJpeg(true, rgb) << QColor(0, 255, 255);
}

void TestOfdColorSpaces::picturesFollowTheProfileThatTheyCarry()
{
    QFETCH(QByteArray, picture);
    QFETCH(QColor, expected);
    OfdFile file = OfdFile::WithPage("<ofd:ImageObject ID=\"1\" ResourceID=\"40\" Boundary=\"10 10 40 40\" "
                                     "CTM=\"40 0 0 40 0 0\"/>");
    file.Resources("<ofd:MultiMedias><ofd:MultiMedia ID=\"40\" Type=\"Image\"><ofd:MediaFile>a.dat</ofd:MediaFile>"
                   "</ofd:MultiMedia></ofd:MultiMedias>");
    file.Set(QStringLiteral("Doc_0/Res/a.dat"), picture);
    const QColor found = ColourAt(PaintFile(file), 30, 30);
    QVERIFY2(IsNear(found, expected, 3), qPrintable(found.name()));
    const QColor small = ofd::DecodeImage(picture, {2, picture.size(), {}}).pixelColor(3, 3); // as for a small view
    QVERIFY2(IsNear(small, expected, 3), qPrintable(small.name()));
}

void TestOfdColorSpaces::aProfileLeavesTransparencyAlone()
{
    QColor half(128, 0, 255);
    half.setAlpha(128);
    QImage image(8, 8, QImage::Format_ARGB32);
    image.fill(half);
    const auto colors = ofd::PictureColors::FromProfile(samples::LinearRgbProfile());
    QVERIFY(colors);
    colors->Convert(image);
    QCOMPARE(image.pixelColor(3, 3).alpha(), 128);
    QVERIFY(qAbs(image.pixelColor(3, 3).red() - 188) <= 2);
}

void TestOfdColorSpaces::brokenProfilesOfPicturesAreToldAndLeaveThePicture()
{
    ofd::ProblemLog log;
    const ofd::ProblemScope scope(log, QStringLiteral("picture"));
    const QByteArray whole = samples::ProfiledPng(QColor(128, 0, 255), samples::LinearRgbProfile().left(200));
    QCOMPARE(ofd::DecodeImage(whole).pixelColor(3, 3), QColor(128, 0, 255));
    QCOMPARE(log.GetProblems().size(), size_t(1));
    QVERIFY(log.GetProblems().front().kind == ofd::ProblemKind::BadValue);
}

void TestOfdColorSpaces::profilesOfPicturesAreFoundOnlyWhole()
{
    const QByteArray profile = samples::LinearRgbProfile();
    for (const QByteArray& picture : {samples::ProfiledPng(Qt::red, profile), samples::ProfiledJpeg(Qt::red, profile),
                                      samples::ProfiledTiff(Qt::red, profile)}) {
        QCOMPARE(ofd::EmbeddedProfile(picture), profile);
        for (int length = 0; length < picture.size(); length += 7) {
            const QByteArray part = ofd::EmbeddedProfile(picture.left(length));
            QVERIFY(part.isEmpty() || part == profile);
        }
    }
    QVERIFY(ofd::EmbeddedProfile(samples::ProfiledPng(Qt::red, {})).isEmpty());
    // A few kilobytes that unpack to more than any profile has.
    const QByteArray endless(64 << 20, '\0');
    QVERIFY(ofd::EmbeddedProfile(samples::ProfiledPng(Qt::red, endless)).isEmpty());
}

TETO_TEST_MAIN(TestOfdColorSpaces)

#include "test_ofd_color_spaces.moc"
