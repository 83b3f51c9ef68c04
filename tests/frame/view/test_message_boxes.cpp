#include "note_of_view.h"

#include <frame/operation/event.h>
#include <frame/view/status_note.h>
#include <tests/support/test_main.h>
#include <tests/support/view_fixture.h>

#include <QMessageBox>
#include <QTimer>
#include <QtTest>

namespace {

// Runs once a modal box is up.
void WhenBoxIsUp(const std::function<void(QMessageBox*)>& act)
{
    QTimer::singleShot(0, qApp, [act] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
            act(box);
        else
            QTest::qFail("no message box came up", __FILE__, __LINE__);
    });
}

// Boxes that ask, and the notes that only tell.
class TestMessageBoxes : public QObject
{
    Q_OBJECT
private slots:
    void aBoxGivesThePressedButtonsValue();
    void closingABoxByItsFrameGivesClose_data();
    void closingABoxByItsFrameGivesClose();
    void captionsAndDefaultButtonOfABox();
    void markupInABoxIsText();
    void aModalBoxIsKnownWhileItIsUp();
    void aBoxMayDieWithItsParent();
    void anAnswerAboutAnotherViewIsNoAnswer();
    void scriptedBoxesAnswerInOrderAndRecord();
    void aStatusEventShowsItsText();
    void notesWaitTheirTurnAndDoNotRepeat();
    void aNoteTakesNeitherFocusNorMouse();
};

void TestMessageBoxes::aBoxGivesThePressedButtonsValue()
{
    G_UIContext context;
    const int okCancel = 4195328;
    WhenBoxIsUp([](QMessageBox* box) { box->button(QMessageBox::Ok)->click(); });
    QCOMPARE(context.ShowMessageBox("Title", "Text", okCancel, -1), 1024);
    WhenBoxIsUp([](QMessageBox* box) { box->button(QMessageBox::Cancel)->click(); });
    QCOMPARE(context.ShowQuestionBox("Title", "Text", okCancel, -1), 4194304);
    WhenBoxIsUp([](QMessageBox* box) {
        QCOMPARE(box->icon(), QMessageBox::Information);
        QCOMPARE(box->windowTitle(), QStringLiteral("Title"));
        QTest::keyClick(box, Qt::Key_Escape); // the only button
    });
    QCOMPARE(context.ShowInformationBox("Title", "Text", 1024, -1), 1024);
}

void TestMessageBoxes::closingABoxByItsFrameGivesClose_data()
{
    QTest::addColumn<int>("buttons");
    QTest::newRow("ok") << 1024;
    QTest::newRow("ok and cancel") << 4195328;
    QTest::newRow("no way to escape") << int(QMessageBox::Ok | QMessageBox::Yes);
}

void TestMessageBoxes::closingABoxByItsFrameGivesClose()
{
    QFETCH(int, buttons);
    G_UIContext context;
    WhenBoxIsUp([](QMessageBox* box) { box->close(); });
    QCOMPARE(context.ShowMessageBox("Title", "Text", buttons, -1), 2097152);
}

void TestMessageBoxes::captionsAndDefaultButtonOfABox()
{
    G_UIContext context;
    WhenBoxIsUp([](QMessageBox* box) {
        QCOMPARE(box->button(QMessageBox::Ok)->text(), QStringLiteral("Allow"));
        QCOMPARE(box->button(QMessageBox::Cancel)->text(), QStringLiteral("Forbid"));
        QCOMPARE(static_cast<QAbstractButton*>(box->defaultButton()), box->button(QMessageBox::Cancel));
        QVERIFY(box->width() >= 500);
        box->button(QMessageBox::Ok)->click();
    });
    const QMap<int, QString> captions = {{1024, "Allow"}, {4194304, "Forbid"}};
    QCOMPARE(context.ShowMessageBox("Title", "Text", 4195328, 4194304, captions, QSize(500, 200)), 1024);
}

void TestMessageBoxes::markupInABoxIsText()
{
    G_UIContext context;
    WhenBoxIsUp([](QMessageBox* box) {
        QCOMPARE(box->textFormat(), Qt::PlainText);
        QCOMPARE(box->text(), QStringLiteral("<b>name</b>"));
        box->button(QMessageBox::Ok)->click();
    });
    context.ShowMessageBox("Title", "<b>name</b>", 1024, -1);
}

void TestMessageBoxes::aModalBoxIsKnownWhileItIsUp()
{
    G_UIContext context;
    QVERIFY(!context.IsModalRunning());
    bool wasKnown = false;
    WhenBoxIsUp([&](QMessageBox* box) {
        wasKnown = context.IsModalRunning();
        box->close();
    });
    context.ShowMessageBox("Title", "Text", 1024, -1);
    QVERIFY(wasKnown);
    QVERIFY(!context.IsModalRunning());
}

void TestMessageBoxes::aBoxMayDieWithItsParent()
{
    G_UIContext context;
    auto window = std::make_unique<QWidget>();
    window->show();
    context.SetDialogParent(window.get());
    WhenBoxIsUp([&window](QMessageBox* /*box*/) { window.reset(); });
    QCOMPARE(context.ShowMessageBox("Title", "Text", 1024, -1), 2097152);
    QVERIFY(!context.IsModalRunning());
}

void TestMessageBoxes::anAnswerAboutAnotherViewIsNoAnswer()
{
    const std::unique_ptr<MemoryDocument> document = MemoryDocument::FromText(QStringLiteral("page 100 100\n"));
    G_UIContext context;
    G_DocView first(&context, document.get());
    G_DocView second(&context, document.get());
    context.SetCurrentDocView(&first);
    WhenBoxIsUp([&](QMessageBox* box) {
        context.SetCurrentDocView(&second);
        box->button(QMessageBox::Ok)->click();
    });
    QCOMPARE(context.ShowMessageBox("Delete", "These rows?", 4195328, -1), 2097152);
    WhenBoxIsUp([](QMessageBox* box) { box->button(QMessageBox::Ok)->click(); });
    QCOMPARE(context.ShowMessageBox("Delete", "These rows?", 4195328, -1), 1024);
}

void TestMessageBoxes::scriptedBoxesAnswerInOrderAndRecord()
{
    ScriptedContext context;
    context.Answer(1024);
    context.Answer(2097152);
    G_UIContext* asSeenByPanes = &context;
    QCOMPARE(asSeenByPanes->ShowMessageBox("A", "first", 4195328, -1), 1024);
    QCOMPARE(asSeenByPanes->ShowQuestionBox("B", "second", 1024, 1024), 2097152);
    QCOMPARE(context.Asked().size(), 2);
    QCOMPARE(context.Asked().first().text, QStringLiteral("first"));
    QCOMPARE(context.LastAsked().kind, QStringLiteral("question"));
    QCOMPARE(context.LastAsked().buttons, 1024);
}

void TestMessageBoxes::aStatusEventShowsItsText()
{
    ViewFixture fixture(pages);
    fixture.Context()->FireEvent(new G_StringEvent(QStringLiteral("Undo failed"), EventType::StatusText));
    G_StatusNote* note = NoteOf(fixture.View());
    QVERIFY(note);
    QVERIFY(note->isVisible());
    QCOMPARE(note->text(), QStringLiteral("Undo failed"));
    QVERIFY(fixture.View()->Widget()->rect().contains(note->geometry()));
    QVERIFY(fixture.Context()->Asked().isEmpty()); // a note, not a box
}

void TestMessageBoxes::notesWaitTheirTurnAndDoNotRepeat()
{
    ViewFixture fixture(pages);
    fixture.Context()->ShowNote(QStringLiteral("one"));
    G_StatusNote* note = NoteOf(fixture.View());
    note->SetDuration(300);
    fixture.Context()->ShowNote(QStringLiteral("two"));
    fixture.Context()->ShowNote(QStringLiteral("two"));
    fixture.Context()->ShowNote(QStringLiteral("<b>three</b>"));
    QCOMPARE(note->text(), QStringLiteral("one"));
    QCOMPARE(note->Waiting(), (QStringList{"two", "<b>three</b>"}));
    note->Show(QStringLiteral("one")); // starts the shorter time
    QTRY_COMPARE(note->text(), QStringLiteral("two"));
    QTRY_COMPARE(note->text(), QStringLiteral("<b>three</b>"));
    QCOMPARE(note->textFormat(), Qt::PlainText);
    QTRY_VERIFY(!note->isVisible());
}

void TestMessageBoxes::aNoteTakesNeitherFocusNorMouse()
{
    ViewFixture fixture(pages);
    fixture.Context()->ShowNote(QStringLiteral("note"));
    const G_StatusNote* note = NoteOf(fixture.View());
    QVERIFY(note->testAttribute(Qt::WA_TransparentForMouseEvents));
    QCOMPARE(note->focusPolicy(), Qt::NoFocus);
}

} // namespace

TETO_TEST_MAIN(TestMessageBoxes)
#include "test_message_boxes.moc"
