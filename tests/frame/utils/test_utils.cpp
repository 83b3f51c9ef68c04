// Screen scale, folders, safe opening, dialogs, popups and the picture over an empty list.
#include <tests/support/screens.h>
#include <tests/support/test_main.h>

#include <frame/utils/dialog.h>
#include <frame/utils/dpi.h>
#include <frame/utils/no_content.h>
#include <frame/utils/paths.h>
#include <frame/utils/popup.h>
#include <frame/utils/safe_process.h>

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>
#include <QVBoxLayout>
#include <QtTest>

using Utils::OVDpi;
using Utils::Widgets::OV_Dialog;
using Utils::Widgets::OV_Popup;

namespace {

class TestUtils : public QObject
{
    Q_OBJECT
private slots:
    void init() { OVDpi::Instance()->OverrideScale(1); }
    void cleanup()
    {
        OVDpi::Instance()->OverrideScale(0);
        Utils::Safe::OV_SafeProcess::SetOpener({});
    }

    void theScaleIsTheScreensUnlessItIsFixed();
    void styleSheetsAreScaledByTheirPixelSizesAlone_data();
    void styleSheetsAreScaledByTheirPixelSizesAlone();
    void foldersEndWithASeparator();
    void theTemporaryFolderIsForItsUserAlone();
    void plainFilesAreHandedToTheDesktop();
    void whatCouldRunIsNotOpened_data();
    void whatCouldRunIsNotOpened();
    void aLinkToSomethingRunnableIsNotOpened();
    void onlyWebAndMailAddressesAreOpened_data();
    void onlyWebAndMailAddressesAreOpened();
    void aDialogHasNoFrameAndIsModal();
    void aDialogScalesOnce();
    void aDialogScalesTheSizesOfItsWidgets();
    void aDialogMovesWithTheMouseWhenItMay();
    void enterPressesTheDefaultButtonOnceAndIsTold();
    void aDialogMayBeDeletedByWhoHearsOfEnter();
    void escapeStillRejectsADialog();
    void aPopupsExecReturnsWhenItCloses();
    void aPopupStaysOnTheScreen();
    void aPopupMayBeDeletedWhileItIsOpen();
    void thePictureIsPaintedOverTheContentUntilDeleted();
    void thePictureMovesAndLetsTheMouseThrough();
    void aMissingPictureIsHarmless();
};

void TestUtils::theScaleIsTheScreensUnlessItIsFixed()
{
    OVDpi* dpi = OVDpi::Instance();
    dpi->OverrideScale(0);
    const float expected = static_cast<float>(QGuiApplication::primaryScreen()->logicalDotsPerInch() / 96);
    QCOMPARE(dpi->DpiScale(), qMax(1.0F, expected));
    dpi->OverrideScale(1.5F);
    QCOMPARE(dpi->DpiScale(), 1.5F);
    QCOMPARE(dpi->ScaleSize(10), 15.0F);
    QCOMPARE(OVDpi::Instance(), dpi);
}

void TestUtils::styleSheetsAreScaledByTheirPixelSizesAlone_data()
{
    QTest::addColumn<QString>("styleSheet");
    QTest::addColumn<QString>("scaled");
    QTest::newRow("one") << "font-size:12px;"
                         << "font-size:18px;";
    QTest::newRow("several") << "margin:1px 2px 3px;"
                             << "margin:2px 3px 5px;";
    QTest::newRow("a fraction without a whole part") << "width:.8px"
                                                     << "width:1px";
    QTest::newRow("names of files stay") << "image:url(:/icon_16px.svg);width:16px"
                                         << "image:url(:/icon_16px.svg);width:24px";
    QTest::newRow("fractions are rounded") << "width:0.5px;height:7.4px"
                                           << "width:1px;height:11px";
    QTest::newRow("negative") << "margin-left:-4px"
                              << "margin-left:-6px";
    QTest::newRow("other units and names stay") << "a:12pt;b:3em;image:url(:/16pxl/x.svg);color:#36425A"
                                                << "a:12pt;b:3em;image:url(:/16pxl/x.svg);color:#36425A";
    QTest::newRow("empty") << ""
                           << "";
}

void TestUtils::styleSheetsAreScaledByTheirPixelSizesAlone()
{
    QFETCH(QString, styleSheet);
    QFETCH(QString, scaled);
    OVDpi::Instance()->OverrideScale(1.5F);
    QCOMPARE(OVDpi::Instance()->ScaleStyleSheet(styleSheet), scaled);
    QCOMPARE(Utils::DPI::OV_Util::ScaleStyleSheet(styleSheet), scaled);
}

void TestUtils::foldersEndWithASeparator()
{
    QVERIFY(Utils::OV_Path::AppPath().endsWith(QDir::separator()));
    QVERIFY(Utils::OV_Path::TempPath().endsWith(QDir::separator()));
    QCOMPARE(QDir(Utils::OV_Path::AppPath()), QDir(QCoreApplication::applicationDirPath()));
    QVERIFY(QFileInfo(Utils::OV_Path::TempPath()).isDir());
    QCOMPARE(Utils::OV_Path::TempPath(), Utils::OV_Path::TempPath());
}

void TestUtils::theTemporaryFolderIsForItsUserAlone()
{
    for (int i = 0; i < 2; ++i) {
        const QString folder = Utils::OV_Path::TempPath();
        const QFile::Permissions rights = QFileInfo(folder).permissions();
        QVERIFY(rights & QFile::WriteOwner);
        QCOMPARE(rights & (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther), 0);
        QVERIFY(QDir(folder).removeRecursively()); // it is made again when it is asked for
    }
}

// Makes a file and tells what would be opened for it.
class Opened
{
public:
    Opened()
    {
        Utils::Safe::OV_SafeProcess::SetOpener([this](const QUrl& url) {
            urls.append(url);
            return succeeds;
        });
    }
    QString File(const QString& name, QFile::Permissions extra = {}) const
    {
        QFile file(folder.filePath(name));
        if (file.open(QIODevice::WriteOnly))
            file.write("content");
        file.close();
        file.setPermissions(file.permissions() | extra);
        return file.fileName();
    }
    QTemporaryDir folder;
    QList<QUrl> urls;
    bool succeeds = true;
};

void TestUtils::plainFilesAreHandedToTheDesktop()
{
    Opened opened;
    const QString path = opened.File("report #1 & more.pdf");
    QVERIFY(Utils::Safe::OV_SafeProcess::OpenLocalFile(path));
    QCOMPARE(opened.urls, QList<QUrl>{QUrl::fromLocalFile(path)});
    QCOMPARE(opened.urls.first().toLocalFile(), path);
    opened.succeeds = false;
    QVERIFY(!Utils::Safe::OV_SafeProcess::OpenLocalFile(path));
}

void TestUtils::whatCouldRunIsNotOpened_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isExecutable");
    QTest::newRow("mode bits") << "tool" << true;
    QTest::newRow("document with mode bits") << "report.pdf" << true;
    QTest::newRow("desktop entry") << "app.desktop" << false;
    QTest::newRow("desktop entry in capitals") << "app.DESKTOP" << false;
    QTest::newRow("shell script") << "install.sh" << false;
    QTest::newRow("program of another system") << "setup.exe" << false;
}

void TestUtils::whatCouldRunIsNotOpened()
{
    QFETCH(QString, name);
    QFETCH(bool, isExecutable);
    Opened opened;
    const QString path = opened.File(name, isExecutable ? QFile::ExeUser : QFile::Permissions());
    QVERIFY(!Utils::Safe::OV_SafeProcess::OpenLocalFile(path));
    QVERIFY(!Utils::Safe::OV_SafeProcess::OpenLocalFile(opened.folder.filePath("missing.txt")));
    QVERIFY(!Utils::Safe::OV_SafeProcess::OpenLocalFile(opened.folder.path()));
    QVERIFY(!Utils::Safe::OV_SafeProcess::OpenLocalFile(QString()));
    QVERIFY(opened.urls.isEmpty());
}

void TestUtils::aLinkToSomethingRunnableIsNotOpened()
{
    Opened opened;
    const QString target = opened.File("app.desktop");
    const QString link = opened.folder.filePath("harmless.txt");
    QVERIFY(QFile::link(target, link));
    QVERIFY(!Utils::Safe::OV_SafeProcess::OpenLocalFile(link));
    QVERIFY(opened.urls.isEmpty());
}

void TestUtils::onlyWebAndMailAddressesAreOpened_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("opens");
    QTest::newRow("https") << "https://example.org/a?b=c" << true;
    QTest::newRow("http") << " http://example.org " << true;
    QTest::newRow("mail") << "mailto:someone@example.org" << true;
    QTest::newRow("capitals") << "HTTPS://example.org" << true;
    QTest::newRow("file") << "file:///etc/passwd" << false;
    QTest::newRow("script") << "javascript:alert(1)" << false;
    QTest::newRow("no scheme") << "example.org" << false;
    QTest::newRow("path") << "/bin/sh" << false;
    QTest::newRow("remote terminal") << "ssh://host" << false;
    QTest::newRow("empty") << "" << false;
}

void TestUtils::onlyWebAndMailAddressesAreOpened()
{
    QFETCH(QString, address);
    QFETCH(bool, opens);
    Opened opened;
    QCOMPARE(Utils::Safe::OV_SafeProcess::OpenUrl(address), opens);
    QCOMPARE(opened.urls.size(), opens ? 1 : 0);
}

void TestUtils::aDialogHasNoFrameAndIsModal()
{
    OV_Dialog dialog(nullptr);
    QVERIFY(dialog.windowFlags() & Qt::FramelessWindowHint);
    QVERIFY(dialog.isModal());
    QTimer::singleShot(0, &dialog, [&dialog] { dialog.accept(); });
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
}

void TestUtils::aDialogScalesOnce()
{
    OVDpi::Instance()->OverrideScale(2);
    OV_Dialog dialog(nullptr);
    dialog.setStyleSheet("QPushButton{padding:4px}");
    dialog.setFixedSize(100, 50);
    dialog.ScaleDialog(true, QString());
    QCOMPARE(dialog.styleSheet(), QStringLiteral("QPushButton{padding:8px}"));
    QCOMPARE(dialog.minimumSize(), QSize(200, 100));
    dialog.ScaleDialog(true, QString());
    QCOMPARE(dialog.styleSheet(), QStringLiteral("QPushButton{padding:8px}"));
    QCOMPARE(dialog.minimumSize(), QSize(200, 100));
    dialog.ScaleDialog(false, QStringLiteral("QLabel{margin:3px}"));
    QCOMPARE(dialog.styleSheet(), QStringLiteral("QLabel{margin:6px}"));
}

void TestUtils::aDialogScalesTheSizesOfItsWidgets()
{
    OVDpi::Instance()->OverrideScale(1.5F);
    OV_Dialog dialog(nullptr);
    auto* button = new QPushButton("Ok", &dialog);
    button->setFixedHeight(20);
    auto* free = new QPushButton("Free", &dialog);
    dialog.ScaleDialog(true, QString());
    QCOMPARE(button->minimumHeight(), 30);
    QCOMPARE(button->maximumHeight(), 30);
    QCOMPARE(free->maximumHeight(), QWIDGETSIZE_MAX);
}

void DragOn(QWidget* widget, const QPoint& distance)
{
    const QPoint from(10, 10);
    const QPoint start = widget->mapToGlobal(from);
    QMouseEvent press(QEvent::MouseButtonPress, from, start, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(widget, &press);
    QMouseEvent move(QEvent::MouseMove, from + distance, start + distance, Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QApplication::sendEvent(widget, &move);
    QMouseEvent release(QEvent::MouseButtonRelease, from, start + distance, Qt::LeftButton, Qt::NoButton,
                        Qt::NoModifier);
    QApplication::sendEvent(widget, &release);
}

void TestUtils::aDialogMovesWithTheMouseWhenItMay()
{
    OV_Dialog dialog(nullptr, true);
    dialog.setGeometry(100, 100, 200, 100);
    DragOn(&dialog, QPoint(30, 40));
    QCOMPARE(dialog.pos(), QPoint(130, 140));
    OV_Dialog fixed(nullptr, false);
    fixed.setGeometry(100, 100, 200, 100);
    DragOn(&fixed, QPoint(30, 40));
    QCOMPARE(fixed.pos(), QPoint(100, 100));
}

void TestUtils::enterPressesTheDefaultButtonOnceAndIsTold()
{
    OV_Dialog dialog(nullptr);
    QVBoxLayout layout(&dialog);
    QPushButton first("First");
    QPushButton chosen("Chosen");
    layout.addWidget(&first);
    layout.addWidget(&chosen);
    dialog.SetDefaultBtn(&chosen);
    QSignalSpy told(&dialog, &OV_Dialog::PressEnter);
    QSignalSpy firstClicked(&first, &QPushButton::clicked);
    QSignalSpy chosenClicked(&chosen, &QPushButton::clicked);
    QTest::keyClick(&dialog, Qt::Key_Return);
    QTest::keyClick(&dialog, Qt::Key_Enter);
    QCOMPARE(told.count(), 2);
    QCOMPARE(chosenClicked.count(), 2);
    QCOMPARE(firstClicked.count(), 0);
    chosen.setEnabled(false);
    QTest::keyClick(&dialog, Qt::Key_Return);
    QCOMPARE(chosenClicked.count(), 2);
}

void TestUtils::aDialogMayBeDeletedByWhoHearsOfEnter()
{
    auto* dialog = new OV_Dialog(nullptr);
    QPushButton chosen("Chosen"); // outlives the dialog
    dialog->SetDefaultBtn(&chosen);
    QSignalSpy clicked(&chosen, &QPushButton::clicked);
    connect(dialog, &OV_Dialog::PressEnter, this, [dialog] { delete dialog; });
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QCoreApplication::sendEvent(dialog, &enter);
    QCOMPARE(clicked.count(), 0);
}

void TestUtils::escapeStillRejectsADialog()
{
    OV_Dialog dialog(nullptr);
    QSignalSpy rejected(&dialog, &QDialog::rejected);
    dialog.show();
    QTest::keyClick(&dialog, Qt::Key_Escape);
    QCOMPARE(rejected.count(), 1);
}

void TestUtils::aPopupsExecReturnsWhenItCloses()
{
    OV_Popup popup(nullptr);
    popup.setFixedSize(80, 40);
    bool wasVisible = false;
    QTimer::singleShot(0, &popup, [&] {
        wasVisible = popup.isVisible();
        popup.close();
    });
    popup.exec(QPoint(50, 60));
    QVERIFY(wasVisible);
    QVERIFY(!popup.isVisible());
    QCOMPARE(popup.pos(), QPoint(50, 60));
}

void TestUtils::aPopupStaysOnTheScreen()
{
    OV_Popup popup(nullptr);
    popup.setFixedSize(80, 40);
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    QTimer::singleShot(0, &popup, [&] { popup.hide(); });
    popup.exec(screen.bottomRight());
    QVERIFY(screen.contains(popup.geometry()));
    QTimer::singleShot(0, &popup, [&] { popup.hide(); });
    popup.exec(QPoint(-500, -500));
    QVERIFY(screen.contains(popup.geometry()));
}

void TestUtils::aPopupMayBeDeletedWhileItIsOpen()
{
    auto* popup = new OV_Popup(nullptr);
    const QPointer<OV_Popup> alive(popup);
    QTimer::singleShot(0, qApp, [popup] { delete popup; });
    popup->exec(QPoint(10, 10));
    QVERIFY(!alive);
}

void TestUtils::thePictureIsPaintedOverTheContentUntilDeleted()
{
    QWidget list;
    list.resize(200, 200);
    list.setStyleSheet("background:#ffffff");
    list.show();
    QPixmap pixmap(60, 40);
    pixmap.fill(Qt::blue);
    const QRect place(70, 50, 60, 40);
    OVPaintNoContent* picture = OVPaintNoContent::ShowPixmap(&list, place, &pixmap);
    pixmap.fill(Qt::red); // a copy was taken
    QCOMPARE(picture->PixRect(), place);
    QCOMPARE(Screens::Grab(&list).pixelColor(place.center()), QColor(Qt::blue));
    QVERIFY(Screens::Grab(&list).pixelColor(10, 10) != QColor(Qt::blue));
    delete picture;
    QVERIFY(Screens::Grab(&list).pixelColor(place.center()) != QColor(Qt::blue));
}

void TestUtils::thePictureMovesAndLetsTheMouseThrough()
{
    QWidget list;
    list.resize(200, 200);
    list.show();
    QPixmap pixmap(60, 40);
    pixmap.fill(Qt::blue);
    OVPaintNoContent* picture = OVPaintNoContent::ShowPixmap(&list, QRect(0, 0, 60, 40), &pixmap);
    picture->SetPixRect(QRect(100, 120, 60, 40));
    QCOMPARE(picture->PixRect(), QRect(100, 120, 60, 40));
    const QImage image = Screens::Grab(&list);
    QCOMPARE(image.pixelColor(130, 140), QColor(Qt::blue));
    QVERIFY(image.pixelColor(10, 10) != QColor(Qt::blue));
    QCOMPARE(list.childAt(130, 140), nullptr); // the mouse finds the list itself
    QCOMPARE(picture->focusPolicy(), Qt::NoFocus);
}

void TestUtils::aMissingPictureIsHarmless()
{
    QWidget list;
    list.show();
    QVERIFY(OVPaintNoContent::ShowPixmap(&list, QRect(0, 0, 10, 10), nullptr));
    Screens::Grab(&list);
}

} // namespace

TETO_TEST_MAIN(TestUtils)
#include "test_utils.moc"
