// Menus as data: what they show and what choosing an entry does.
#include <tests/support/test_main.h>
#include <tests/support/view_fixture.h>

#include <frame/view/context_menu.h>

#include <QMenu>
#include <QTimer>
#include <QTranslator>
#include <QtTest>

namespace {

// Keeps the text it was performed with.
class NotedOperation : public G_Operation
{
public:
    G_Operation* Clone() const override
    {
        auto* copy = new NotedOperation;
        copy->CopyFrom(this);
        return copy;
    }
    const char* Name() const override { return "d_noted"; }
    bool DoAction() override
    {
        ++runs;
        wasFromMenu = Params->Contains("isContextMenu");
        return true;
    }
    static int runs;
    static bool wasFromMenu;
};
int NotedOperation::runs = 0;
bool NotedOperation::wasFromMenu = false;

class UpperCase : public QTranslator
{
public:
    QString translate(const char* context, const char* text, const char* /*disambiguation*/, int /*n*/) const override
    {
        return qstrcmp(context, "ContextMenu") == 0 ? QString::fromUtf8(text).toUpper() : QString();
    }
    bool isEmpty() const override { return false; }
};

const QList<G_MenuEntry> entries = {{"d_noted", "Note it"}, {"", nullptr}, {"d_other", "Other"}, {"d_third", "Third"}};

QStringList Texts(const QMenu& menu)
{
    QStringList texts;
    for (const QAction* action : menu.actions())
        texts.append(action->isSeparator() ? QStringLiteral("-") : action->text());
    return texts;
}

class TestContextMenu : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        NotedOperation::runs = 0;
        NotedOperation::wasFromMenu = false;
    }
    void operationsWithoutAStateAreShownEnabled();
    void statesHideDisableCheckAndDecorate();
    void textsAreTranslatedInTheMenusContext();
    void anUnknownMenuIsEmptyAndShowsNothing();
    void performingMergesTheGivenParameters();
    void choosingAnEntryPerformsIt();
    void leavingTheMenuPerformsNothing();
    void anEntryChosenForAnotherViewPerformsNothing();
    void aMenuMayDieWithItsParent();
    void entriesMayBeReplaced();
};

void TestContextMenu::operationsWithoutAStateAreShownEnabled()
{
    ScriptedContext context;
    context.ContextMenu()->SetEntries("vn_test", entries);
    const std::unique_ptr<QMenu> menu(context.ContextMenu()->BuildMenu("vn_test", {}));
    QCOMPARE(Texts(*menu), (QStringList{"Note it", "-", "Other", "Third"}));
    for (const QAction* action : menu->actions())
        QVERIFY(action->isSeparator() || (action->isEnabled() && !action->isChecked()));
    QCOMPARE(menu->actions().first()->data().toByteArray(), QByteArray("d_noted"));
}

void TestContextMenu::statesHideDisableCheckAndDecorate()
{
    ScriptedContext context;
    context.ContextMenu()->SetEntries("vn_test", entries);
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::red);
    QTemporaryDir folder;
    const QString icon = folder.filePath("icon.png");
    QVERIFY(pixmap.save(icon));
    QMap<QString, ContextMenuItemState> states;
    states["d_noted"].enabled = false;
    states["d_other"].visible = false;
    states["d_third"].checked = true;
    std::unique_ptr<QMenu> menu(context.ContextMenu()->BuildMenu("vn_test", states));
    QCOMPARE(Texts(*menu), (QStringList{"Note it", "-", "Third"}));
    QVERIFY(!menu->actions().first()->isEnabled());
    QVERIFY(menu->actions().last()->isChecked());
    QVERIFY(menu->actions().last()->icon().isNull());
    states["d_third"].hasIcon = true;
    states["d_third"].iconPath = icon;
    menu.reset(context.ContextMenu()->BuildMenu("vn_test", states));
    QVERIFY(!menu->actions().last()->icon().isNull());
    QVERIFY(!menu->actions().last()->isCheckable()); // the picture says it
    const ContextMenuItemState untouched;
    QVERIFY(untouched.enabled && untouched.visible && !untouched.checked && !untouched.reserved && !untouched.hasIcon);
}

void TestContextMenu::textsAreTranslatedInTheMenusContext()
{
    ScriptedContext context;
    context.ContextMenu()->SetEntries("vn_test", entries);
    UpperCase translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    const std::unique_ptr<QMenu> menu(context.ContextMenu()->BuildMenu("vn_test", {}));
    QCoreApplication::removeTranslator(&translator);
    QCOMPARE(Texts(*menu).first(), QStringLiteral("NOTE IT"));
}

void TestContextMenu::anUnknownMenuIsEmptyAndShowsNothing()
{
    ScriptedContext context;
    const std::unique_ptr<QMenu> menu(context.ContextMenu()->BuildMenu("vn_unknown", {}));
    QVERIFY(menu->isEmpty());
    context.ContextMenu()->PopupMenu("vn_unknown", {}); // returns at once: nothing to choose from
    QCOMPARE(QApplication::activePopupWidget(), nullptr);
}

void TestContextMenu::performingMergesTheGivenParameters()
{
    NotedOperation prototype;
    prototype.RegisterToGlobal();
    ViewFixture fixture(QStringLiteral("page 100 100\n"));
    G_OperationParam params;
    params.Add("isContextMenu", true);
    QVERIFY(fixture.Context()->ContextMenu()->Perform("d_noted", &params));
    QVERIFY(NotedOperation::wasFromMenu);
    QVERIFY(fixture.Context()->ContextMenu()->Perform("d_noted", nullptr));
    QVERIFY(!NotedOperation::wasFromMenu);
    QVERIFY(!fixture.Context()->ContextMenu()->Perform("d_unknown", nullptr));
}

void TestContextMenu::choosingAnEntryPerformsIt()
{
    NotedOperation prototype;
    prototype.RegisterToGlobal();
    ViewFixture fixture(QStringLiteral("page 100 100\n"));
    fixture.Context()->ContextMenu()->SetEntries("vn_test", entries);
    QTimer::singleShot(0, qApp, [] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        QVERIFY(menu);
        QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier, menu->actionGeometry(menu->actions().first()).center());
    });
    fixture.Context()->ContextMenu()->PopupMenu("vn_test", {});
    QCOMPARE(NotedOperation::runs, 1);
}

void TestContextMenu::leavingTheMenuPerformsNothing()
{
    NotedOperation prototype;
    prototype.RegisterToGlobal();
    ViewFixture fixture(QStringLiteral("page 100 100\n"));
    fixture.Context()->ContextMenu()->SetEntries("vn_test", entries);
    QTimer::singleShot(0, qApp, [] { QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape); });
    fixture.Context()->ContextMenu()->PopupMenu("vn_test", {});
    QCOMPARE(NotedOperation::runs, 0);
}

void TestContextMenu::anEntryChosenForAnotherViewPerformsNothing()
{
    NotedOperation prototype;
    prototype.RegisterToGlobal();
    ViewFixture fixture(QStringLiteral("page 100 100\n"));
    OpenTab* other = fixture.Open(QStringLiteral("page 100 100\n"));
    fixture.SetCurrent(fixture.View());
    fixture.Context()->ContextMenu()->SetEntries("vn_test", entries);
    bool wasModal = false;
    QTimer::singleShot(0, qApp, [&] {
        wasModal = fixture.Context()->IsModalRunning(); // the pane that asked for the menu is on the stack
        fixture.SetCurrent(other->view.get());
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        QVERIFY(menu);
        QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier, menu->actionGeometry(menu->actions().first()).center());
    });
    fixture.Context()->ContextMenu()->PopupMenu("vn_test", {});
    QCOMPARE(NotedOperation::runs, 0);
    QVERIFY(wasModal);
    QVERIFY(!fixture.Context()->IsModalRunning());
}

void TestContextMenu::aMenuMayDieWithItsParent()
{
    NotedOperation prototype;
    prototype.RegisterToGlobal();
    ViewFixture fixture(QStringLiteral("page 100 100\n"));
    fixture.Context()->ContextMenu()->SetEntries("vn_test", entries);
    auto window = std::make_unique<QWidget>();
    window->show();
    fixture.Context()->SetDialogParent(window.get());
    QTimer::singleShot(0, qApp, [&window] { window.reset(); });
    fixture.Context()->ContextMenu()->PopupMenu("vn_test", {});
    QCOMPARE(NotedOperation::runs, 0);
    QCOMPARE(QApplication::activePopupWidget(), nullptr);
}

void TestContextMenu::entriesMayBeReplaced()
{
    ScriptedContext context;
    context.ContextMenu()->SetEntries("vn_test", entries);
    context.ContextMenu()->SetEntries("vn_test", {{"d_one", "One"}});
    QCOMPARE(context.ContextMenu()->Entries("vn_test").size(), 1);
    context.SetContextMenu(std::make_unique<G_ContextMenu>(&context));
    QVERIFY(context.ContextMenu()->Entries("vn_test").isEmpty());
}

} // namespace

TETO_TEST_MAIN(TestContextMenu)
#include "test_context_menu.moc"
