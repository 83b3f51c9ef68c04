#include "reader_desk.h"

#include <tests/ofd/document/ofd_file.h>
#include <tests/support/test_main.h>

#include <frame/view/doc_view.h>

#include <QAction>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QMessageBox>
#include <QtTest>

namespace {

// 100 by 50 mm, the left half black.
OfdFile HalfBlack()
{
    return OfdFile::WithPage("").Set(
        "Doc_0/Pages/Page_0/Content.xml",
        Element("Page", "<ofd:Area><ofd:PhysicalBox>0 0 100 50</ofd:PhysicalBox></ofd:Area><ofd:Content>"
                        "<ofd:Layer ID=\"4\"><ofd:PathObject ID=\"5\" Boundary=\"0 0 100 50\" Fill=\"true\" "
                        "Stroke=\"false\"><ofd:FillColor Value=\"0 0 0\"/><ofd:AbbreviatedData>M 0 0 L 50 0 L 50 50 "
                        "L 0 50 C</ofd:AbbreviatedData></ofd:PathObject></ofd:Layer></ofd:Content>"));
}

QAction* PictureAction(MainWindow* window)
{
    const QList<QAction*> actions = window->actions();
    for (QAction* action : actions) {
        if (action->text().contains("as P&icture"))
            return action;
    }
    return nullptr;
}

} // namespace

// Pictures of pages, written by way of the menu.
class TestReaderPictures : public QObject
{
    Q_OBJECT
private slots:
    void theCurrentPageIsWrittenInTheAskedResolution();
    void thePictureIsTurnedAsThePageIs();
    void theEndingOfTheNameSaysTheFormat();
    void documentsThatForbidExportGiveNoPictures();
    void aFolderThatIsNotThereIsTold();
};

void TestReaderPictures::theCurrentPageIsWrittenInTheAskedResolution()
{
    ReaderDesk desk(false);
    QVERIFY(desk.Window()->OpenFile(HalfBlack().Write(desk.Folder() + "/half.ofd")));
    const QString path = desk.Folder() + "/out.png";
    desk.Context()->AnswerSavePath(path, 254);
    QAction* action = PictureAction(desk.Window());
    QVERIFY(action && action->isEnabled());
    action->trigger();
    QTRY_VERIFY(!desk.Window()->IsWorking());
    QCOMPARE(desk.Context()->ProposedPath(), desk.Folder() + "/half-1.png");
    const QImage picture(path);
    QCOMPARE(picture.size(), QSize(1000, 500));
    QCOMPARE(picture.dotsPerMeterX(), 10000);
    QCOMPARE(picture.pixelColor(250, 250), QColor(Qt::black));
    QCOMPARE(picture.pixelColor(750, 250), QColor(Qt::white));
}

void TestReaderPictures::thePictureIsTurnedAsThePageIs()
{
    ReaderDesk desk(false);
    QVERIFY(desk.Window()->OpenFile(HalfBlack().Write(desk.Folder() + "/half.ofd")));
    desk.View()->SetRotation(90);
    const QString path = desk.Folder() + "/out.png";
    QVERIFY(desk.Window()->SavePagePictureAs(desk.Window()->CurrentTab(), 0, path, 254));
    QTRY_VERIFY(!desk.Window()->IsWorking());
    const QImage picture(path);
    QCOMPARE(picture.size(), QSize(500, 1000));
    QCOMPARE(picture.pixelColor(250, 250), QColor(Qt::black));
    QCOMPARE(picture.pixelColor(250, 750), QColor(Qt::white));
}

void TestReaderPictures::theEndingOfTheNameSaysTheFormat()
{
    ReaderDesk desk(false);
    QVERIFY(desk.Window()->OpenFile(HalfBlack().Write(desk.Folder() + "/half.ofd")));
    const QString jpeg = desk.Folder() + "/out.jpg";
    const QString strange = desk.Folder() + "/out.strange";
    for (const QString& path : {jpeg, strange}) {
        QVERIFY(desk.Window()->SavePagePictureAs(desk.Window()->CurrentTab(), 0, path, 72));
        QTRY_VERIFY(!desk.Window()->IsWorking());
    }
    QVERIFY(BytesOf(jpeg).startsWith("\xFF\xD8"));
    QVERIFY(BytesOf(strange).startsWith("\x89PNG"));
}

void TestReaderPictures::documentsThatForbidExportGiveNoPictures()
{
    ReaderDesk desk(false);
    QVERIFY(desk.Window()->OpenFile(OfdFile::WithPages(1)
                                        .Tail("<ofd:Permissions><ofd:Export>false</ofd:Export></ofd:Permissions>")
                                        .Write(desk.Folder() + "/closed.ofd")));
    desk.Context()->Answer(QMessageBox::Ok);
    PictureAction(desk.Window())->trigger();
    QVERIFY(desk.Context()->Texts().first().contains("do not allow"));
    desk.Context()->Answer(QMessageBox::Ok);
    const QString path = desk.Folder() + "/out.png";
    QVERIFY(!desk.Window()->SavePagePictureAs(desk.Window()->CurrentTab(), 0, path, 72));
    QVERIFY(!QFile::exists(path));
}

void TestReaderPictures::aFolderThatIsNotThereIsTold()
{
    ReaderDesk desk(false);
    QVERIFY(desk.Window()->OpenFile(HalfBlack().Write(desk.Folder() + "/half.ofd")));
    desk.Context()->Answer(QMessageBox::Ok);
    const QString path = desk.Folder() + "/nowhere/out.png";
    QVERIFY(desk.Window()->SavePagePictureAs(desk.Window()->CurrentTab(), 0, path, 72));
    QTRY_VERIFY(!desk.Window()->IsWorking());
    QCOMPARE(desk.Context()->Texts().size(), 1);
    QVERIFY(desk.Context()->Texts().first().contains("cannot be written"));
}

TETO_TEST_MAIN(TestReaderPictures)
#include "test_reader_pictures.moc"
