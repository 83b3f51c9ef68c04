#include "starved_memory.h"

#include <frame/document/ig_page.h>
#include <frame/document/payloads.h>
#include <frame/document/text_source.h>
#include <frame/document/tree_node.h>
#include <ofd/ofd_document.h>
#include <ofd/render/image_decoder.h>
#include <tests/ofd/document/description.h>
#include <tests/ofd/document/page_painting.h>
#include <tests/support/test_main.h>

#include <QBuffer>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <functional>
#include <limits>
#include <new>

namespace {

constexpr int Never = std::numeric_limits<int>::max();

QByteArray NoisyPicture(const char* format)
{
    QImage image(300, 300, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(x * 7 % 256, y * 11 % 256, x * y % 256));
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

// A document whose parts, trees, page and picture all need large blocks.
QString LargeFile(const QTemporaryDir& folder)
{
    QByteArray objects =
        "<ofd:ImageObject ID=\"5000\" ResourceID=\"40\" Boundary=\"50 50 40 40\" CTM=\"40 0 0 40 0 0\"/>";
    QByteArray entries;
    for (int i = 0; i < 1500; ++i) {
        objects += FilledSquare(10, 10, "Value=\"255 0 0\"");
        entries +=
            "<ofd:OutlineElem Title=\"an entry of the outline\"><ofd:Actions><ofd:Action Event=\"CLICK\"><ofd:Goto>"
            "<ofd:Dest Type=\"Fit\" PageID=\"1\"/></ofd:Goto></ofd:Action></ofd:Actions></ofd:OutlineElem>";
    }
    objects += TextObject("", "<ofd:TextCode X=\"0\" Y=\"5\">words</ofd:TextCode>");
    OfdFile file = OfdFile::WithPage(objects);
    file.Tail("<ofd:Outlines>" + entries + "</ofd:Outlines>");
    file.Resources(FontResource +
                   "<ofd:MultiMedias><ofd:MultiMedia ID=\"40\" Type=\"Image\"><ofd:MediaFile>noise.jpg</ofd:MediaFile>"
                   "</ofd:MultiMedia></ofd:MultiMedias>");
    file.Set(QStringLiteral("Doc_0/noise.jpg"), NoisyPicture("jpeg"));
    return file.Write(folder.filePath(QStringLiteral("large.ofd")));
}

std::unique_ptr<ofd::OfdDocument> OpenLarge(const QString& path)
{
    ofd::OpenResult opened = ofd::OfdDocument::Open(path);
    if (!opened)
        qFatal("%s", qPrintable(opened.error));
    return std::move(opened.document);
}

bool TellsOfMemory(const QString& error)
{
    return error.contains(QLatin1String("not enough memory"));
}

bool HasToldOfMemory(const ofd::OfdDocument& document)
{
    const std::vector<ofd::Problem> problems = document.GetProblems();
    return std::any_of(problems.begin(), problems.end(),
                       [](const ofd::Problem& problem) { return TellsOfMemory(problem.text); });
}

} // namespace

// Whatever runs out of memory tells so, and is as good as before when there is memory again.
class TestMemoryRunsOut : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void openingTells();
    void paintingTells();
    void aPictureIsNotBrokenForWantOfMemory_data();
    void aPictureIsNotBrokenForWantOfMemory();
    void readingTextTells();
    void savingTellsAndLeavesTheFileAlone();

private:
    // Does `work` with each large block refused, alone and with all behind it; between, `check` looks at what came of
    // it. How often anything was refused.
    int Starve(const std::function<void()>& prepare, const std::function<void()>& work,
               const std::function<void(bool wasRefused)>& check);

    QTemporaryDir folder;
    QString path;
    QString description; // of the document
    QImage picture;      // of its page
};

void TestMemoryRunsOut::initTestCase()
{
    if (!StarvedMemory::CanRunOut())
        QSKIP("a sanitizer has its own memory");
    path = LargeFile(folder);
    const auto document = OpenLarge(path);
    description = DescribeDocument(*document);
    G_RenderRequest request;
    request.pixelsPerMm = PixelsPerMm;
    picture = document->Renderer()->RenderPage(request).image;
    QVERIFY(!picture.isNull() && description.contains(QLatin1String("words")));
}

int TestMemoryRunsOut::Starve(const std::function<void()>& prepare, const std::function<void()>& work,
                              const std::function<void(bool)>& check)
{
    prepare();
    StarvedMemory::RefuseFrom(Never, true);
    work();
    const int blocks = StarvedMemory::Relent();
    check(false);
    for (int first = 1; first <= blocks; ++first) {
        for (const bool isForGood : {false, true}) {
            prepare();
            StarvedMemory::RefuseFrom(first, isForGood);
            work();
            StarvedMemory::Relent();
            check(true);
            if (QTest::currentTestFailed())
                qFatal("when block %d of %d is refused%s", first, blocks, isForGood ? " for good" : "");
        }
    }
    return blocks;
}

void TestMemoryRunsOut::openingTells()
{
    ofd::OpenResult opened;
    const int blocks = Starve([&] { opened = {}; }, [&] { opened = ofd::OfdDocument::Open(path); },
                              [&](bool wasRefused) {
                                  QVERIFY(wasRefused || opened);
                                  QVERIFY2(opened || TellsOfMemory(opened.error), qPrintable(opened.error));
                                  if (opened)
                                      QCOMPARE(DescribeDocument(*opened.document), description);
                              });
    QVERIFY(blocks > 0);
    QVERIFY(ofd::OfdDocument::Open(path));
}

void TestMemoryRunsOut::paintingTells()
{
    std::unique_ptr<ofd::OfdDocument> document;
    G_RenderResult result;
    G_RenderRequest request;
    request.pixelsPerMm = PixelsPerMm;
    int failures = 0;
    const int blocks =
        Starve([&] { document = OpenLarge(path); }, [&] { result = document->Renderer()->RenderPage(request); },
               [&](bool wasRefused) {
                   QVERIFY(wasRefused || result.image == picture);
                   QVERIFY2(result.error.isEmpty() || TellsOfMemory(result.error), qPrintable(result.error));
                   QVERIFY(result.image == picture || TellsOfMemory(result.error) || HasToldOfMemory(*document));
                   failures += result.image == picture ? 0 : 1;
                   result = document->Renderer()->RenderPage(request); // now there is memory
                   QVERIFY(result.error.isEmpty());
                   QCOMPARE(result.image, picture);
               });
    QVERIFY(blocks > 3);
    QVERIFY(failures > 3);
}

void TestMemoryRunsOut::aPictureIsNotBrokenForWantOfMemory_data()
{
    QTest::addColumn<QByteArray>("bytes");
    for (const char* format : {"jpeg", "png", "bmp"})
        QTest::newRow(format) << NoisyPicture(format);
}

void TestMemoryRunsOut::aPictureIsNotBrokenForWantOfMemory()
{
    QFETCH(QByteArray, bytes);
    bool hasThrown = false;
    StarvedMemory::RefuseFrom(1, true);
    try {
        ofd::DecodeImage(bytes);
    } catch (const std::bad_alloc&) {
        hasThrown = true;
    }
    StarvedMemory::Relent();
    QVERIFY(hasThrown);
    QVERIFY(!ofd::DecodeImage(bytes).isNull());
}

void TestMemoryRunsOut::readingTextTells()
{
    const std::atomic<bool> isGivenUp{false};
    std::unique_ptr<ofd::OfdDocument> document;
    std::shared_ptr<const IG_ReadText> text;
    int failures = 0;
    Starve([&] { document = OpenLarge(path); }, [&] { text = document->TextSource()->ReadText(0, isGivenUp); },
           [&](bool wasRefused) {
               QVERIFY(text);
               QVERIFY(wasRefused || text->AllGlyphs().size() == 5);
               failures += text->IsReadable() ? 0 : 1;
               QCOMPARE(HasToldOfMemory(*document), !text->IsReadable());
               text.reset(); // now there is memory
               text = document->TextSource()->ReadText(0, isGivenUp);
               QCOMPARE(text->AllGlyphs().size(), 5);
           });
    QVERIFY(failures > 2);
}

void TestMemoryRunsOut::savingTellsAndLeavesTheFileAlone()
{
    const QString copy = folder.filePath(QStringLiteral("copy.ofd"));
    std::unique_ptr<ofd::OfdDocument> document;
    ofd::DocumentSaveResult saved;
    int failures = 0;
    const auto prepare = [&] {
        QFile::remove(copy);
        QVERIFY(QFile::copy(path, copy));
        document = OpenLarge(copy);
        auto* entry = dynamic_cast<G_OutlineItem*>(document->GetOutlineRoot()->SubNode(7)->data);
        QVERIFY(entry);
        entry->text = "renamed";
    };
    Starve(
        prepare, [&] { saved = document->Save(); },
        [&](bool wasRefused) {
            QVERIFY(wasRefused || saved);
            QVERIFY2(saved || TellsOfMemory(saved.error), qPrintable(saved.error));
            failures += saved ? 0 : 1;
            const QString now = DescribeDocument(*OpenLarge(copy));
            QVERIFY(now == description || now.contains(QLatin1String("renamed")));
            const bool isWritten = now != description;
            QVERIFY(isWritten || !saved);
            const ofd::DocumentSaveResult again = document->Save(); // now there is memory
            QVERIFY2(again || isWritten, qPrintable(again.error));
            QVERIFY(DescribeDocument(*OpenLarge(copy)).contains(QLatin1String("renamed")));
            QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 2); // nothing is left over
        });
    QVERIFY(failures > 2);
}

TETO_TEST_MAIN(TestMemoryRunsOut)

#include "test_memory_runs_out.moc"
