// Links of pages under the mouse: what is shown over them, what is a click on them, and what is none.
#include "link_desk.h"

#include <tests/support/test_main.h>

#include <frame/view/link_text.h>

#include <QtTest>

class TestDocViewLinks : public QObject, private LinkDesk
{
    Q_OBJECT

private slots:
    void init() { OpenDesk(); }
    void cleanup() { CloseDesk(); }
    void theMouseOverALinkIsAPointingHandWithATip_data() { AddTools(); }
    void theMouseOverALinkIsAPointingHandWithATip();
    void tipsTellWhereALinkLeads_data();
    void tipsTellWhereALinkLeads();
    void aTipShowsMarkupAndDirectionMarksAsTheyAre();
    void leavingTheViewForgetsTheTip();
    void aScrollShowsWhatIsUnderTheMouseNow();
    void aClickFollowsTheLink_data() { AddTools(); }
    void aClickFollowsTheLink();
    void aClickWithATremblingHandIsAClick_data() { AddTools(); }
    void aClickWithATremblingHandIsAClick();
    void aDragThatBeginsOnALinkIsNoClick_data() { AddTools(); }
    void aDragThatBeginsOnALinkIsNoClick();
    void aDragThatComesBackIsNoClick();
    void aReleaseOnAnotherLinkIsNoClick();
    void theUpperOfTwoLinksCounts();
    void otherToolsFollowNoLinks();
    void aViewThatClosesAfterTheClickRunsNothing();
};

void TestDocViewLinks::theMouseOverALinkIsAPointingHandWithATip()
{
    QFETCH(QByteArray, tool);
    Choose(tool);
    const Qt::CursorShape own = Cursor();
    Move(At(40, 25));
    QCOMPARE(Cursor(), Qt::PointingHandCursor);
    QVERIFY(Viewport()->toolTip().contains("Page 3"));
    Move(At(70, 25));
    QCOMPARE(Cursor(), own);
    QVERIFY(Viewport()->toolTip().isEmpty());
    Move(At(40, 25));
    Choose(tool == "t_handtool" ? "t_textselect" : "t_handtool");
    QVERIFY(Cursor() != Qt::PointingHandCursor);
    QVERIFY(Viewport()->toolTip().isEmpty());
}

void TestDocViewLinks::tipsTellWhereALinkLeads_data()
{
    QTest::addColumn<QPointF>("place");
    QTest::addColumn<QString>("tip");
    QTest::newRow("page") << QPointF(40, 25) << "Page 3";
    QTest::newRow("address") << QPointF(40, 45) << "https://example.org/?a=&lt;b&gt;";
    QTest::newRow("bookmark") << QPointF(40, 65) << "Page 4";
    QTest::newRow("attachment") << QPointF(100, 25) << "Attachment: note.txt";
    QTest::newRow("sound and movie") << QPointF(100, 45) << "Sound<br>Movie";
    QTest::newRow("nowhere") << QPointF(100, 65) << "This page does not exist.";
}

void TestDocViewLinks::tipsTellWhereALinkLeads()
{
    QFETCH(QPointF, place);
    QFETCH(QString, tip);
    Move(At(float(place.x()), float(place.y())));
    QCOMPARE(Viewport()->toolTip(), "<p>" + tip + "</p>");
}

void TestDocViewLinks::aTipShowsMarkupAndDirectionMarksAsTheyAre()
{
    G_ActionList list;
    auto opens = std::make_unique<G_ActionUri>();
    opens->uri = CCA_String(QString::fromUtf8("https://example.org/\u202Egpj.exe\n").toUtf8() + QByteArray(9000, 'x'));
    list.Add(std::move(opens));
    const QString shown = DescribeActions(list, fixture->Document());
    QVERIFY(shown.startsWith("https://example.org/_gpj.exe_xxx"));
    QVERIFY(shown.size() < 400);
    QVERIFY(AddressOf(list).startsWith("https://example.org/_gpj.exe_xxx"));
    QVERIFY(AddressOf(list).size() > 9000);
}

void TestDocViewLinks::leavingTheViewForgetsTheTip()
{
    Move(At(40, 25));
    QVERIFY(!Viewport()->toolTip().isEmpty());
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(Viewport(), &leave);
    QVERIFY(Viewport()->toolTip().isEmpty());
}

void TestDocViewLinks::aScrollShowsWhatIsUnderTheMouseNow()
{
    const QPoint place = At(40, 29); // near the lower edge
    Move(place);
    QCOMPARE(Cursor(), Qt::PointingHandCursor);
    const QString before = Viewport()->toolTip();
    QWheelEvent wheel(place, Viewport()->mapToGlobal(place), QPoint(), QPoint(0, -120), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(Viewport(), &wheel);
    const CCA_Point scene{View()->CursorPosition().x(), View()->CursorPosition().y()};
    QCOMPARE(View()->CursorPosition(), View()->VisibleSceneRect().topLeft() + place);
    QCOMPARE(Cursor() == Qt::PointingHandCursor, View()->LinkAt(scene, nullptr));
    QCOMPARE(Viewport()->toolTip().isEmpty(), !View()->LinkAt(scene, nullptr));
    QVERIFY(Viewport()->toolTip() != before); // so far does a notch scroll
}

void TestDocViewLinks::aClickFollowsTheLink()
{
    QFETCH(QByteArray, tool);
    Choose(tool);
    Click(40, 25);
    QCOMPARE(View()->CurrentPageIndex(), 2);
    View()->GoToPage(View(), 0, CCA_GRect(), false);
    View()->FinishRendering();
    Click(40, 65); // there is text below this one
    QCOMPARE(View()->CurrentPageIndex(), 3);
    QVERIFY(View()->SelectHighLightText().isEmpty());
    QVERIFY(probe->StatusTexts().isEmpty());
}

void TestDocViewLinks::aClickWithATremblingHandIsAClick()
{
    QFETCH(QByteArray, tool);
    Choose(tool);
    const QRect before = View()->VisibleSceneRect();
    Press(At(40, 25));
    Move(At(40, 25) + QPoint(2, 1), Qt::LeftButton);
    QCOMPARE(View()->VisibleSceneRect(), before);
    QVERIFY(View()->SelectHighLightText().isEmpty());
    Release(At(40, 25) + QPoint(2, 1));
    QCOMPARE(View()->CurrentPageIndex(), 2);
}

void TestDocViewLinks::aDragThatBeginsOnALinkIsNoClick()
{
    QFETCH(QByteArray, tool);
    Choose(tool);
    const QPoint from = At(22, 64);
    const int top = View()->VisibleSceneRect().top();
    Press(from);
    Move(from + QPoint(20, -15), Qt::LeftButton);
    Move(from + QPoint(60, -15), Qt::LeftButton);
    Release(from + QPoint(60, -15));
    QCOMPARE(View()->CurrentPageIndex(), 0);
    if (tool == "t_handtool")
        QCOMPARE(View()->VisibleSceneRect().top(), top + 15);
}

void TestDocViewLinks::aDragThatComesBackIsNoClick()
{
    Press(At(40, 25));
    Move(At(40, 25) + QPoint(0, -50), Qt::LeftButton);
    const QPoint back = At(40, 25) + QPoint(0, 0);
    Move(back, Qt::LeftButton);
    Release(back);
    QCOMPARE(View()->CurrentPageIndex(), 0);
}

void TestDocViewLinks::aReleaseOnAnotherLinkIsNoClick()
{
    View()->SetZoom(2, false); // so small that two links lie within a trembling hand
    View()->FinishRendering();
    QVERIFY(View()->LinkAt(View()->ScenePointFromDocPoint({40, 25}, 0), nullptr));
    Press(At(40, 25));
    Release(At(100, 25));
    QCOMPARE(View()->CurrentPageIndex(), 0);
    QVERIFY(probe->StatusTexts().isEmpty());
}

void TestDocViewLinks::theUpperOfTwoLinksCounts()
{
    Click(150, 25);
    QCOMPARE(View()->CurrentPageIndex(), 1);
    View()->GoToPage(View(), 0, CCA_GRect(), false);
    View()->FinishRendering();
    Click(170, 25);
    QCOMPARE(View()->CurrentPageIndex(), 2);
}

void TestDocViewLinks::otherToolsFollowNoLinks()
{
    View()->SetCurrentToolHandler(nullptr);
    Move(At(40, 25));
    QVERIFY(Cursor() != Qt::PointingHandCursor);
    Click(40, 25);
    QCOMPARE(View()->CurrentPageIndex(), 0);
}

void TestDocViewLinks::aViewThatClosesAfterTheClickRunsNothing()
{
    OpenTab* other = fixture->Open(pages);
    other->view->FinishRendering();
    QWidget* viewport = ViewFixture::Viewport(other->view.get());
    const CCA_Point scene = other->view->ScenePointFromDocPoint({40, 45}, 0);
    const QPoint place = QPoint(scene.x, scene.y) - other->view->VisibleSceneRect().topLeft();
    QTest::mousePress(viewport, Qt::LeftButton, {}, place);
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, place);
    fixture->Close(other);
    fixture->SetCurrent(View());
    ViewFixture::Settle();
    QVERIFY(fixture->Context()->Asked().isEmpty());
}

TETO_TEST_MAIN(TestDocViewLinks)
#include "test_doc_view_links.moc"
