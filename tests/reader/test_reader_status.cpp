#include "reader_desk.h"

#include <tests/ofd/document/ofd_file.h>
#include <tests/support/screens.h>
#include <tests/support/test_main.h>

#include <reader/job_bar.h>
#include <reader/page_printing.h>
#include <reader/status_panel.h>

#include <frame/document/ig_document.h>
#include <frame/document/memory_document.h>
#include <frame/operation/event_manager.h>
#include <frame/view/doc_view.h>
#include <frame/view/status_note.h>

#include <QComboBox>
#include <QLineEdit>
#include <QMenuBar>
#include <QPrintEngine>
#include <QPrinter>
#include <QPushButton>
#include <QSpinBox>
#include <QStatusBar>
#include <QtTest>

namespace {

// The window in full screen, with a document of 40 pages.
class FullScreenDesk
{
public:
    FullScreenDesk()
        : desk(false)
    {
        desk.Window()->OpenFile(OfdFile::WithPages(40).Write(desk.Folder() + "/long.ofd"));
        if (!QTest::qWaitForWindowActive(desk.Window()))
            QTest::qFail("the window is not active", __FILE__, __LINE__);
        QTest::keyClick(desk.Window(), Qt::Key_F11);
    }
    bool HasStatusBar() const { return desk.Window()->statusBar()->isVisible(); }
    QWidget* ViewWidget() const { return desk.View()->Widget(); }
    // Later notes need not wait for the one that tells how to leave.
    void HurryNotes() const { ViewWidget()->findChild<G_StatusNote*>()->SetDuration(1); }
    void AskForPage() const { QTest::keyClick(ViewWidget(), Qt::Key_G, Qt::ControlModifier); }
    QSpinBox* PageBox() const { return desk.Window()->findChild<StatusPanel*>()->findChild<QSpinBox*>(); }
    QString Note() const
    {
        const auto* note = ViewWidget()->findChild<G_StatusNote*>();
        return note ? note->text() : QString();
    }

    ReaderDesk desk;
};

// Work that ends when the test says so.
class Held
{
public:
    BackgroundJob::Work Work(const JobOutcome& outcome)
    {
        return [this, outcome](const JobControl& control) {
            while (!mayEnd)
                QThread::msleep(2);
            wasAskedToStop = control.IsCancelled();
            return outcome;
        };
    }
    std::atomic<bool> mayEnd{false};
    std::atomic<bool> wasAskedToStop{false};
};

// Hands all on to a printer that writes a file, but the name of the file, and takes nothing back: a printer on paper.
class PaperEngine : public QPrintEngine
{
public:
    explicit PaperEngine(QPrintEngine* file)
        : file(file)
    {
    }
    void setProperty(PrintEnginePropertyKey key, const QVariant& value) override { file->setProperty(key, value); }
    QVariant property(PrintEnginePropertyKey key) const override
    {
        return key == PPK_OutputFileName ? QVariant(QString()) : file->property(key);
    }
    bool newPage() override { return file->newPage(); }
    bool abort() override { return false; }
    int metric(QPaintDevice::PaintDeviceMetric which) const override { return file->metric(which); }
    QPrinter::PrinterState printerState() const override { return file->printerState(); }

private:
    QPrintEngine* file; // not owned
};

class PaperPrinter : public QPrinter
{
public:
    explicit PaperPrinter(const QString& path)
    {
        file.setOutputFormat(QPrinter::PdfFormat);
        file.setResolution(72);
        file.setOutputFileName(path);
        engine = std::make_unique<PaperEngine>(file.printEngine());
        setEngines(engine.get(), file.paintEngine());
    }

private:
    QPrinter file;
    std::unique_ptr<PaperEngine> engine;
};

} // namespace

// The status bar: page box, full screen, what is told of work in the background.
class TestReaderStatus : public QObject
{
    Q_OBJECT
private slots:
    void aPageNumberTypedInFullScreenLeavesFullScreenAsItWas();
    void escapeGivesThePageNumberUpBeforeItEndsFullScreen();
    void aClickOnThePageEndsTheAskingForAPageNumber();
    void workInFullScreenIsSeenAndCanBeGivenUp();
    void notesInFullScreenLieOverThePage();
    void thePageBoxFollowsPagesThatComeAndGo();
    void escapeInThePageBoxLeavesItAsItWas();
    void workThatIsDoneAllTheSameIsNotToldToBeGivenUp();
    void whatAPrinterMayStillPrintIsTold();
};

void TestReaderStatus::aPageNumberTypedInFullScreenLeavesFullScreenAsItWas()
{
    FullScreenDesk desk;
    QVERIFY(!desk.HasStatusBar());
    desk.AskForPage();
    QVERIFY(desk.HasStatusBar());
    Screens::SaveScreen(desk.desk.Window(), "full-screen-page-number");
    QTest::keyClicks(desk.PageBox(), "23");
    QTest::keyClick(desk.PageBox(), Qt::Key_Return);
    QTRY_VERIFY(!desk.HasStatusBar());
    QCOMPARE(desk.desk.View()->CurrentPageIndex(), 22);
    QVERIFY(desk.desk.Window()->isFullScreen());
    QCOMPARE(QApplication::focusWidget(), desk.ViewWidget());
}

void TestReaderStatus::escapeGivesThePageNumberUpBeforeItEndsFullScreen()
{
    FullScreenDesk desk;
    desk.AskForPage();
    QTest::keyClicks(desk.PageBox(), "23");
    QTest::keyClick(desk.PageBox(), Qt::Key_Escape);
    QVERIFY(!desk.HasStatusBar());
    QVERIFY(desk.desk.Window()->isFullScreen());
    QCOMPARE(desk.desk.View()->CurrentPageIndex(), 0);
    QCOMPARE(desk.PageBox()->value(), 1);
    QTest::keyClick(desk.ViewWidget(), Qt::Key_Escape);
    QVERIFY(!desk.desk.Window()->isFullScreen());
    QVERIFY(desk.HasStatusBar());
}

void TestReaderStatus::aClickOnThePageEndsTheAskingForAPageNumber()
{
    FullScreenDesk desk;
    desk.AskForPage();
    QVERIFY(desk.HasStatusBar());
    desk.ViewWidget()->setFocus(Qt::MouseFocusReason);
    QVERIFY(!desk.HasStatusBar());
    desk.AskForPage();
    QTest::keyClick(desk.desk.Window(), Qt::Key_F11);
    QVERIFY(desk.HasStatusBar()); // as ever outside of full screen
    QTest::keyClick(desk.desk.Window(), Qt::Key_F11);
    QVERIFY(!desk.HasStatusBar());
    QCOMPARE(QApplication::focusWidget(), desk.ViewWidget());
}

void TestReaderStatus::workInFullScreenIsSeenAndCanBeGivenUp()
{
    FullScreenDesk desk;
    desk.HurryNotes();
    auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    printer->setOutputFormat(QPrinter::PdfFormat);
    printer->setResolution(600);
    printer->setOutputFileName(desk.desk.Folder() + "/out.pdf");
    MainWindow* window = desk.desk.Window();
    QVERIFY(window->PrintTab(window->CurrentTab(), printer, PrintSize::FitPaper));
    const auto* bar = window->findChild<JobBar*>();
    QVERIFY(bar->isVisible());
    Screens::SaveScreen(window, "full-screen-work");
    QTest::mouseClick(bar->findChild<QPushButton*>(), Qt::LeftButton);
    QTRY_VERIFY(!window->IsWorking());
    QVERIFY(!desk.HasStatusBar());
    QTRY_COMPARE(desk.Note(), QString("Given up."));
    QVERIFY(!QFile::exists(printer->outputFileName()));
    QVERIFY(window->isFullScreen());
}

void TestReaderStatus::notesInFullScreenLieOverThePage()
{
    FullScreenDesk desk;
    desk.HurryNotes();
    desk.desk.Window()->ShowNote("Saved.");
    QTRY_COMPARE(desk.Note(), QString("Saved."));
    QTest::keyClick(desk.desk.Window(), Qt::Key_F11);
    desk.desk.Window()->ShowNote("Saved again.");
    QCOMPARE(desk.desk.Window()->statusBar()->currentMessage(), QString("Saved again."));
}

void TestReaderStatus::thePageBoxFollowsPagesThatComeAndGo()
{
    G_UIContext context;
    MemoryDocument document;
    for (int i = 0; i < 3; ++i)
        document.AddPage(210, 297);
    G_DocView view(&context, &document);
    StatusPanel panel(nullptr);
    panel.SetView(&view);
    const auto* box = panel.findChild<QSpinBox*>();
    QCOMPARE(box->suffix(), QString(" / 3"));
    document.AddPage(210, 297);
    emit context.EventMgr()->PageStructChanged(&document);
    QCOMPARE(box->suffix(), QString(" / 4"));
    QCOMPARE(box->maximum(), 4);
    view.GoToPage(nullptr, 3, CCA_GRect(), false);
    QCOMPARE(box->value(), 4);
    QVERIFY(document.RemovePage(0) && document.RemovePage(0));
    emit context.EventMgr()->PageStructChanged(&document);
    QCOMPARE(box->suffix(), QString(" / 2"));
    QCOMPARE(box->maximum(), 2);
    QCOMPARE(box->value(), view.CurrentPageIndex() + 1);
    panel.SetView(nullptr);
    emit context.EventMgr()->PageStructChanged(&document);
    QCOMPARE(box->suffix(), QString());
}

void TestReaderStatus::escapeInThePageBoxLeavesItAsItWas()
{
    G_UIContext context;
    MemoryDocument document;
    for (int i = 0; i < 30; ++i)
        document.AddPage(210, 297);
    G_DocView view(&context, &document);
    StatusPanel panel(nullptr);
    panel.SetView(&view);
    QSignalSpy typed(&panel, &StatusPanel::Typed);
    auto* box = panel.findChild<QSpinBox*>();
    auto* zoom = panel.findChild<QComboBox*>()->lineEdit();
    const QString percent = zoom->text();
    panel.EditPage();
    QTest::keyClicks(box, "7");
    QTest::keyClick(box, Qt::Key_Escape);
    QCOMPARE(box->text(), QString("1 / 30"));
    QCOMPARE(typed.size(), 1);
    QCOMPARE(view.CurrentPageIndex(), 0);
    zoom->selectAll();
    QTest::keyClicks(zoom, "9");
    QTest::keyClick(zoom, Qt::Key_Escape);
    QCOMPARE(zoom->text(), percent);
    QCOMPARE(typed.size(), 2);
}

void TestReaderStatus::workThatIsDoneAllTheSameIsNotToldToBeGivenUp()
{
    JobBar bar(nullptr);
    JobOutcome told;
    int ends = 0;
    connect(&bar, &JobBar::JobEnded, this, [&](const JobOutcome& outcome) {
        told = outcome;
        ++ends;
    });
    for (const bool isGivenUp : {false, true}) {
        Held held;
        bar.Start(this, "Working", held.Work({isGivenUp, {}, {}}));
        bar.findChild<QPushButton*>()->click();
        held.mayEnd = true;
        QTRY_VERIFY(!bar.IsBusy());
        QVERIFY(held.wasAskedToStop);
        QCOMPARE(told.wasGivenUp, isGivenUp);
    }
    QCOMPARE(ends, 2);
}

void TestReaderStatus::whatAPrinterMayStillPrintIsTold()
{
    ReaderDesk desk(false);
    QVERIFY(desk.Window()->OpenFile(OfdFile::WithPages(3).Write(desk.Folder() + "/three.ofd")));
    IG_PageRenderer* renderer = desk.View()->GDocument()->Renderer();
    PrintOrder order;
    order.pages = {0, 1, 2};
    const auto isGivenUp = std::make_shared<std::atomic<bool>>(false);
    const JobControl control{isGivenUp, [isGivenUp](int done, int) { *isGivenUp = done == 1; }};
    const QString sheets = desk.Folder() + "/sheets.pdf";
    PaperPrinter printer(sheets);
    QVERIFY(printer.outputFileName().isEmpty());
    JobOutcome outcome = PrintPages(printer, *renderer, order, control);
    QVERIFY(outcome.wasGivenUp);
    QCOMPARE(outcome.error, QString());
    QCOMPARE(outcome.remark, QString("Pages that were ready may still be printed."));
    QVERIFY(QFile::exists(sheets));
    *isGivenUp = false;
    QPrinter file;
    file.setOutputFormat(QPrinter::PdfFormat);
    file.setOutputFileName(desk.Folder() + "/out.pdf");
    outcome = PrintPages(file, *renderer, order, control);
    QVERIFY(outcome.wasGivenUp);
    QCOMPARE(outcome.remark, QString()); // nothing is left of it
    QVERIFY(!QFile::exists(file.outputFileName()));
}

TETO_TEST_MAIN(TestReaderStatus)
#include "test_reader_status.moc"
