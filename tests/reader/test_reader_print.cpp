#include "pdf_file.h"
#include "reader_desk.h"

#include <tests/ofd/document/ofd_file.h>
#include <tests/support/test_main.h>

#include <reader/job_bar.h>
#include <reader/page_printing.h>
#include <reader/print_dialog.h>

#include <frame/document/ig_document.h>
#include <frame/view/doc_view.h>

#include <QAction>
#include <QDir>
#include <QMessageBox>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>
#include <QtTest>

namespace {

constexpr double PointsPerMm = 72 / 25.4;
const QByteArray blackSquare =
    "<ofd:PathObject ID=\"5\" Boundary=\"0 0 100 100\" Fill=\"true\" Stroke=\"false\"><ofd:FillColor Value=\"0 0 0\"/>"
    "<ofd:AbbreviatedData>M 10 10 L 60 10 L 60 60 L 10 60 C</ofd:AbbreviatedData></ofd:PathObject>";

// A document whose page carries an annotation that is for the screen only.
OfdFile WithScreenAnnotation()
{
    OfdFile file = OfdFile::WithPages(1);
    file.Tail("<ofd:Annotations>Annotations.xml</ofd:Annotations>");
    file.Set("Doc_0/Annotations.xml",
             Element("Annotations", "<ofd:Page PageID=\"1\"><ofd:FileLoc>Annot.xml</ofd:FileLoc></ofd:Page>"));
    file.Set("Doc_0/Annot.xml", Element("PageAnnot", "<ofd:Annot ID=\"7\" Type=\"Stamp\" Print=\"false\">"
                                                     "<ofd:Appearance Boundary=\"0 0 100 100\">" +
                                                         blackSquare + "</ofd:Appearance></ofd:Annot>"));
    return file;
}

OfdFile WithAreas(const QByteArrayList& boxes)
{
    OfdFile file = OfdFile::WithPages(boxes.size());
    for (int i = 0; i < boxes.size(); ++i)
        file.Set(QStringLiteral("Doc_0/Pages/Page_%1/Content.xml").arg(i),
                 Element("Page", "<ofd:Area><ofd:PhysicalBox>" + boxes.at(i) + "</ofd:PhysicalBox></ofd:Area>"));
    return file;
}

// The window with one document, and a printer that writes into a file.
class PrintDesk
{
public:
    explicit PrintDesk(const OfdFile& file)
        : desk(false)
    {
        desk.Window()->OpenFile(file.Write(desk.Folder() + "/file.ofd"));
    }
    explicit PrintDesk(const QString& sample)
        : desk(false)
    {
        desk.Window()->OpenFile(desk.Sample(sample));
    }
    MainWindow* Window() { return desk.Window(); }
    ScriptedReaderContext* Context() { return desk.Context(); }
    DocumentTab* Tab() { return desk.Window()->CurrentTab(); }
    QString Path() const { return desk.Folder() + "/out.pdf"; }
    QDir Folder() const { return QDir(desk.Folder()); }
    std::shared_ptr<QPrinter> Printer() const
    {
        auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
        printer->setOutputFormat(QPrinter::PdfFormat);
        printer->setResolution(100);
        printer->setPageSize(QPageSize(QPageSize::A4));
        printer->setOutputFileName(Path());
        return printer;
    }
    // Prints all, and reads what came of it.
    PdfFile Print(const std::shared_ptr<QPrinter>& printer, PrintSize size)
    {
        if (!Window()->PrintTab(Tab(), printer, size) || !WaitForTheEnd())
            QTest::qFail("nothing was printed", __FILE__, __LINE__);
        return PdfFile::Read(Path());
    }
    bool WaitForTheEnd()
    {
        return QTest::qWaitFor([this] { return !Window()->IsWorking(); }, 60000);
    }
    void PressCancel() { QTest::mouseClick(Window()->findChild<JobBar*>()->findChild<QPushButton*>(), Qt::LeftButton); }

private:
    ReaderDesk desk;
};

double MmError(const QSizeF& points, const QSizeF& mm)
{
    return qMax(qAbs(points.width() / PointsPerMm - mm.width()), qAbs(points.height() / PointsPerMm - mm.height()));
}

// Whether the file's pages are these, in mm; the first that differs is told.
bool HasSheets(const PdfFile& pdf, const QList<QSizeF>& sheets, double toleranceMm)
{
    for (int i = 0; i < sheets.size() && i < pdf.pageSizes.size(); ++i) {
        if (MmError(pdf.pageSizes.at(i), sheets.at(i)) < toleranceMm)
            continue;
        qWarning() << "page" << i << "measures" << pdf.pageSizes.at(i) / PointsPerMm << "mm in place of"
                   << sheets.at(i);
        return false;
    }
    return pdf.pageSizes.size() == sheets.size();
}

} // namespace

// Printing, by way of a printer that writes PDF files.
class TestReaderPrint : public QObject
{
    Q_OBJECT
private slots:
    void threePagesOfTheRangeArePrinted();
    void eachPageGetsASheetOfItsOwnSize();
    void thePaperTurnsToTheOrientationOfEachPage();
    void whatIsPrintedIsWhatIsSeen();
    void aLargePageIsPrintedInBandsWithoutLosingARow();
    void pagesOfTheirActualSizeAreNotEnlarged();
    void copiesThatThePrinterDoesNotMakeAreMade();
    void theLastPageMayComeFirst();
    void theCurrentPageIsPrintedAlone();
    void annotationsThatAreForTheScreenStayOffThePaper();
    void hiddenAnnotationsAreNotPrinted();
    void documentsThatForbidPrintingAreNotPrinted_data();
    void documentsThatForbidPrintingAreNotPrinted();
    void moreCopiesThanAllowedAreRefused();
    void theMenuAsksAndPrints();
    void theDialogTellsHowLargePagesComeOut();
    void theWindowLivesWhileItPrintsAndCancelLeavesNoFile();
    void anOldFileStaysWhenPrintingIsCancelled();
    void aFolderThatIsNotThereIsTold();
    void aTabThatIsBeingPrintedAsksBeforeItCloses();
    void onlyOneDocumentIsPrintedAtATime();
    void nothingIsAskedAboutPrintingWhileSomethingIsPrinted();
    void aTabThatIsBeingPrintedAsksBeforeItIsReloaded();
};

void TestReaderPrint::threePagesOfTheRangeArePrinted()
{
    PrintDesk desk("tour.ofd");
    const auto printer = desk.Printer();
    printer->setPrintRange(QPrinter::PageRange);
    printer->setFromTo(2, 4);
    const PdfFile pdf = desk.Print(printer, PrintSize::FitPaper);
    QCOMPARE(pdf.pageSizes.size(), 3);
    for (const QSizeF& size : pdf.pageSizes)
        QVERIFY(MmError(size, QSizeF(210, 297)) < 1 || MmError(size, QSizeF(297, 210)) < 1);
    QCOMPARE(desk.Folder().entryList({"*.part"}, QDir::Files | QDir::Hidden).size(), 0);
}

void TestReaderPrint::eachPageGetsASheetOfItsOwnSize()
{
    PrintDesk desk(WithAreas({"0 0 210 140", "0 0 60 90", "0 0 297 420"}));
    const PdfFile pdf = desk.Print(desk.Printer(), PrintSize::OwnSheet);
    QVERIFY(HasSheets(pdf, {{210, 140}, {60, 90}, {297, 420}}, 0.5));
}

void TestReaderPrint::thePaperTurnsToTheOrientationOfEachPage()
{
    PrintDesk desk(WithAreas({"0 0 100 50", "0 0 50 100", "0 0 300 50"}));
    const PdfFile pdf = desk.Print(desk.Printer(), PrintSize::FitPaper);
    QVERIFY(HasSheets(pdf, {{297, 210}, {210, 297}, {297, 210}}, 1));
}

void TestReaderPrint::whatIsPrintedIsWhatIsSeen()
{
    PrintDesk desk(OfdFile::WithPage(blackSquare));
    const PdfFile pdf = desk.Print(desk.Printer(), PrintSize::OwnSheet);
    QCOMPARE(pdf.pictures.size(), 1);
    G_RenderRequest request;
    request.pixelsPerMm = 100 / 25.4;
    const QImage seen = desk.Tab()->Document()->Renderer()->RenderPage(request).image;
    QCOMPARE(pdf.pictures.first().size(), seen.size());
    QCOMPARE(pdf.pictures.first(), seen.convertToFormat(QImage::Format_RGB32));
    QCOMPARE(seen.pixelColor(seen.width() / 3, seen.height() / 3), QColor(Qt::black));
}

void TestReaderPrint::aLargePageIsPrintedInBandsWithoutLosingARow()
{
    PrintDesk desk(OfdFile::WithPage(blackSquare));
    const auto printer = desk.Printer();
    printer->setResolution(1200); // 600 are painted
    printer->setPageSize(QPageSize(QPageSize::A3));
    const PdfFile pdf = desk.Print(printer, PrintSize::FitPaper);
    QVERIFY(pdf.pictures.size() > 1);
    const int width = pdf.pictures.first().width();
    int rows = 0;
    for (const QImage& band : pdf.pictures) {
        QCOMPARE(band.width(), width);
        QVERIFY(qint64(band.width()) * (band.height() - 1) <= 16000000);
        rows += band.height();
    }
    rows -= pdf.pictures.size() - 1;  // bands overlap by a row
    QVERIFY(qAbs(rows - width) <= 1); // the page is a square
    QCOMPARE(pdf.pictures.first().pixelColor(width / 3, width / 7), QColor(Qt::black));
}

void TestReaderPrint::pagesOfTheirActualSizeAreNotEnlarged()
{
    PrintDesk desk(OfdFile::WithPage(blackSquare));
    const PdfFile pdf = desk.Print(desk.Printer(), PrintSize::ActualSize);
    QCOMPARE(pdf.pictures.size(), 1);
    QCOMPARE(pdf.pictures.first().size(), QSize(394, 394)); // 100 mm, 100 dots an inch
    QVERIFY(MmError(pdf.pageSizes.first(), QSizeF(210, 297)) < 1);
}

void TestReaderPrint::copiesThatThePrinterDoesNotMakeAreMade()
{
    QPrinter printer;
    printer.setOutputFormat(QPrinter::PdfFormat);
    QVERIFY(!printer.supportsMultipleCopies());
    printer.setCopyCount(2);
    printer.setCollateCopies(true);
    QCOMPARE(PagesToPrint(printer, 3, 0), QVector<int>({0, 1, 2, 0, 1, 2}));
    printer.setCollateCopies(false);
    QCOMPARE(PagesToPrint(printer, 3, 0), QVector<int>({0, 0, 1, 1, 2, 2}));
}

void TestReaderPrint::theLastPageMayComeFirst()
{
    QPrinter printer;
    printer.setPageOrder(QPrinter::LastPageFirst);
    printer.setPrintRange(QPrinter::PageRange);
    printer.setFromTo(2, 9);
    QCOMPARE(PagesToPrint(printer, 4, 0), QVector<int>({3, 2, 1}));
}

void TestReaderPrint::theCurrentPageIsPrintedAlone()
{
    PrintDesk desk(WithAreas({"0 0 50 50", "0 0 60 90", "0 0 50 50"}));
    desk.Tab()->View()->GoToPage(nullptr, 1, CCA_GRect(), false);
    const auto printer = desk.Printer();
    printer->setPrintRange(QPrinter::CurrentPage);
    const PdfFile pdf = desk.Print(printer, PrintSize::OwnSheet);
    QCOMPARE(pdf.pageSizes.size(), 1);
    QVERIFY(MmError(pdf.pageSizes.first(), QSizeF(60, 90)) < 0.5);
}

void TestReaderPrint::annotationsThatAreForTheScreenStayOffThePaper()
{
    PrintDesk desk(WithScreenAnnotation());
    G_RenderRequest request;
    request.pixelsPerMm = 1;
    IG_PageRenderer* renderer = desk.Tab()->Document()->Renderer();
    QCOMPARE(renderer->RenderPage(request).image.pixelColor(30, 30), QColor(Qt::black));
    const PdfFile pdf = desk.Print(desk.Printer(), PrintSize::OwnSheet);
    QCOMPARE(pdf.pictures.first().pixelColor(120, 120), QColor(Qt::white));
}

void TestReaderPrint::hiddenAnnotationsAreNotPrinted()
{
    OfdFile file = WithScreenAnnotation();
    file.Set("Doc_0/Annot.xml", file.Part("Doc_0/Annot.xml").replace(" Print=\"false\"", ""));
    PrintDesk desk(file);
    PdfFile pdf = desk.Print(desk.Printer(), PrintSize::OwnSheet);
    QCOMPARE(pdf.pictures.first().pixelColor(120, 120), QColor(Qt::black));
    desk.Tab()->View()->SetAnnotStatus(false);
    pdf = desk.Print(desk.Printer(), PrintSize::OwnSheet);
    QCOMPARE(pdf.pictures.first().pixelColor(120, 120), QColor(Qt::white));
}

void TestReaderPrint::documentsThatForbidPrintingAreNotPrinted_data()
{
    QTest::addColumn<QByteArray>("print");
    QTest::newRow("not printable") << QByteArray("<ofd:Print Printable=\"false\"/>");
    QTest::newRow("no copies") << QByteArray("<ofd:Print Printable=\"true\" Copies=\"0\"/>");
}

void TestReaderPrint::documentsThatForbidPrintingAreNotPrinted()
{
    QFETCH(QByteArray, print);
    PrintDesk desk(OfdFile::WithPages(2).Tail("<ofd:Permissions>" + print + "</ofd:Permissions>"));
    desk.Context()->Answer(QMessageBox::Ok);
    QVERIFY(!desk.Window()->PrintTab(desk.Tab(), desk.Printer(), PrintSize::FitPaper));
    desk.Context()->Answer(QMessageBox::Ok);
    desk.Window()->Print(); // refused before anything is asked
    QCOMPARE(desk.Context()->Texts(), QStringList({"The document's rights do not allow printing.",
                                                   "The document's rights do not allow printing."}));
    QVERIFY(!QFile::exists(desk.Path()));
}

void TestReaderPrint::moreCopiesThanAllowedAreRefused()
{
    PrintDesk desk(
        OfdFile::WithPages(1).Tail("<ofd:Permissions><ofd:Print Printable=\"true\" Copies=\"2\"/></ofd:Permissions>"));
    const auto printer = desk.Printer();
    printer->setCopyCount(3);
    desk.Context()->Answer(QMessageBox::Ok);
    QVERIFY(!desk.Window()->PrintTab(desk.Tab(), printer, PrintSize::FitPaper));
    QVERIFY(desk.Context()->Texts().first().contains("2"));
    printer->setCopyCount(2);
    QCOMPARE(desk.Print(printer, PrintSize::FitPaper).pageSizes.size(), 2);
}

void TestReaderPrint::theMenuAsksAndPrints()
{
    PrintDesk desk(OfdFile::WithPages(2));
    int asked = 0;
    desk.Context()->AnswerPrint([&](QPrinter* printer, int pageCount, PrintSize* size) {
        ++asked;
        printer->setOutputFormat(QPrinter::PdfFormat);
        printer->setOutputFileName(desk.Path());
        *size = PrintSize::OwnSheet;
        return pageCount == 2;
    });
    QVERIFY(QTest::qWaitForWindowActive(desk.Window()));
    QTest::keyClick(desk.Window(), Qt::Key_P, Qt::ControlModifier);
    QCOMPARE(asked, 1);
    QVERIFY(desk.WaitForTheEnd());
    QCOMPARE(PdfFile::Read(desk.Path()).pageSizes.size(), 2);
}

void TestReaderPrint::theDialogTellsHowLargePagesComeOut()
{
    QPrinter printer;
    printer.setOutputFileName(QDir::tempPath() + "/out.pdf");
    PrintDialog dialog(&printer, 7, nullptr);
    QCOMPARE(dialog.Size(), PrintSize::FitPaper);
    const QList<QRadioButton*> buttons = dialog.findChildren<QRadioButton*>();
    int pressed = 0;
    for (QRadioButton* button : buttons) {
        if (!button->text().contains("own size"))
            continue;
        button->click();
        ++pressed;
    }
    QCOMPARE(pressed, 1);
    QCOMPARE(dialog.Size(), PrintSize::OwnSheet);
    QCOMPARE(dialog.maxPage(), 7);
    QCOMPARE(dialog.toPage(), 7);
    QCOMPARE(PagesToPrint(printer, 7, 0).size(), 7); // all, until a range is chosen
}

void TestReaderPrint::theWindowLivesWhileItPrintsAndCancelLeavesNoFile()
{
    PrintDesk desk(OfdFile::WithPages(3000));
    const auto* bar = desk.Window()->findChild<JobBar*>();
    QVERIFY(!bar->isVisible());
    QVERIFY(desk.Window()->PrintTab(desk.Tab(), desk.Printer(), PrintSize::FitPaper));
    QVERIFY(bar->isVisible());
    desk.Tab()->View()->NextPage();
    QCOMPARE(desk.Tab()->View()->CurrentPageIndex(), 1);
    QVERIFY(desk.Window()->IsWorking());
    desk.PressCancel();
    QVERIFY(desk.WaitForTheEnd());
    QVERIFY(!bar->isVisible());
    QVERIFY(!QFile::exists(desk.Path()));
    QCOMPARE(desk.Folder().entryList(QDir::Files | QDir::Hidden), QStringList("file.ofd"));
}

void TestReaderPrint::anOldFileStaysWhenPrintingIsCancelled()
{
    PrintDesk desk(OfdFile::WithPages(3000));
    QFile old(desk.Path());
    QVERIFY(old.open(QIODevice::WriteOnly));
    old.write("old");
    old.close();
    QVERIFY(desk.Window()->PrintTab(desk.Tab(), desk.Printer(), PrintSize::FitPaper));
    desk.PressCancel();
    QVERIFY(desk.WaitForTheEnd());
    QCOMPARE(BytesOf(desk.Path()), QByteArray("old"));
}

void TestReaderPrint::aFolderThatIsNotThereIsTold()
{
    PrintDesk desk(OfdFile::WithPages(1));
    const auto printer = desk.Printer();
    printer->setOutputFileName(desk.Folder().filePath("nowhere/out.pdf"));
    desk.Context()->Answer(QMessageBox::Ok);
    QVERIFY(desk.Window()->PrintTab(desk.Tab(), printer, PrintSize::FitPaper));
    QVERIFY(desk.WaitForTheEnd());
    QCOMPARE(desk.Context()->Texts().size(), 1);
    QVERIFY(desk.Context()->Texts().first().contains("does not take the pages"));
}

void TestReaderPrint::aTabThatIsBeingPrintedAsksBeforeItCloses()
{
    PrintDesk desk(OfdFile::WithPages(3000));
    QVERIFY(desk.Window()->PrintTab(desk.Tab(), desk.Printer(), PrintSize::FitPaper));
    desk.Context()->Answer(QMessageBox::No);
    QVERIFY(!desk.Window()->CloseTab(0));
    QVERIFY(desk.Window()->IsWorking());
    desk.Context()->Answer(QMessageBox::Yes);
    QVERIFY(desk.Window()->CloseTab(0));
    QVERIFY(!desk.Window()->IsWorking());
    QVERIFY(!QFile::exists(desk.Path()));
}

void TestReaderPrint::onlyOneDocumentIsPrintedAtATime()
{
    PrintDesk desk(OfdFile::WithPages(3000));
    QVERIFY(desk.Window()->PrintTab(desk.Tab(), desk.Printer(), PrintSize::FitPaper));
    QVERIFY(!desk.Window()->PrintTab(desk.Tab(), desk.Printer(), PrintSize::FitPaper));
    desk.PressCancel();
    QVERIFY(desk.WaitForTheEnd());
}

void TestReaderPrint::nothingIsAskedAboutPrintingWhileSomethingIsPrinted()
{
    PrintDesk desk(OfdFile::WithPages(3000));
    int asked = 0;
    desk.Context()->AnswerPrint([&](QPrinter*, int, PrintSize*) { return ++asked < 0; });
    QVERIFY(desk.Window()->PrintTab(desk.Tab(), desk.Printer(), PrintSize::FitPaper));
    desk.Window()->Print();
    QCOMPARE(asked, 0);
    desk.PressCancel();
    QVERIFY(desk.WaitForTheEnd());
    desk.Window()->Print();
    QCOMPARE(asked, 1);
}

void TestReaderPrint::aTabThatIsBeingPrintedAsksBeforeItIsReloaded()
{
    PrintDesk desk(OfdFile::WithPages(3000));
    QVERIFY(QTest::qWaitForWindowActive(desk.Window()));
    QVERIFY(desk.Window()->PrintTab(desk.Tab(), desk.Printer(), PrintSize::FitPaper));
    desk.Context()->Answer(QMessageBox::No);
    QTest::keyClick(desk.Tab()->View()->Widget(), Qt::Key_F5);
    QCOMPARE(desk.Context()->PendingAnswers(), 0);
    QVERIFY(desk.Window()->IsWorking());
    desk.Context()->Answer(QMessageBox::Yes);
    QTest::keyClick(desk.Tab()->View()->Widget(), Qt::Key_F5);
    QVERIFY(!desk.Window()->IsWorking());
    QCOMPARE(desk.Window()->TabCount(), 1);
    QVERIFY(!QFile::exists(desk.Path()));
}

TETO_TEST_MAIN(TestReaderPrint)
#include "test_reader_print.moc"
