#include "page_painting.h"
#include "sample_files.h"

#include <ofd/ofd_document.h>
#include <tests/support/test_main.h>

#include <QBuffer>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QtTest>

#include <atomic>
#include <thread>

class TestOfdPageOrder : public QObject
{
    Q_OBJECT

private slots:
    void compositesArePlacedByTheirMatrix();
    void templatesAndLayersArePaintedInOrder();
    void aTemplateWithoutAnOrderHasThatOfItsFirstUse();
    void hiddenThingsAreNotPainted();
    void annotationsArePaintedOnTop();
    void aRemovedAnnotationHidesNoOtherAfterASave();
    void aRegionIsThatPartOfThePage();
    void aPageIsPaintedTheSameInManyThreads();
    void aCancelledPageGivesNothing();
    void cyclesEnd();

private:
    QTemporaryDir folder;
};

void TestOfdPageOrder::compositesArePlacedByTheirMatrix()
{
    const QByteArray units =
        "<ofd:CompositeGraphicUnits><ofd:CompositeGraphicUnit ID=\"50\" Width=\"60\" Height=\"60\">"
        "<ofd:Content>" +
        FilledSquare(0, 0, "Value=\"0 0 255\"") +
        "</ofd:Content></ofd:CompositeGraphicUnit></ofd:CompositeGraphicUnits>";
    const QImage image = PaintPage(
        "<ofd:CompositeObject ID=\"1\" ResourceID=\"50\" Boundary=\"30 40 10 10\" CTM=\"0.5 0 0 0.5 0 0\"/>", units);
    QCOMPARE(InkBox(image), QRectF(30, 40, 10, 10)); // never scaled by width and height
    QCOMPARE(ColourAt(image, 35, 45), QColor(Qt::blue));
}

void TestOfdPageOrder::templatesAndLayersArePaintedInOrder()
{
    const auto layer = [](const QByteArray& type, const QByteArray& colour) {
        return "<ofd:Layer ID=\"1\" Type=\"" + type + "\">" + FilledSquare(10, 10, colour) + "</ofd:Layer>";
    };
    const auto paint = [&](const QByteArray& templates, const QByteArray& layers, const QByteArray& zOrder) {
        OfdFile file = OfdFile::WithPages(1).Common("<ofd:TemplatePage ID=\"60\" BaseLoc=\"T.xml\" " + zOrder + "/>");
        file.Set(QStringLiteral("Doc_0/T.xml"),
                 Element("Page", "<ofd:Content>" + layer("Body", "Value=\"255 0 0\"") + "</ofd:Content>"));
        file.Set(QStringLiteral("Doc_0/Pages/Page_0/Content.xml"),
                 Element("Page", templates + "<ofd:Content>" + layers + "</ofd:Content>"));
        return ColourAt(PaintFile(file), 20, 20);
    };
    const QByteArray body = layer("Body", "Value=\"0 0 255\"");
    const QByteArray back = layer("Background", "Value=\"0 255 0\"");
    const QByteArray front = layer("Foreground", "Value=\"0 0 0\"");
    QCOMPARE(paint({}, body + back, {}), QColor(Qt::blue)); // the background comes first wherever it stands
    QCOMPARE(paint({}, front + body, {}), QColor(Qt::black));
    QCOMPARE(paint("<ofd:Template TemplateID=\"60\"/>", body, {}), QColor(Qt::blue));
    QCOMPARE(paint("<ofd:Template TemplateID=\"60\"/>", back, {}), QColor(Qt::green));
    QCOMPARE(paint("<ofd:Template TemplateID=\"60\" ZOrder=\"Foreground\"/>", body, {}), QColor(Qt::red));
    QCOMPARE(paint("<ofd:Template TemplateID=\"60\"/>", body, "ZOrder=\"Foreground\""), QColor(Qt::red));
    QCOMPARE(paint("<ofd:Template TemplateID=\"60\" ZOrder=\"Background\"/>", body, "ZOrder=\"Foreground\""),
             QColor(Qt::blue)); // the page has the last word
}

void TestOfdPageOrder::aTemplateWithoutAnOrderHasThatOfItsFirstUse()
{
    OfdFile file = OfdFile::WithPages(3).Common(
        "<ofd:TemplatePage ID=\"60\" BaseLoc=\"T.xml\"/><ofd:TemplatePage ID=\"61\" BaseLoc=\"T.xml\"/>"
        "<ofd:TemplatePage ID=\"62\" BaseLoc=\"T.xml\" ZOrder=\"Background\"/>");
    file.Set(QStringLiteral("Doc_0/T.xml"), PageXml(QByteArray()));
    const auto page = [](const QByteArray& order) {
        return Element("Page", "<ofd:Template TemplateID=\"60\" ZOrder=\"" + order +
                                   "\"/><ofd:Template TemplateID=\"62\" ZOrder=\"" + order +
                                   "\"/><ofd:Area><ofd:PhysicalBox>0 0 50 50</ofd:PhysicalBox></ofd:Area>");
    };
    file.Set(QStringLiteral("Doc_0/Pages/Page_1/Content.xml"), page("Foreground"));
    file.Set(QStringLiteral("Doc_0/Pages/Page_2/Content.xml"), page("Background"));
    const ofd::OpenResult opened = ofd::OfdDocument::Open(file.Write(folder.filePath(QStringLiteral("orders.ofd"))));
    QVERIFY(opened);
    QVERIFY(opened.document->GetTemplateZOrder(60) == "Foreground");
    QVERIFY(opened.document->GetTemplateZOrder(61) == "Background"); // never used
    QVERIFY(opened.document->GetTemplateZOrder(62) == "Background"); // it has an order of its own
    QVERIFY(opened.document->GetTemplateZOrder(63) == "Background"); // there is none
}

void TestOfdPageOrder::hiddenThingsAreNotPainted()
{
    OfdFile file = OfdFile::WithPages(1).Common("<ofd:TemplatePage ID=\"60\" BaseLoc=\"T.xml\"/>");
    file.Set(QStringLiteral("Doc_0/T.xml"), PageXml(FilledSquare(10, 10, "Value=\"255 0 0\"")));
    file.Set(QStringLiteral("Doc_0/Pages/Page_0/Content.xml"),
             Element("Page", "<ofd:Template TemplateID=\"60\"/><ofd:Content><ofd:Layer>" +
                                 FilledSquare(40, 10, "Value=\"0 0 255\"") +
                                 FilledSquare(70, 10, "Value=\"0 0 0\"", "Visible=\"false\"") +
                                 "</ofd:Layer></ofd:Content>"));
    const QString path = file.Write(folder.filePath(QStringLiteral("hidden.ofd")));
    const ofd::OpenResult opened = ofd::OfdDocument::Open(path);
    QVERIFY(opened);
    ofd::OfdDocument& document = *opened.document;
    G_RenderRequest request;
    request.pixelsPerMm = PixelsPerMm;
    const auto box = [&] { return InkBox(document.Renderer()->RenderPage(request).image); };
    QCOMPARE(box(), QRectF(10, 10, 50, 20));
    document.SetTemplateVisible(60, false);
    QCOMPARE(box(), QRectF(40, 10, 20, 20));
    document.SetTemplateVisible(60, true);
    request.ignoredTemplates = {60};
    QCOMPARE(box(), QRectF(40, 10, 20, 20));
    request.ignoredTemplates.clear();
    QVERIFY(document.GetPage(0)->Load());
    document.GetPage(0)->GetLayerAt(0)->SetVisible(false);
    QCOMPARE(box(), QRectF(10, 10, 20, 20));
    document.ReleasePage(0, 0);
    QCOMPARE(box(), QRectF(10, 10, 20, 20));
}

void TestOfdPageOrder::annotationsArePaintedOnTop()
{
    OfdFile file = OfdFile::WithPage(FilledSquare(10, 10, "Value=\"255 0 0\""));
    file.Tail("<ofd:Annotations>A.xml</ofd:Annotations>");
    file.Set(QStringLiteral("Doc_0/A.xml"),
             Element("Annotations", "<ofd:Page PageID=\"1\"><ofd:FileLoc>P.xml</ofd:FileLoc></ofd:Page>"));
    file.Set(QStringLiteral("Doc_0/P.xml"),
             Element("PageAnnot", "<ofd:Annot ID=\"7\" Type=\"Highlight\"><ofd:Appearance Boundary=\"20 20 30 30\">" +
                                      FilledSquare(5, 5, "Value=\"0 0 255\"") + "</ofd:Appearance></ofd:Annot>"));
    const QString path = file.Write(folder.filePath(QStringLiteral("annots.ofd")));
    const ofd::OpenResult opened = ofd::OfdDocument::Open(path);
    QVERIFY(opened);
    G_RenderRequest request;
    request.pixelsPerMm = PixelsPerMm;
    const auto colour = [&] { return ColourAt(opened.document->Renderer()->RenderPage(request).image, 27, 27); };
    QCOMPARE(colour(), QColor(Qt::blue)); // on the page at (25, 25), over the red square
    request.withAnnotations = false;
    QCOMPARE(colour(), QColor(Qt::red));
    request.withAnnotations = true;
    IG_Page* page = opened.document->GetPage(0);
    QCOMPARE(page->LoadAnnots(), 0);
    IG_Annot* annot = page->GetAnnotById(7);
    QVERIFY(annot);
    QVERIFY(annot->GetBoundary() == CCA_GRect(20, 20, 50, 50));
    annot->SetVisible(false, true);
    QCOMPARE(colour(), QColor(Qt::red));
    annot->SetVisible(true, true);
    QCOMPARE(colour(), QColor(Qt::blue));
    QVERIFY(opened.document->RemoveAnnot(annot));
    QCOMPARE(colour(), QColor(Qt::red));
    QCOMPARE(page->GetAnnotCount(), 0);
    QVERIFY(annot->IsHiddenFromList());
    annot->SetRemark("nothing happens");
    QVERIFY(annot->GetRemark().IsEmpty());
    QVERIFY(opened.document->ReviveAnnot(annot));
    QCOMPARE(colour(), QColor(Qt::blue));
}

void TestOfdPageOrder::aRemovedAnnotationHidesNoOtherAfterASave()
{
    const auto annotation = [](const QByteArray& id, const QByteArray& boundary, const QByteArray& colour) {
        return "<ofd:Annot ID=\"" + id + "\" Type=\"Highlight\"><ofd:Appearance Boundary=\"" + boundary + "\">" +
               FilledSquare(0, 0, colour) + "</ofd:Appearance></ofd:Annot>";
    };
    // More than is kept of annotations, so that those of other pages are read again.
    const QByteArray heavy = "<ofd:Annot ID=\"9\" Type=\"Path\"><ofd:Appearance Boundary=\"0 0 1 1\"><ofd:PathObject "
                             "ID=\"10\" Visible=\"false\"><ofd:AbbreviatedData>M 0 0 " +
                             QByteArray("L 1 1 L 0 0 ").repeated(150'000) +
                             "</ofd:AbbreviatedData></ofd:PathObject></ofd:Appearance></ofd:Annot>";
    OfdFile file = OfdFile::WithPages(2).Tail("<ofd:Annotations>A.xml</ofd:Annotations>");
    QByteArray entries = "<ofd:Page PageID=\"1\"><ofd:FileLoc>P.xml</ofd:FileLoc></ofd:Page>";
    for (const char* part : {"Q0.xml", "Q1.xml", "Q2.xml"}) {
        entries += QByteArray("<ofd:Page PageID=\"2\"><ofd:FileLoc>") + part + "</ofd:FileLoc></ofd:Page>";
        file.Set(QStringLiteral("Doc_0/") + part, Element("PageAnnot", heavy));
    }
    file.Set(QStringLiteral("Doc_0/A.xml"), Element("Annotations", entries));
    file.Set(QStringLiteral("Doc_0/P.xml"),
             Element("PageAnnot", annotation("7", "10 10 30 30", "Value=\"0 0 255\"") +
                                      annotation("8", "50 50 30 30", "Value=\"255 0 0\"")));
    const ofd::OpenResult opened = ofd::OfdDocument::Open(file.Write(folder.filePath(QStringLiteral("removed.ofd"))));
    QVERIFY(opened);
    const auto paint = [&](int page) {
        G_RenderRequest request;
        request.pageIndex = page;
        request.pixelsPerMm = PixelsPerMm;
        return opened.document->Renderer()->RenderPage(request).image;
    };
    IG_Page* page = opened.document->GetPage(0);
    QCOMPARE(page->LoadAnnots(), 0);
    IG_Annot* first = page->GetAnnotById(7);
    QVERIFY(opened.document->RemoveAnnot(first));
    QVERIFY(opened.document->Save());
    paint(1);
    QCOMPARE(ColourAt(paint(0), 20, 20), QColor(Qt::white));
    QCOMPARE(ColourAt(paint(0), 60, 60), QColor(Qt::red));
    QVERIFY(opened.document->ReviveAnnot(first));
    QCOMPARE(ColourAt(paint(0), 20, 20), QColor(Qt::blue));
}

void TestOfdPageOrder::aRegionIsThatPartOfThePage()
{
    const OfdFile file =
        OfdFile::WithPage(FilledSquare(10, 30, "Value=\"255 0 0\"") + FilledSquare(60, 60, "Value=\"0 0 255\""));
    G_RenderRequest request;
    const QImage whole = PaintFile(file, request);
    request.region = QRect(30, 100, 250, 200);
    QCOMPARE(PaintFile(file, request), whole.copy(request.region));
}

void TestOfdPageOrder::aPageIsPaintedTheSameInManyThreads()
{
    const ofd::OpenResult opened = ofd::OfdDocument::Open(SamplePath(QStringLiteral("tour")));
    QVERIFY(opened);
    const int pageCount = opened.document->GetPageCount();
    std::vector<QImage> alone;
    G_RenderRequest request;
    request.pixelsPerMm = 1.5;
    for (request.pageIndex = 0; request.pageIndex < pageCount; ++request.pageIndex)
        alone.push_back(opened.document->Renderer()->RenderPage(request).image);
    // Another document, so that nothing is read or decoded yet.
    const ofd::OpenResult fresh = ofd::OfdDocument::Open(SamplePath(QStringLiteral("tour")));
    QVERIFY(fresh);
    std::atomic<int> wrongCount{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < pageCount; ++i) {
                G_RenderRequest own;
                own.pixelsPerMm = 1.5;
                own.pageIndex = (i + t) % pageCount;
                wrongCount += fresh.document->Renderer()->RenderPage(own).image != alone[size_t(own.pageIndex)];
            }
        });
    }
    // Meanwhile the main thread reads and hides things of another page.
    for (int i = 0; i < pageCount; ++i) {
        IG_Page* page = fresh.document->GetPage(i);
        QVERIFY(page->Load());
        page->LoadAnnots();
        page->GetTextPage()->Parse(0);
        fresh.document->SetTemplateVisible(999, false);
        fresh.document->ReleasePage(i, 0);
    }
    for (std::thread& thread : threads)
        thread.join();
    QCOMPARE(wrongCount.load(), 0);
}

void TestOfdPageOrder::aCancelledPageGivesNothing()
{
    const ofd::OpenResult opened = ofd::OfdDocument::Open(SamplePath(QStringLiteral("tour")));
    G_RenderRequest request;
    request.cancelled = std::make_shared<std::atomic<bool>>(true);
    const G_RenderResult result = opened.document->Renderer()->RenderPage(request);
    QVERIFY(result.image.isNull());
    QVERIFY(result.error.isEmpty());
}

void TestOfdPageOrder::cyclesEnd()
{
    const QByteArray resources =
        "<ofd:DrawParams><ofd:DrawParam ID=\"30\" Relative=\"31\"/><ofd:DrawParam ID=\"31\" Relative=\"30\"/>"
        "</ofd:DrawParams><ofd:CompositeGraphicUnits><ofd:CompositeGraphicUnit ID=\"50\" Width=\"9\" "
        "Height=\"9\"><ofd:Content>"
        "<ofd:CompositeObject ID=\"2\" ResourceID=\"51\" Boundary=\"0 0 9 "
        "9\"/></ofd:Content></ofd:CompositeGraphicUnit>"
        "<ofd:CompositeGraphicUnit ID=\"51\" Width=\"9\" Height=\"9\"><ofd:Content>" +
        FilledSquare(0, 0, "Value=\"0 0 0\"", "DrawParam=\"30\"") +
        "<ofd:CompositeObject ID=\"3\" ResourceID=\"50\" Boundary=\"0 0 9 "
        "9\"/></ofd:Content></ofd:CompositeGraphicUnit>"
        "</ofd:CompositeGraphicUnits>";
    const QImage image =
        PaintPage("<ofd:CompositeObject ID=\"1\" ResourceID=\"50\" Boundary=\"10 10 9 9\"/>", resources);
    QCOMPARE(InkBox(image), QRectF(10, 10, 20, 20));
}

TETO_TEST_MAIN(TestOfdPageOrder)

#include "test_ofd_page_order.moc"
