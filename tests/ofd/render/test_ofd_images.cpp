#include <ofd/render/image_decoder.h>
#include <ofd/render/image_painter.h>
#include <samples/picture_kinds.h>
#include <samples/pictures.h>
#include <tests/ofd/document/page_painting.h>
#include <tests/support/test_main.h>

#include <QBuffer>
#include <QImageWriter>
#include <QtTest>

class TestOfdImages : public QObject
{
    Q_OBJECT

private slots:
    void aMaskedImageIsTransparentWhereTheMaskIsBlack();
    void aMaskHidesWhereItIsTransparent();
    void aMaskFinerThanItsPictureKeepsItsEdges();
    void aMaskThatCannotBeReadHidesNothing();
    void aPictureIsNotShownWithoutAMaskThatIsTooMuchWork();
    void aBorderRunsAroundThePicture();
    void bordersHaveRoundCornersAndDashes();
    void bordersCountAsWorkAndTakeEveryPaint();
    void theSubstituteStandsInForWhatCannotBeRead();
    void picturesOfEveryKindAreDecoded_data();
    void picturesOfEveryKindAreDecoded();
    void picturesThatAreTooLargeAreNotDecoded();
    void brokenPicturesAreNoPictures();
    void veryLargePicturesAreAveragedDown_data();
    void veryLargePicturesAreAveragedDown();
    void kindsThatDocumentsDoNotCarryAreNotDecoded();
    void aJpegPictureThatIsGoneOverAgainAndAgainIsNotDecoded();
};

namespace {

QByteArray PngOf(const QSize& size, const QColor& colour)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "PNG");
    return bytes;
}

// Of one bit a pixel, so that it may be very large.
QByteArray WhitePng(const QSize& size)
{
    QImage image(size, QImage::Format_Mono);
    image.fill(1);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "PNG");
    return bytes;
}

// A page with a picture of 40 by 40 mm at (10, 10); resource 40 is `picture`, resource 41 `other`.
QImage PaintPicture(const QByteArray& picture, const QByteArray& other, const QByteArray& attributes,
                    const QByteArray& inside = {})
{
    const auto media = [](const QByteArray& id, const QByteArray& file) {
        return "<ofd:MultiMedia ID=\"" + id + "\" Type=\"Image\"><ofd:MediaFile>" + file +
               "</ofd:MediaFile></ofd:MultiMedia>";
    };
    const QByteArray matrix = attributes.contains("CTM") ? "" : "CTM=\"40 0 0 40 0 0\" ";
    OfdFile file = OfdFile::WithPage("<ofd:ImageObject ID=\"1\" ResourceID=\"40\" Boundary=\"10 10 40 40\" " + matrix +
                                     attributes + ">" + inside + "</ofd:ImageObject>");
    file.Resources("<ofd:MultiMedias>" + media("40", "a.dat") + media("41", "b.dat") + "</ofd:MultiMedias>");
    file.Set(QStringLiteral("Doc_0/Res/a.dat"), picture).Set(QStringLiteral("Doc_0/Res/b.dat"), other);
    return PaintFile(file);
}

} // namespace

void TestOfdImages::aMaskedImageIsTransparentWhereTheMaskIsBlack()
{
    const QImage page = PaintPicture(PngOf(QSize(64, 64), Qt::blue), samples::MaskPng(), "ImageMask=\"41\"");
    QCOMPARE(ColourAt(page, 20, 15), QColor(Qt::white));
    QCOMPARE(ColourAt(page, 40, 15), QColor(Qt::blue));
    QVERIFY(IsNear(ColourAt(page, 20, 30), QColor(127, 127, 255))); // half bright: half there
    QVERIFY(IsNear(ColourAt(page, 40, 30), QColor(127, 127, 255)));
    QCOMPARE(ColourAt(page, 20, 45), QColor(Qt::white));
    QCOMPARE(ColourAt(page, 55, 15), QColor(Qt::white));
}

void TestOfdImages::aMaskHidesWhereItIsTransparent()
{
    const QImage page =
        PaintPicture(PngOf(QSize(64, 64), Qt::black), samples::TransparentMaskPng(), "ImageMask=\"41\" Alpha=\"128\"");
    QVERIFY(IsNear(ColourAt(page, 30, 20), QColor(127, 127, 127))); // the object's own alpha counts too
    QCOMPARE(ColourAt(page, 30, 40), QColor(Qt::white));
}

void TestOfdImages::aMaskFinerThanItsPictureKeepsItsEdges()
{
    const QImage page = PaintPicture(PngOf(QSize(1, 1), Qt::red), samples::MaskPng(), "ImageMask=\"41\"");
    QCOMPARE(ColourAt(page, 28, 15), QColor(Qt::white));
    QCOMPARE(ColourAt(page, 32, 15), QColor(Qt::red));
}

void TestOfdImages::aMaskThatCannotBeReadHidesNothing()
{
    const QByteArray black = PngOf(QSize(8, 8), Qt::black);
    QCOMPARE(InkBox(PaintPicture(black, "no picture", "ImageMask=\"41\"")), QRectF(10, 10, 40, 40));
    QCOMPARE(InkBox(PaintPicture(black, "no picture", "ImageMask=\"99\"")), QRectF(10, 10, 40, 40));
}

void TestOfdImages::aPictureIsNotShownWithoutAMaskThatIsTooMuchWork()
{
    const QByteArray black = PngOf(QSize(8, 8), Qt::black);
    const QByteArray mask = WhitePng(QSize(12'000, 12'000));
    QVERIFY(!ofd::DecodeImage(mask).isNull()); // it could be decoded
    QVERIFY(InkBox(PaintPicture(black, mask, "ImageMask=\"41\"")).isEmpty());
    QCOMPARE(InkBox(PaintPicture(black, mask, {})), QRectF(10, 10, 40, 40));
}

void TestOfdImages::aBorderRunsAroundThePicture()
{
    const QByteArray white = PngOf(QSize(8, 8), Qt::white);
    const QImage page = PaintPicture(white, {}, {}, "<ofd:Border LineWidth=\"4\"/>");
    QCOMPARE(InkBox(page), QRectF(8, 8, 44, 44)); // half of its width lies outside
    QCOMPARE(ColourAt(page, 11.5, 30), QColor(Qt::black));
    QCOMPARE(ColourAt(page, 12.5, 30), QColor(Qt::white));
    const QImage red =
        PaintPicture(white, {}, {}, "<ofd:Border LineWidth=\"4\"><ofd:BorderColor Value=\"255 0 0\"/></ofd:Border>");
    QCOMPARE(ColourAt(red, 30, 10), QColor(Qt::red));
    // A picture somewhat larger than its boundary is cut, but not its border to half.
    const QImage larger = PaintPicture(white, {}, "CTM=\"41 0 0 41 -0.5 -0.5\"", "<ofd:Border LineWidth=\"4\"/>");
    QCOMPARE(InkBox(larger), QRectF(7.5, 7.5, 45, 45));
    const QImage cut = PaintPicture(white, {}, "CTM=\"60 0 0 41 0 -0.5\"", "<ofd:Border LineWidth=\"4\"/>");
    QCOMPARE(InkBox(cut), QRectF(8, 8, 44, 44));
}

void TestOfdImages::bordersHaveRoundCornersAndDashes()
{
    const QByteArray black = PngOf(QSize(8, 8), Qt::black);
    const QImage page = PaintPicture(black, {}, {},
                                     "<ofd:Border LineWidth=\"1\" HorizonalCornerRadius=\"12\" "
                                     "VerticalCornerRadius=\"12\"><ofd:BorderColor Value=\"255 0 0\"/></ofd:Border>");
    QCOMPARE(ColourAt(page, 11, 11), QColor(Qt::white)); // the picture does not stick out at the corner
    QCOMPARE(ColourAt(page, 20, 20), QColor(Qt::black));
    QVERIFY(IsNear(ColourAt(page, 10 + 12 * (1 - 0.70711), 10 + 12 * (1 - 0.70711)), Qt::red, 60));
    const QImage dashed = PaintPicture(PngOf(QSize(8, 8), Qt::white), {}, {},
                                       "<ofd:Border LineWidth=\"2\" DashPattern=\"5 5\" DashOffset=\"0\"/>");
    QCOMPARE(ColourAt(dashed, 12.5, 10), QColor(Qt::black));
    QCOMPARE(ColourAt(dashed, 17.5, 10), QColor(Qt::white));
}

void TestOfdImages::bordersCountAsWorkAndTakeEveryPaint()
{
    const QByteArray white = PngOf(QSize(8, 8), Qt::white);
    // A picture that leaves little, and thousands of dashes, each as wide as the page.
    const QByteArray large = WhitePng(QSize(10'000, 10'000));
    const QByteArray dashes = "LineWidth=\"160\" DashPattern=\"0.0085 0.0085\"";
    QVERIFY(InkBox(PaintPicture(large, {}, {}, "<ofd:Border " + dashes + "/>")).isEmpty());
    QVERIFY(!InkBox(PaintPicture(large, {}, {}, "<ofd:Border LineWidth=\"4\"/>")).isEmpty());
    const QImage shaded = PaintPicture(
        white, {}, {},
        "<ofd:Border LineWidth=\"4\"><ofd:BorderColor><ofd:AxialShd StartPoint=\"0 0\" EndPoint=\"40 0\">"
        "<ofd:Segment><ofd:Color Value=\"255 0 0\"/></ofd:Segment><ofd:Segment><ofd:Color Value=\"0 0 255\"/>"
        "</ofd:Segment></ofd:AxialShd></ofd:BorderColor></ofd:Border>");
    QVERIFY(IsNear(ColourAt(shaded, 30, 10), QColor(127, 0, 127), 4));
    QVERIFY(IsNear(ColourAt(shaded, 20, 50), QColor(191, 0, 64), 4));
    QCOMPARE(ColourAt(shaded, 30, 30), QColor(Qt::white));
}

void TestOfdImages::theSubstituteStandsInForWhatCannotBeRead()
{
    const QByteArray black = PngOf(QSize(8, 8), Qt::black);
    const QByteArray red = PngOf(QSize(8, 8), Qt::red);
    QCOMPARE(ColourAt(PaintPicture("broken", red, "Substitution=\"41\""), 30, 30), QColor(Qt::red));
    QCOMPARE(ColourAt(PaintPicture(black, red, "Substitution=\"41\""), 30, 30), QColor(Qt::black));
    QCOMPARE(ColourAt(PaintPicture("broken", "broken", "Substitution=\"41\""), 30, 30), QColor(Qt::white));
}

void TestOfdImages::picturesOfEveryKindAreDecoded_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("PNG") << samples::QuadrantsPng();
    QTest::newRow("JPEG") << samples::QuadrantsJpeg();
    QTest::newRow("BMP") << samples::QuadrantsBmp();
    QTest::newRow("GIF") << samples::QuadrantsGif();
    QTest::newRow("TIFF") << samples::QuadrantsTiff();
    QTest::newRow("TIFF of inks") << samples::QuadrantsInkTiff();
    QTest::newRow("JPEG of inks") << samples::QuadrantsInkJpeg(false);
    QTest::newRow("JPEG of inks the other way round") << samples::QuadrantsInkJpeg(true);
}

void TestOfdImages::picturesOfEveryKindAreDecoded()
{
    QFETCH(QByteArray, bytes);
    const QImage page = PaintPicture(bytes, {}, {});
    QVERIFY(IsNear(ColourAt(page, 18, 18), QColor(220, 40, 40), 8));
    QVERIFY(IsNear(ColourAt(page, 42, 18), QColor(40, 160, 60), 8));
    QVERIFY(IsNear(ColourAt(page, 18, 42), QColor(40, 80, 220), 8));
    QVERIFY(IsNear(ColourAt(page, 42, 42), QColor(240, 200, 40), 8));
}

void TestOfdImages::picturesThatAreTooLargeAreNotDecoded()
{
    QByteArray bmp = samples::QuadrantsBmp();
    QVERIFY(!ofd::DecodeImage(bmp).isNull());
    bmp.replace(18, 8, QByteArray::fromHex("409c0000409c0000")); // 40,000 by 40,000
    QVERIFY(ofd::DecodeImage(bmp).isNull());
    QByteArray inks = samples::QuadrantsInkJpeg(true);
    const int frame = inks.indexOf("\xff\xc0");
    QVERIFY(frame > 0);
    inks.replace(frame + 5, 4, QByteArray::fromHex("fff0fff0"));
    QVERIFY(ofd::DecodeImage(inks).isNull());
}

void TestOfdImages::brokenPicturesAreNoPictures()
{
    for (const QByteArray& whole : {samples::QuadrantsInkJpeg(true), samples::QuadrantsGif(), samples::QuadrantsTiff(),
                                    samples::QuadrantsBmp()}) {
        QVERIFY(!ofd::DecodeImage(whole).isNull());
        QVERIFY(ofd::DecodeImage(whole.left(16)).isNull());
        for (int length = 0; length < whole.size(); length += 97) { // whatever comes of it, it comes
            const QImage part = ofd::DecodeImage(whole.left(length));
            QVERIFY(part.isNull() || part.size() == QSize(64, 64));
        }
    }
}

void TestOfdImages::veryLargePicturesAreAveragedDown_data()
{
    QTest::addColumn<QImage::Format>("format");
    QTest::newRow("one bit") << QImage::Format_Mono;
    QTest::newRow("eight bits") << QImage::Format_Indexed8;
    QTest::newRow("true colours") << QImage::Format_RGB32;
    QTest::newRow("with transparency") << QImage::Format_ARGB32_Premultiplied;
}

void TestOfdImages::veryLargePicturesAreAveragedDown()
{
    QFETCH(QImage::Format, format);
    // Black above white, with a gray band of black and white rows by turns between them.
    QImage large(3600, 4000, QImage::Format_RGB32);
    large.fill(Qt::white);
    QPainter painter(&large);
    painter.fillRect(0, 0, 3600, 1000, Qt::black);
    for (int y = 1000; y < 3000; y += 2)
        painter.fillRect(0, y, 3600, 1, Qt::black);
    painter.end();
    const QImage small = ofd::ShrunkTo(large.convertToFormat(format), QSizeF(36.2, 40));
    QCOMPARE(small.size(), QSize(37, 40));
    for (int y = 0; y < small.height(); ++y) {
        const int expected = y < 10 ? 0 : y < 30 ? 127 : 255;
        QVERIFY2(qAbs(qGray(small.pixel(18, y)) - expected) <= 3, qPrintable(QString::number(y)));
        QCOMPARE(qAlpha(small.pixel(18, y)), 255);
    }
    QCOMPARE(ofd::ShrunkTo(large, QSizeF(3000, 3000)).size(), large.size()); // not much larger: left as it is
}

void TestOfdImages::kindsThatDocumentsDoNotCarryAreNotDecoded()
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(Qt::red);
    QVERIFY(image.save(&buffer, "XPM"));
    QVERIFY(!QImage::fromData(bytes).isNull());
    QVERIFY(ofd::DecodeImage(bytes).isNull());
    QVERIFY(ofd::DecodeImage("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"8\" height=\"8\"/>").isNull());
}

void TestOfdImages::aJpegPictureThatIsGoneOverAgainAndAgainIsNotDecoded()
{
    QImage image(64, 64, QImage::Format_RGB32);
    image.fill(Qt::red);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "jpeg");
    writer.setProgressiveScanWrite(true);
    QVERIFY(writer.write(image));
    const QByteArray whole = buffer.data();
    const int last = whole.lastIndexOf("\xff\xda");
    QVERIFY(last > 0 && whole.endsWith("\xff\xd9"));
    const QByteArray scan = whole.mid(last, whole.size() - 2 - last);
    const auto repeated = [&](int times) { return whole.left(last) + scan.repeated(times) + "\xff\xd9"; };
    QCOMPARE(ofd::DecodeImage(repeated(20)).size(), image.size());
    QCOMPARE(QImage::fromData(repeated(300)).size(), image.size()); // nothing else would stop it
    QVERIFY(ofd::DecodeImage(repeated(300)).isNull());
    // Words of a comment that look like scans are none.
    const QByteArray comment = QByteArray("\xff\xfe\x04\x02") + QByteArray("\xff\xda").repeated(512);
    QCOMPARE(ofd::DecodeImage(whole.left(2) + comment + whole.mid(2)).size(), image.size());
}

TETO_TEST_MAIN(TestOfdImages)

#include "test_ofd_images.moc"
