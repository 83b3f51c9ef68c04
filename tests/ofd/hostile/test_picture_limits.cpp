#include <ofd/package/limits.h>
#include <ofd/package/package.h>
#include <ofd/render/image_decoder.h>
#include <ofd/render/image_store.h>
#include <ofd/render/jpeg_decoder.h>
#include <samples/picture_kinds.h>
#include <tests/ofd/document/ofd_file.h>
#include <tests/support/test_main.h>

#include <QBuffer>
#include <QImageWriter>
#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

#include <algorithm>
#include <new>

namespace {

// A picture without two rows alike, so that it fills its file.
QByteArray PictureBytes(const char* format, const QSize& size, bool isProgressive = false)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, qRgb(x * 7 % 256, (x ^ y) % 256, x * y % 256));
    }
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    writer.setProgressiveScanWrite(isProgressive);
    if (!writer.write(image))
        qFatal("%s", qPrintable(writer.errorString()));
    return buffer.data();
}

// A JPEG file that says it is larger than it is: what is missing is gray.
QByteArray Claiming(QByteArray jpeg, int width, int height)
{
    const int frame = std::max(jpeg.indexOf("\xff\xc0"), jpeg.indexOf("\xff\xc2"));
    if (frame < 0)
        qFatal("no frame");
    qToBigEndian(quint16(height), jpeg.data() + frame + 5);
    qToBigEndian(quint16(width), jpeg.data() + frame + 7);
    return jpeg;
}

// The file up to its second scan.
QByteArray WithOneScan(const QByteArray& jpeg)
{
    const int second = jpeg.indexOf("\xff\xda", jpeg.indexOf("\xff\xda") + 2);
    return jpeg.left(second) + "\xff\xd9";
}

// So many scans in all, each of them the last one of the file.
QByteArray WithScans(const QByteArray& jpeg, int count)
{
    const int last = jpeg.lastIndexOf("\xff\xda");
    const QByteArray scan = jpeg.mid(last, jpeg.size() - 2 - last);
    return jpeg.left(last) + scan.repeated(count - jpeg.left(last).count("\xff\xda")) + "\xff\xd9";
}

} // namespace

// Pictures that ask for more than they give, and pictures that nobody waits for any more.
class TestPictureLimits : public QObject
{
    Q_OBJECT

private slots:
    void aLargeJpegMustTakeALittleOfItsFile();
    void aLargeJpegOfInksMustTakeALittleOfItsFile();
    void aJpegThatIsKeptWhileItIsReadMayBeOnlySoLarge_data();
    void aJpegThatIsKeptWhileItIsReadMayBeOnlySoLarge();
    void theLargerAJpegTheFewerTimesItIsGoneOver();
    void decodingIsGivenUpInsideAPicture_data();
    void decodingIsGivenUpInsideAPicture();
    void aPictureThatWasGivenUpIsDecodedForWhoWantsItLater();
};

void TestPictureLimits::aLargeJpegMustTakeALittleOfItsFile()
{
    const QByteArray jpeg = Claiming(PictureBytes("jpeg", QSize(64, 64)), 10'000, 9'000);
    const qint64 bytes = qint64(10'000) * 9'000 * 4;
    QVERIFY(bytes > ofd::limits::FreeImageBytes && bytes < ofd::limits::MaxImageBytes);
    QVERIFY(ofd::DecodeImage(jpeg, {8, bytes / ofd::limits::MaxImageRatio - 1, {}}).isNull());
    QCOMPARE(ofd::DecodeImage(jpeg, {8, bytes / ofd::limits::MaxImageRatio, {}}).size(), QSize(10'000, 9'000));
    QCOMPARE(ofd::DecodeImage(jpeg, {1, 1000, {}}).size(), QSize(1250, 1125)); // what is decoded is small
    QVERIFY(ofd::DecodeImage(Claiming(jpeg, 15'000, 14'000), {1, jpeg.size(), {}}).isNull()); // but all of it is read
}

void TestPictureLimits::aLargeJpegOfInksMustTakeALittleOfItsFile()
{
    const QByteArray inks = samples::QuadrantsInkJpeg(false);
    const QSize size = ofd::DecodeImage(inks).size();
    ofd::JpegOrder order;
    order.mostBytes = qint64(size.width()) * size.height() * 4;
    QCOMPARE(ofd::DecodeInkJpeg(inks, nullptr, order).size(), size);
    order.mostBytes -= 1;
    QVERIFY(ofd::DecodeInkJpeg(inks, nullptr, order).isNull());
}

void TestPictureLimits::aJpegThatIsKeptWhileItIsReadMayBeOnlySoLarge_data()
{
    QTest::addColumn<bool>("isProgressive");
    QTest::addColumn<int>("height");
    QTest::addColumn<bool>("isDecoded");
    QTest::newRow("kept, small enough") << true << 7'900 << true;
    QTest::newRow("kept, too large") << true << 8'100 << false;
    QTest::newRow("read row by row") << false << 8'100 << true;
}

void TestPictureLimits::aJpegThatIsKeptWhileItIsReadMayBeOnlySoLarge()
{
    QFETCH(bool, isProgressive);
    QFETCH(int, height);
    QFETCH(bool, isDecoded);
    QByteArray jpeg = PictureBytes("jpeg", QSize(64, 64), isProgressive);
    if (isProgressive) // it is kept even if there is nothing more to come
        jpeg = WithOneScan(jpeg);
    jpeg = Claiming(jpeg, 12'000, height);
    QVERIFY(!ofd::HasTooManyScans(jpeg));
    QCOMPARE(!ofd::DecodeImage(jpeg, {1, 10'000'000, {}}).isNull(), isDecoded);
}

void TestPictureLimits::theLargerAJpegTheFewerTimesItIsGoneOver()
{
    const QByteArray jpeg = PictureBytes("jpeg", QSize(64, 64), true);
    QVERIFY(!ofd::HasTooManyScans(WithScans(jpeg, ofd::limits::MaxJpegScans)));
    QVERIFY(ofd::HasTooManyScans(WithScans(jpeg, ofd::limits::MaxJpegScans + 1)));
    const QByteArray large = Claiming(jpeg, 10'000, 9'000);
    const int most = int(ofd::limits::MaxScannedPixelsInAll / (10'000 * 9'000));
    QVERIFY(!ofd::HasTooManyScans(WithScans(large, most)));
    QVERIFY(ofd::HasTooManyScans(WithScans(large, most + 1)));
}

void TestPictureLimits::decodingIsGivenUpInsideAPicture_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QSize size(800, 800);
    QTest::newRow("jpeg") << PictureBytes("jpeg", size);
    QTest::newRow("progressive jpeg") << PictureBytes("jpeg", size, true);
    QTest::newRow("png") << PictureBytes("png", size);
    QTest::newRow("bmp") << PictureBytes("bmp", size);
}

void TestPictureLimits::decodingIsGivenUpInsideAPicture()
{
    QFETCH(QByteArray, bytes);
    int asked = 0;
    QCOMPARE(ofd::DecodeImage(bytes, {8, bytes.size(), [&asked] { return ++asked < 0; }}).size(), QSize(800, 800));
    QVERIFY(asked > 20);
    const int half = asked / 2;
    asked = 0;
    QVERIFY(ofd::DecodeImage(bytes, {8, bytes.size(), [&] { return ++asked > half; }}).isNull());
    QVERIFY2(asked <= half + 2, qPrintable(QString::number(asked - half))); // it ends where it is told to
    // What is asked may run out of memory, over frames that are not to be left by that.
    asked = 0;
    try {
        QVERIFY(ofd::DecodeImage(bytes, {8, bytes.size(),
                                         [&]() -> bool {
                                             if (++asked > half)
                                                 throw std::bad_alloc();
                                             return false;
                                         }})
                    .isNull());
    } catch (const std::bad_alloc&) {
        QVERIFY(asked > half);
    }
}

void TestPictureLimits::aPictureThatWasGivenUpIsDecodedForWhoWantsItLater()
{
    const QTemporaryDir folder;
    OfdFile file = OfdFile::WithPages(1);
    file.Set(QStringLiteral("Doc_0/a.jpg"), PictureBytes("jpeg", QSize(300, 300)));
    const auto package = ofd::Package::Open(file.Write(folder.filePath(QStringLiteral("a.ofd"))));
    QVERIFY(package);
    ofd::ImageStore store;
    const QString part = QStringLiteral("Doc_0/a.jpg");
    int asked = 0;
    QVERIFY(store.GetImage(*package, part, QSizeF(), [&asked] { return ++asked > 5; }).isNull());
    QVERIFY(asked > 5);
    QCOMPARE(store.GetImage(*package, part).size(), QSize(300, 300));
}

TETO_TEST_MAIN(TestPictureLimits)

#include "test_picture_limits.moc"
