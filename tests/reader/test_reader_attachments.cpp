#include "reader_desk.h"

#include <tests/ofd/document/ofd_file.h>
#include <tests/support/screens.h>
#include <tests/support/test_main.h>

#include <reader/recent_files.h>

#include <frame/document/ig_document.h>
#include <frame/view/doc_view.h>
#include <frame/view/settings.h>
#include <frame/view/status_note.h>

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QTimer>
#include <QtTest>

namespace {

QString ReadOnlyTitle(const QString& name)
{
    return name + "[*] (read-only) - tetoreader";
}

// The window with a document whose page is one large link to an attachment.
class AttachmentDesk
{
public:
    AttachmentDesk(const QByteArray& name, const QByteArray& bytes, const QByteArray& tail = QByteArray())
        : desk(false)
    {
        const QByteArray part = "data" + name.mid(name.lastIndexOf('.'));
        OfdFile file = OfdFile::WithPages(1);
        file.Tail("<ofd:Attachments>Attachments.xml</ofd:Attachments>" + tail);
        file.Set("Doc_0/Attachments.xml",
                 Element("Attachments", "<ofd:Attachment ID=\"31\" Name=\"" + name + "\"><ofd:FileLoc>" + part +
                                            "</ofd:FileLoc></ofd:Attachment>"));
        file.Set("Doc_0/" + part, bytes);
        file.Set("Doc_0/Pages/Page_0/Content.xml",
                 PageXml("<ofd:PathObject ID=\"5\" Boundary=\"0 0 100 100\" Fill=\"true\" Stroke=\"false\">"
                         "<ofd:Actions><ofd:Action Event=\"CLICK\"><ofd:GotoA AttachID=\"31\"/></ofd:Action>"
                         "</ofd:Actions><ofd:AbbreviatedData>M 0 0 L 100 0 L 100 100 L 0 100 C"
                         "</ofd:AbbreviatedData></ofd:PathObject>"));
        outer = file.Write(desk.Folder() + "/outer.ofd");
        if (!desk.Window()->OpenFile(outer) || !QTest::qWaitForWindowActive(desk.Window()))
            QTest::qFail("the file does not open", __FILE__, __LINE__);
        desk.View()->FinishRendering();
    }
    MainWindow* Window() const { return desk.Window(); }
    DocumentTab* Tab() const { return Window()->CurrentTab(); }
    // On the page, that is on the link.
    void Click(int answer)
    {
        desk.Context()->Answer(answer);
        const QRect page = desk.View()->PageRect(0).translated(-desk.View()->VisibleSceneRect().topLeft());
        auto* area = qobject_cast<QAbstractScrollArea*>(desk.View()->Widget());
        QTest::mouseClick(area->viewport(), Qt::LeftButton, {}, page.topLeft() + QPoint(40, 40));
        if (!QTest::qWaitFor([this] { return desk.Context()->PendingAnswers() == 0; }))
            QTest::qFail("nothing was asked", __FILE__, __LINE__);
        QCoreApplication::processEvents();
    }
    QString Note() const
    {
        const auto* note = desk.View()->Widget()->findChild<G_StatusNote*>();
        return note ? note->text() : QString();
    }

    ReaderDesk desk;
    QString outer;
};

QByteArray BytesOfDocument(int pages)
{
    QTemporaryDir folder;
    return BytesOf(OfdFile::WithPages(pages).Write(folder.filePath("inner.ofd")));
}

// Answers the dialogs that ask for a name, each with the next of these names; one that asks whether to replace a file
// gets a click on that button.
class NameTyper
{
public:
    NameTyper(const QStringList& typedNames, int button)
        : names(typedNames)
    {
        QObject::connect(&timer, &QTimer::timeout, &timer, [this, button] {
            auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (box && box->button(QMessageBox::StandardButton(button))) {
                Screens::SaveScreen(box, "replace-file");
                box->button(QMessageBox::StandardButton(button))->click();
            }
            if (!dialog)
                return;
            proposed << dialog->findChild<QLineEdit*>("fileNameEdit")->text();
            if (names.isEmpty()) {
                dialog->reject();
                return;
            }
            dialog->findChild<QLineEdit*>("fileNameEdit")->setText(names.takeFirst());
            QMetaObject::invokeMethod(dialog, "accept");
        });
        timer.start(20);
    }

    QStringList names;
    QStringList proposed;
    QTimer timer;
};

} // namespace

// Attachments that links lead to: those that are documents may be opened. And the names of files that are saved.
class TestReaderAttachments : public QObject
{
    Q_OBJECT
private slots:
    void aDocumentIsOpenedInATabOfItsOwn();
    void itsFileIsThereForTheUserAloneAndGoesWithTheTab();
    void itIsSavedWhenTheUserWantsThat();
    void nothingHappensWhenTheUserWantsNeither();
    void anAttachmentThatOnlyCallsItselfADocumentIsToldAndLeavesNothing();
    void aNameThatIsTooLongForAFileIsCut();
    void aDocumentThatForbidsExportOpensNoAttachments();
    void whatIsSavedOfItIsProposedWhereFilesStay();
    void reloadingItKeepsItsFile();
    void anotherKindOfFileIsOnlyOfferedToBeSaved();
    void namesGetTheEndingOfTheirFilter_data();
    void namesGetTheEndingOfTheirFilter();
    void aNameTypedWithoutAnEndingGetsOne();
    void aFileWithTheEndingIsNotReplacedUnasked();
    void aFileWithTheEndingIsReplacedWhenTheUserAgrees();
};

void TestReaderAttachments::aDocumentIsOpenedInATabOfItsOwn()
{
    AttachmentDesk desk("inner.ofd", BytesOfDocument(7));
    desk.Click(QMessageBox::Open);
    QCOMPARE(desk.desk.Context()->Texts().size(), 1);
    QVERIFY(desk.desk.Context()->Texts().first().contains("inner.ofd"));
    QCOMPARE(desk.Window()->TabCount(), 2);
    QCOMPARE(desk.Tab()->Document()->GetPageCount(), 7);
    QVERIFY(desk.Tab()->Document()->IsReadOnly());
    QCOMPARE(desk.Window()->windowTitle(), ReadOnlyTitle("inner.ofd"));
    QCOMPARE(RecentFiles().Paths(), QStringList(desk.outer));
}

void TestReaderAttachments::itsFileIsThereForTheUserAloneAndGoesWithTheTab()
{
    AttachmentDesk desk("inner.ofd", BytesOfDocument(2));
    desk.Click(QMessageBox::Open);
    const QFileInfo file(desk.Tab()->Path());
    QVERIFY(file.exists());
    constexpr QFile::Permissions others = QFile::Permissions(0x0077) | QFile::WriteOwner | QFile::ExeOwner;
    QCOMPARE(file.permissions() & others, QFile::Permissions());
    const QFileInfo folder(file.path());
    QVERIFY(folder.isDir());
    QCOMPARE(folder.permissions() & QFile::Permissions(0x0077), QFile::Permissions()); // group and others
    desk.desk.View()->GoToPage(nullptr, 1, CCA_GRect(), false);
    QVERIFY(desk.Window()->CloseTab(1));
    QVERIFY(!QFileInfo::exists(file.path()));
    const QVariantList remembered = G_SettingMgr::Instance()->ConfigValue(QStringLiteral("recent.views")).toList();
    for (const QVariant& view : remembered)
        QVERIFY(view.toMap().value("file").toString() != file.filePath());
    QCOMPARE(desk.Window()->TabCount(), 1);
}

void TestReaderAttachments::itIsSavedWhenTheUserWantsThat()
{
    const QByteArray inner = BytesOfDocument(2);
    AttachmentDesk desk("inner.ofd", inner);
    const QString target = desk.desk.Folder() + "/kept.ofd";
    desk.desk.Context()->AnswerSavePath(target);
    desk.Click(QMessageBox::Save);
    QCOMPARE(BytesOf(target), inner);
    QCOMPARE(desk.Note(), QString("The attachment was saved."));
    QCOMPARE(desk.Window()->TabCount(), 1);
}

void TestReaderAttachments::nothingHappensWhenTheUserWantsNeither()
{
    AttachmentDesk desk("inner.ofd", BytesOfDocument(2));
    desk.Click(QMessageBox::Cancel);
    QCOMPARE(desk.Window()->TabCount(), 1);
    QCOMPARE(desk.Note(), QString());
}

void TestReaderAttachments::anAttachmentThatOnlyCallsItselfADocumentIsToldAndLeavesNothing()
{
    const QDir temporary(QDir::tempPath());
    const QStringList before = temporary.entryList({"tetoreader-*"}, QDir::Dirs);
    AttachmentDesk desk("inner.OFD", "#!/bin/sh\necho no document\n");
    desk.desk.Context()->Answer(QMessageBox::Open);
    desk.Click(QMessageBox::Ok);
    QCOMPARE(desk.desk.Context()->Texts().size(), 2);
    QVERIFY(desk.desk.Context()->Texts().last().contains("not a document"));
    QCOMPARE(desk.Window()->TabCount(), 1);
    QCOMPARE(temporary.entryList({"tetoreader-*"}, QDir::Dirs), before);
}

void TestReaderAttachments::aNameThatIsTooLongForAFileIsCut()
{
    AttachmentDesk desk(QString(100, QChar(0x7B3A)).toUtf8() + ".ofd", BytesOfDocument(3));
    desk.Click(QMessageBox::Open);
    QCOMPARE(desk.Window()->TabCount(), 2);
    QCOMPARE(desk.Tab()->Document()->GetPageCount(), 3);
}

void TestReaderAttachments::aDocumentThatForbidsExportOpensNoAttachments()
{
    AttachmentDesk desk("inner.ofd", BytesOfDocument(2),
                        "<ofd:Permissions><ofd:Export>false</ofd:Export></ofd:Permissions>");
    const CCA_Point place = desk.desk.View()->ScenePointFromDocPoint({20, 20}, 0);
    G_PageLink link;
    QVERIFY(desk.desk.View()->LinkAt(place, &link));
    desk.desk.View()->RunLink(link.actions);
    QTRY_VERIFY(desk.Note().contains("does not allow"));
    QVERIFY(desk.desk.Context()->Texts().isEmpty());
    QCOMPARE(desk.Window()->TabCount(), 1);
}

void TestReaderAttachments::whatIsSavedOfItIsProposedWhereFilesStay()
{
    AttachmentDesk desk("inner.ofd", BytesOfDocument(2));
    QCOMPARE(desk.Tab()->PathToPropose(), desk.outer);
    desk.Click(QMessageBox::Open);
    const QFileInfo proposed(desk.Tab()->PathToPropose());
    QCOMPARE(proposed.fileName(), QString("inner.ofd"));
    QVERIFY(proposed.path() != QFileInfo(desk.Tab()->Path()).path());
    const QString kept = desk.desk.Folder() + "/kept.ofd";
    QVERIFY(desk.Window()->SaveTabAs(desk.Tab(), kept));
    QCOMPARE(desk.Tab()->PathToPropose(), kept); // it is a file like others now
    QVERIFY(!desk.Tab()->IsTemporary());
}

void TestReaderAttachments::reloadingItKeepsItsFile()
{
    AttachmentDesk desk("inner.ofd", BytesOfDocument(2));
    desk.Click(QMessageBox::Open);
    const QString path = desk.Tab()->Path();
    QVERIFY(desk.Window()->ReloadTab(desk.Tab()));
    QCOMPARE(desk.Tab()->Path(), path);
    QVERIFY(desk.Tab()->IsTemporary() && QFile::exists(path));
    QVERIFY(desk.Window()->CloseTab(1));
    QVERIFY(!QFile::exists(path));
}

void TestReaderAttachments::anotherKindOfFileIsOnlyOfferedToBeSaved()
{
    AttachmentDesk desk("run.sh", "#!/bin/sh\n");
    const QString target = desk.desk.Folder() + "/run.sh";
    desk.desk.Context()->AnswerSavePath(target);
    const CCA_Point place = desk.desk.View()->ScenePointFromDocPoint({20, 20}, 0);
    G_PageLink link;
    QVERIFY(desk.desk.View()->LinkAt(place, &link));
    desk.desk.View()->RunLink(link.actions);
    QTRY_VERIFY(QFile::exists(target));
    QVERIFY(!QFileInfo(target).isExecutable());
    QVERIFY(desk.desk.Context()->Texts().isEmpty());
    const QString filter = desk.desk.Context()->ProposedFilter();
    QCOMPARE(filter, QString("*.sh;;All files (*)"));
    QCOMPARE(WithEnding("/a/run", filter.section(";;", 0, 0)), QString("/a/run.sh"));
    QCOMPARE(WithEnding("/a/run", filter.section(";;", 1)), QString("/a/run"));
}

void TestReaderAttachments::namesGetTheEndingOfTheirFilter_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("wanted");
    QTest::newRow("none") << "/a.b/report"
                          << "/a.b/report.ofd";
    QTest::newRow("its own") << "/a/report.ofd"
                             << "/a/report.ofd";
    QTest::newRow("another") << "/a/report.zip"
                             << "/a/report.zip";
    QTest::newRow("version") << "/a/report 1.5"
                             << "/a/report 1.5.ofd";
    QTest::newRow("date") << "/a/2026.11 report"
                          << "/a/2026.11 report.ofd";
    QTest::newRow("Chinese") << QString::fromUtf8("/a/合同.终版") << QString::fromUtf8("/a/合同.终版.ofd");
    QTest::newRow("dot") << "/a/report."
                         << "/a/report.ofd";
    QTest::newRow("letters and digits") << "/a/song.mp3"
                                        << "/a/song.mp3";
}

void TestReaderAttachments::namesGetTheEndingOfTheirFilter()
{
    QFETCH(QString, typed);
    QFETCH(QString, wanted);
    QCOMPARE(WithEnding(typed, "OFD documents (*.ofd)"), wanted);
    QCOMPARE(WithEnding(typed, QString()), typed);
    QCOMPARE(WithEnding(typed, "All files (*)"), typed);
    QCOMPARE(WithEnding("/a/picture", "JPEG pictures (*.jpg *.jpeg)"), QString("/a/picture.jpg"));
}

void TestReaderAttachments::aNameTypedWithoutAnEndingGetsOne()
{
    QTemporaryDir folder;
    ReaderContext context;
    NameTyper typer({folder.filePath("report")}, QMessageBox::No);
    const QString chosen = context.AskSavePath("Save As", folder.filePath("old.ofd"), "OFD documents (*.ofd)");
    QCOMPARE(chosen, folder.filePath("report.ofd"));
    QCOMPARE(typer.proposed, QStringList("old.ofd"));
}

void TestReaderAttachments::aFileWithTheEndingIsNotReplacedUnasked()
{
    QTemporaryDir folder;
    OfdFile::WithPages(1).Write(folder.filePath("report.ofd"));
    ReaderContext context;
    NameTyper typer({folder.filePath("report"), folder.filePath("other")}, QMessageBox::No);
    const QString chosen = context.AskSavePath("Save As", folder.filePath("old.ofd"), "OFD documents (*.ofd)");
    QCOMPARE(chosen, folder.filePath("other.ofd"));
    QCOMPARE(typer.proposed, (QStringList{"old.ofd", "report.ofd"})); // asked anew, with the name that is taken
    typer.timer.stop();
    NameTyper rejecter({folder.filePath("report")}, QMessageBox::No);
    QCOMPARE(context.AskSavePath("Save As", folder.filePath("old.ofd"), "OFD documents (*.ofd)"), QString());
}

void TestReaderAttachments::aFileWithTheEndingIsReplacedWhenTheUserAgrees()
{
    QTemporaryDir folder;
    OfdFile::WithPages(1).Write(folder.filePath("report.ofd"));
    ReaderContext context;
    NameTyper typer({folder.filePath("report")}, QMessageBox::Yes);
    const QString chosen = context.AskSavePath("Save As", folder.filePath("old.ofd"), "OFD documents (*.ofd)");
    QCOMPARE(chosen, folder.filePath("report.ofd"));
}

TETO_TEST_MAIN(TestReaderAttachments)
#include "test_reader_attachments.moc"
