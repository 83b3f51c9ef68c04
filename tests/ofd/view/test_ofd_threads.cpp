// Several threads paint a document while the main thread reads, hides, edits and saves it.
#include <tests/ofd/document/page_painting.h>
#include <tests/ofd/document/sample_files.h>
#include <tests/support/test_main.h>

#include <frame/document/text_source.h>
#include <ofd/model/document_store.h>
#include <ofd/ofd_document.h>
#include <ofd/render/image_store.h>
#include <ofd/render/page_renderer.h>

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <random>
#include <thread>
#include <vector>

namespace {

constexpr int painterCount = 4;

// A copy of a sample that may be written to.
QString CopyOf(const QString& sample, const QTemporaryDir& folder)
{
    const QString path = folder.filePath(sample + QStringLiteral(".ofd"));
    if (!QFile::copy(SamplePath(sample), path))
        qFatal("the sample cannot be copied");
    return path;
}

// Threads that paint pages and parts of pages, some of them given up, until they are stopped.
class Painters
{
public:
    Painters(IG_PageRenderer& renderer, int pageCount)
        : renderer(renderer)
        , pageCount(pageCount)
    {
        for (int i = 0; i < painterCount; ++i)
            threads.emplace_back([this, i] { Paint(unsigned(i)); });
    }
    ~Painters()
    {
        isStopped = true;
        for (std::thread& thread : threads)
            thread.join();
    }
    int PaintedPages() const { return paintedPages; }
    int Failures() const { return failures; }

private:
    void Paint(unsigned seed)
    {
        std::mt19937 random(seed);
        const auto upTo = [&random](int most) { return int(random() % unsigned(most)); };
        while (!isStopped) {
            G_RenderRequest request;
            request.pageIndex = upTo(pageCount);
            request.pixelsPerMm = 1 + upTo(4);
            if (upTo(2) == 0)
                request.region = QRect(upTo(200), upTo(200), 1 + upTo(300), 1 + upTo(300));
            request.withAnnotations = upTo(3) != 0;
            request.cancelled = std::make_shared<std::atomic<bool>>(upTo(8) == 0);
            const G_RenderResult result = renderer.RenderPage(request);
            renderer.PageSizeMm(request.pageIndex);
            if (result.image.isNull() != request.cancelled->load() || !result.error.isEmpty())
                ++failures;
            ++paintedPages;
        }
    }

    IG_PageRenderer& renderer;
    const int pageCount;
    std::atomic<bool> isStopped{false};
    std::atomic<int> paintedPages{0};
    std::atomic<int> failures{0};
    std::vector<std::thread> threads;
};

ofd::DocumentStore& StoreOf(IG_Document& document)
{
    return dynamic_cast<ofd::OfdPageRenderer*>(document.Renderer())->GetStore();
}

// Everything that a pane or a tool reads of a page.
void ReadPage(IG_Document& document, int index)
{
    IG_Page* page = document.GetPage(index); // not owned
    QVERIFY(page && page->Load());
    IG_TextPage* text = page->GetTextPage(); // not owned
    QVERIFY(text && text->Parse(0));
    text->AllRuns();
    page->LoadAnnots();
    for (int i = 0; i < page->GetAnnotCount(); ++i)
        page->GetAnnotAt(i)->GetRemark();
    G_PageObjRef objects;
    page->CollectObjectsInRect(CCA_GRect(0, 0, 210, 297), &objects);
    document.ReleasePage(index, 0);
}

// Hides and shows what can be hidden.
void ToggleVisibility(IG_Document& document, int index, bool isShown)
{
    IG_Page* page = document.GetPage(index); // not owned
    QVERIFY(page && page->Load());
    for (int i = 0; i < page->GetLayerCount(); ++i)
        page->GetLayerAt(i)->SetVisible(isShown);
    page->LoadAnnots();
    for (int i = 0; i < page->GetAnnotCount(); ++i)
        page->GetAnnotAt(i)->SetVisible(isShown, false);
    for (int i = 0; i < document.GetTemplateCount(); ++i)
        document.SetTemplateVisible(document.GetTemplateIdAt(i), isShown);
    document.ReleasePage(index, 0);
}

// Changes the first remark of the document, if there is any annotation.
bool ChangeRemark(IG_Document& document, int round)
{
    for (int index = 0; index < document.GetPageCount(); ++index) {
        IG_Page* page = document.GetPage(index); // not owned
        page->LoadAnnots();
        if (page->GetAnnotCount() == 0)
            continue;
        page->GetAnnotAt(0)->SetRemark(QByteArray("round " + QByteArray::number(round)).constData());
        return true;
    }
    return false;
}

class TestOfdThreads : public QObject
{
    Q_OBJECT

private slots:
    void pagesArePaintedWhileTheyAreReadHiddenEditedAndSaved();
    void threadsThatWantOnePageShareOneReadingOfIt();
    void threadsThatWantOnePictureShareOneDecoding();
    void aPaintingOutlivesItsDocument();
    void allThreadsPaintTheSamePicture();
    void textIsReadByThreadsWhileItIsHiddenAndShown();
};

void TestOfdThreads::pagesArePaintedWhileTheyAreReadHiddenEditedAndSaved()
{
    const QTemporaryDir folder;
    const ofd::OpenResult opened = ofd::OfdDocument::Open(CopyOf(QStringLiteral("tour"), folder));
    QVERIFY(opened);
    ofd::OfdDocument& document = *opened.document;
    QVERIFY(document.CreateBookmarkRoot());
    Painters painters(*document.Renderer(), document.GetPageCount());
    for (int round = 0; round < 6; ++round) {
        for (int page = 0; page < document.GetPageCount(); ++page)
            ReadPage(document, page);
        ToggleVisibility(document, round % document.GetPageCount(), round % 2 != 0);
        QVERIFY(ChangeRemark(document, round));
        const ofd::DocumentSaveResult saved = document.Save();
        QVERIFY2(saved, qPrintable(saved.error));
    }
    QTRY_VERIFY_WITH_TIMEOUT(painters.PaintedPages() >= 40, 120'000);
    QCOMPARE(painters.Failures(), 0);
}

void TestOfdThreads::threadsThatWantOnePageShareOneReadingOfIt()
{
    for (int round = 0; round < 10; ++round) {
        const ofd::OpenResult opened = ofd::OfdDocument::Open(SamplePath(QStringLiteral("tour")));
        QVERIFY(opened);
        ofd::DocumentStore& store = StoreOf(*opened.document);
        std::vector<std::shared_ptr<const ofd::PageContent>> contents(8);
        std::vector<std::thread> threads;
        for (auto& content : contents)
            threads.emplace_back([&content, &store] { content = store.GetPageContent(2).content; });
        for (std::thread& thread : threads)
            thread.join();
        for (const auto& content : contents)
            QCOMPARE(content.get(), contents.front().get());
    }
}

void TestOfdThreads::threadsThatWantOnePictureShareOneDecoding()
{
    const ofd::OpenResult opened = ofd::OfdDocument::Open(SamplePath(QStringLiteral("tour")));
    QVERIFY(opened);
    ofd::DocumentStore& store = StoreOf(*opened.document);
    QStringList parts;
    const auto resources = store.GetResources();
    for (const ofd::MediaResource& media : resources->media)
        parts.append(media.part);
    QVERIFY(!parts.isEmpty());
    for (const QString& part : qAsConst(parts)) {
        std::vector<QImage> images(6);
        std::vector<std::thread> threads;
        for (QImage& image : images)
            threads.emplace_back([&] { image = store.GetImages().GetImage(*store.GetPackage(), part); });
        for (std::thread& thread : threads)
            thread.join();
        for (const QImage& image : images)
            QVERIFY(image.isNull() || image.cacheKey() == images.front().cacheKey());
    }
}

void TestOfdThreads::aPaintingOutlivesItsDocument()
{
    // What paints holds what it reads; only the renderer itself must still be there when it begins.
    ofd::OpenResult opened = ofd::OfdDocument::Open(SamplePath(QStringLiteral("tour")));
    QVERIFY(opened);
    auto* own = dynamic_cast<ofd::OfdPageRenderer*>(opened.document->Renderer()); // not owned
    auto copy = std::make_shared<ofd::OfdPageRenderer>(*own);
    opened.document.reset();
    std::thread painter([copy] {
        for (int page = 0; page < 3; ++page) {
            G_RenderRequest request;
            request.pageIndex = page;
            if (copy->RenderPage(request).image.isNull())
                qFatal("a page was not painted");
        }
    });
    painter.join();
    QCOMPARE(copy->PageSizeMm(0).isValid(), true);
}

void TestOfdThreads::allThreadsPaintTheSamePicture()
{
    const ofd::OpenResult opened = ofd::OfdDocument::Open(SamplePath(QStringLiteral("tour")));
    QVERIFY(opened);
    IG_PageRenderer& renderer = *opened.document->Renderer();
    for (int page = 0; page < opened.document->GetPageCount(); ++page) {
        G_RenderRequest request;
        request.pageIndex = page;
        request.pixelsPerMm = 2;
        std::vector<QImage> images(painterCount);
        std::vector<std::thread> threads;
        for (QImage& image : images)
            threads.emplace_back([&] { image = renderer.RenderPage(request).image; });
        for (std::thread& thread : threads)
            thread.join();
        QVERIFY(!images.front().isNull());
        for (const QImage& image : images)
            QCOMPARE(image, images.front());
    }
}

void TestOfdThreads::textIsReadByThreadsWhileItIsHiddenAndShown()
{
    const ofd::OpenResult opened = ofd::OfdDocument::Open(SamplePath(QStringLiteral("tour")));
    QVERIFY(opened);
    ofd::OfdDocument& document = *opened.document;
    const int pageCount = document.GetPageCount();
    std::atomic<bool> isStopped{false};
    std::atomic<int> readPages{0};
    std::atomic<int> failures{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < painterCount; ++i) {
        threads.emplace_back([&, i] {
            for (int page = i; !isStopped; page = (page + 1) % pageCount) {
                const std::shared_ptr<const IG_ReadText> text = document.TextSource()->ReadText(page, isStopped);
                if (text && !text->IsReadable())
                    ++failures;
                if (text)
                    text->AllGlyphs();
                ++readPages;
            }
        });
    }
    for (int round = 0; round < 10; ++round) {
        for (int page = 0; page < pageCount; ++page)
            ReadPage(document, page);
        for (int i = 0; i < document.GetTemplateCount(); ++i)
            document.SetTemplateVisible(document.GetTemplateIdAt(i), round % 2 != 0);
    }
    QTRY_VERIFY_WITH_TIMEOUT(readPages >= 200, 120'000);
    isStopped = true;
    for (std::thread& thread : threads)
        thread.join();
    QCOMPARE(failures.load(), 0);
}

} // namespace

TETO_TEST_MAIN(TestOfdThreads)
#include "test_ofd_threads.moc"
