#include "reader_desk.h"

#include <tests/ofd/document/ofd_file.h>
#include <tests/support/test_main.h>

#include <reader/appearance.h>
#include <reader/welcome.h>

#include <frame/document/ig_document.h>
#include <frame/view/doc_view.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QAction>
#include <QComboBox>
#include <QFile>
#include <QHash>
#include <QLineEdit>
#include <QMenuBar>
#include <QPalette>
#include <QPushButton>
#include <QSpinBox>
#include <QTabBar>
#include <QToolBar>
#include <QtTest>

namespace {

bool IsControl(const QWidget* widget)
{
    if (qobject_cast<const QLineEdit*>(widget)) // those of boxes are named as their boxes
        return !qobject_cast<const QComboBox*>(widget->parentWidget()) &&
               !qobject_cast<const QAbstractSpinBox*>(widget->parentWidget());
    return qobject_cast<const QAbstractButton*>(widget) || qobject_cast<const QComboBox*>(widget) ||
           qobject_cast<const QAbstractSpinBox*>(widget);
}

QString SpokenName(QWidget* widget)
{
    QAccessibleInterface* face = QAccessible::queryAccessibleInterface(widget);
    return face ? face->text(QAccessible::Name) : QString();
}

} // namespace

// What the window looks like to people with other eyes, other desktops and no mouse.
class TestReaderAppearance : public QObject
{
    Q_OBJECT
private slots:
    void cleanup() { QApplication::setPalette(QPalette()); }
    void onADarkDesktopTheWindowIsLight();
    void aLightDesktopKeepsItsColours();
    void everyControlHasANameForScreenReaders();
    void noTwoCommandsShareTheirKeys();
    void everyCommandOfTheToolBarStandsInAMenu();
    void commandsForDocumentsAreGreyWithoutOne();
    void theEmptyWindowOffersTheDocumentsOpenedLast();
    void closeButtonsOfTabsCloseTheirOwnTab();
    void theMiddleButtonClosesATab();
    void manyTabsKeepNamesThatCanBeRead();
    void theTitleSaysThatADocumentIsReadOnly();
};

void TestReaderAppearance::onADarkDesktopTheWindowIsLight()
{
    QApplication::setPalette(QPalette(QColor(40, 44, 48)));
    QVERIFY(QApplication::palette().color(QPalette::Window).lightness() < 100);
    KeepWindowLight();
    const QPalette palette = QApplication::palette();
    for (const QPalette::ColorRole ground : {QPalette::Window, QPalette::Base, QPalette::Button})
        QVERIFY(palette.color(ground).lightness() > 200);
    for (const QPalette::ColorRole text : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        QVERIFY(palette.color(text).lightness() < 60);
}

void TestReaderAppearance::aLightDesktopKeepsItsColours()
{
    const QPalette desktop(QColor(230, 225, 210));
    QApplication::setPalette(desktop);
    KeepWindowLight();
    QCOMPARE(QApplication::palette().color(QPalette::Window), desktop.color(QPalette::Window));
}

void TestReaderAppearance::everyControlHasANameForScreenReaders()
{
    ReaderDesk desk;
    QVERIFY(desk.Window()->OpenFile(desk.Sample("tour.ofd")));
    QVERIFY(desk.WaitForPanes());
    desk.Window()->Find();
    int controls = 0;
    const QList<QWidget*> widgets = desk.Window()->findChildren<QWidget*>();
    for (QWidget* widget : widgets) {
        if (!widget->isVisible() || !IsControl(widget))
            continue;
        ++controls;
        QVERIFY2(!SpokenName(widget).isEmpty(),
                 qPrintable(QString(widget->metaObject()->className()) + widget->objectName() + " in " +
                            widget->parentWidget()->metaObject()->className()));
    }
    QVERIFY(controls > 15);
}

void TestReaderAppearance::noTwoCommandsShareTheirKeys()
{
    ReaderDesk desk;
    QHash<QString, QString> taken;
    const QList<QAction*> actions = desk.Window()->findChildren<QAction*>();
    for (const QAction* action : actions) {
        const QList<QKeySequence> all = action->shortcuts();
        for (const QKeySequence& keys : all) {
            const QString name = keys.toString();
            QVERIFY2(!taken.contains(name), qPrintable(name + ": " + taken.value(name) + ", " + action->text()));
            taken.insert(name, action->text());
        }
    }
    QVERIFY(taken.size() > 25);
}

void TestReaderAppearance::everyCommandOfTheToolBarStandsInAMenu()
{
    ReaderDesk desk(false);
    QSet<QAction*> inMenus;
    const QList<QAction*> menus = desk.Window()->menuBar()->actions();
    for (const QAction* menu : menus) {
        const QList<QAction*> entries = menu->menu()->actions();
        for (QAction* entry : entries)
            inMenus.insert(entry);
    }
    const QList<QAction*> tools = desk.Window()->findChild<QToolBar*>()->actions();
    QVERIFY(tools.size() > 10);
    for (QAction* tool : tools)
        QVERIFY2(tool->isSeparator() || inMenus.contains(tool), qPrintable(tool->text()));
}

void TestReaderAppearance::commandsForDocumentsAreGreyWithoutOne()
{
    ReaderDesk desk(false);
    QStringList enabled;
    const QList<QAction*> actions = desk.Window()->actions();
    for (const QAction* action : actions) {
        if (action->isEnabled())
            enabled << action->text();
    }
    QCOMPARE(enabled, QStringList({"&Open...", "&Quit", "&Full Screen", "&About"}));
}

void TestReaderAppearance::theEmptyWindowOffersTheDocumentsOpenedLast()
{
    ReaderDesk desk(false);
    const QString gone = OfdFile::WithPages(1).Write(desk.Folder() + "/gone.ofd");
    const QString kept = OfdFile::WithPages(1).Write(desk.Folder() + "/this & that.ofd");
    for (const QString& path : {kept, gone}) {
        QVERIFY(desk.Window()->OpenFile(path));
        QVERIFY(desk.Window()->CloseTab(0));
        if (path == gone)
            QVERIFY(QFile::remove(path));
    }
    QVERIFY(desk.Window()->OpenFile(kept));
    QVERIFY(desk.Window()->CloseTab(0));
    QStringList names;
    QPushButton* offered = nullptr;
    const auto look = [&] {
        names.clear();
        const QList<QPushButton*> buttons = desk.Window()->findChild<Welcome*>()->findChildren<QPushButton*>();
        for (QPushButton* button : buttons) {
            if (!button->isVisible() || !button->isFlat())
                continue;
            names << button->text();
            offered = button;
        }
        return names;
    };
    QTRY_COMPARE(look(), QStringList("this && that.ofd"));
    QTest::mouseClick(offered, Qt::LeftButton);
    QTRY_COMPARE(desk.Window()->TabCount(), 1);
    QCOMPARE(desk.Window()->CurrentTab()->Path(), kept);
}

void TestReaderAppearance::closeButtonsOfTabsCloseTheirOwnTab()
{
    ReaderDesk desk(false);
    for (const char* name : {"a.ofd", "b.ofd", "c.ofd"})
        QVERIFY(desk.Window()->OpenFile(OfdFile::WithPages(1).Write(desk.Folder() + "/" + name)));
    auto* tabs = desk.Window()->findChild<QTabBar*>();
    tabs->moveTab(0, 2); // b, c, a
    QTest::mouseClick(tabs->tabButton(1, QTabBar::RightSide), Qt::LeftButton);
    QTRY_COMPARE(desk.Window()->TabCount(), 2);
    QVERIFY(desk.Window()->TabAt(0)->Path().endsWith("b.ofd"));
    QVERIFY(desk.Window()->TabAt(1)->Path().endsWith("a.ofd"));
}

void TestReaderAppearance::theMiddleButtonClosesATab()
{
    ReaderDesk desk(false);
    for (const char* name : {"a.ofd", "b.ofd"})
        QVERIFY(desk.Window()->OpenFile(OfdFile::WithPages(1).Write(desk.Folder() + "/" + name)));
    auto* tabs = desk.Window()->findChild<QTabBar*>();
    QTest::mouseClick(tabs, Qt::MiddleButton, Qt::NoModifier, tabs->tabRect(0).center());
    QCOMPARE(desk.Window()->TabCount(), 1);
    QVERIFY(desk.Window()->TabAt(0)->Path().endsWith("b.ofd"));
}

void TestReaderAppearance::manyTabsKeepNamesThatCanBeRead()
{
    ReaderDesk desk(false);
    for (int i = 0; i < 20; ++i)
        QVERIFY(desk.Window()->OpenFile(
            OfdFile::WithPages(1).Write(QStringLiteral("%1/quarterly report %2.ofd").arg(desk.Folder()).arg(i))));
    const auto* tabs = desk.Window()->findChild<QTabBar*>();
    for (int i = 0; i < 20; ++i)
        QVERIFY(tabs->tabRect(i).width() >= 100);
    QVERIFY(tabs->tabRect(19).intersects(tabs->rect())); // the present one is in view
}

void TestReaderAppearance::theTitleSaysThatADocumentIsReadOnly()
{
    ReaderDesk desk(false);
    const QString path = OfdFile::WithPages(1).Write(desk.Folder() + "/file.ofd");
    QVERIFY(desk.Window()->OpenFile(path, true));
    QCOMPARE(desk.Window()->windowTitle(), QString("file.ofd[*] (read-only) - tetoreader"));
    QVERIFY(desk.Window()->CloseTab(0));
    QVERIFY(desk.Window()->OpenFile(path));
    QCOMPARE(desk.Window()->windowTitle(), QString("file.ofd[*] - tetoreader"));
}

TETO_TEST_MAIN(TestReaderAppearance)
#include "test_reader_appearance.moc"
