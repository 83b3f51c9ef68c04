// Links of pages under the mouse: what is shown over them, what a click runs, and what is no click.
#include <tests/support/event_probe.h>
#include <tests/support/opened_addresses.h>
#include <tests/support/test_main.h>
#include <tests/support/view_fixture.h>

#include <frame/operation/event_manager.h>
#include <frame/view/host_tools.h>
#include <frame/view/link_text.h>

#include <QAbstractScrollArea>
#include <QUndoStack>
#include <QtTest>

namespace {

constexpr int ok = 1024;
constexpr int cancel = 4194304;

const QString pages = QStringLiteral("page 210 297\n"
                                     "  layer 1 Text\n"
                                     "  text 20 62 Some words\n"
                                     "  link rect=20,20,60,30 page=3\n"
                                     "  link rect=20,40,60,50 uri=https://example.org/?a=<b>\n"
                                     "  link rect=20,60,60,70 bookmark=mark\n"
                                     "  link rect=80,20,120,30 attachment=31\n"
                                     "  link rect=80,40,120,50 sound movie\n"
                                     "  link rect=80,60,120,70 page=99\n"
                                     "  link rect=140,20,180,30 page=2\n"
                                     "  link rect=160,20,180,30 page=3\n"
                                     "  annot id=5 type=1 rect=140,40,180,50\n"
                                     "  link annot=5 rect=140,40,180,50 page=2\n"
                                     "  template 101 Background\n"
                                     "page 210 297\npage 210 297\npage 210 297\n"
                                     "template 101 Background Letterhead\n"
                                     "bookmark mark page=4\n"
                                     "attachment note txt 1 31\n");

} // namespace

class TestDocViewLinks : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void theMouseOverALinkIsAPointingHandWithATip_data() { AddTools(); }
    void theMouseOverALinkIsAPointingHandWithATip();
    void tipsTellWhereALinkLeads_data();
    void tipsTellWhereALinkLeads();
    void aTipShowsMarkupAndDirectionMarksAsTheyAre();
    void aClickFollowsTheLink_data() { AddTools(); }
    void aClickFollowsTheLink();
    void aClickWithATremblingHandIsAClick_data() { AddTools(); }
    void aClickWithATremblingHandIsAClick();
    void aDragThatBeginsOnALinkIsNoClick_data() { AddTools(); }
    void aDragThatBeginsOnALinkIsNoClick();
    void aDragThatComesBackIsNoClick();
    void aReleaseOnAnotherLinkIsNoClick();
    void theUpperOfTwoLinksCounts();
    void anAddressIsAskedForFirst();
    void anAttachmentIsOfferedByTheHost();
    void aDocumentThatForbidsExportOffersNoAttachment();
    void soundsAndMoviesAreToldOnce();
    void aLinkToAPageThatIsNotThereSaysSo();
    void linksAreFoundAtAnyZoomAndRotation();
    void linksOfHiddenAnnotationsAreNoLinks();
    void linksOfIgnoredTemplatesAreNoLinks();
    void aPageThatWasNotPaintedHasNoLinksYet();
    void otherToolsFollowNoLinks();
    void leavingTheViewForgetsTheTip();
    void aViewThatClosesAfterTheClickRunsNothing();
    void theKeysGoFromLinkToLinkAndOut_data() { AddTools(); }
    void theKeysGoFromLinkToLinkAndOut();
    void enterRunsTheLinkWithTheFrame_data() { AddTools(); }
    void enterRunsTheLinkWithTheFrame();
    void aLinkThatWasScrolledAwayIsNotRunByEnter();
    void aScrollShowsWhatIsUnderTheMouseNow();
    void openingFollowsAJumpAndNothingElse();
    void openingFollowsTheFirstJumpThatLeadsSomewhere();

private:
    static void AddTools()
    {
        QTest::addColumn<QByteArray>("tool");
        QTest::newRow("hand") << QByteArray("t_handtool");
        QTest::newRow("text") << QByteArray("t_textselect");
    }
    G_DocView* View() const { return fixture->View(); }
    QWidget* Viewport() const { return ViewFixture::Viewport(View()); }
    void Choose(const QByteArray& tool) const { View()->SetCurrentToolHandler(View()->ToolHandlerByName(tool)); }
    // A point of the viewport over a place of the first page, in mm.
    QPoint At(float x, float y) const
    {
        const CCA_Point scene = View()->ScenePointFromDocPoint({x, y}, 0);
        return QPoint(scene.x, scene.y) - View()->VisibleSceneRect().topLeft();
    }
    void Move(const QPoint& place, Qt::MouseButtons buttons = Qt::NoButton) const
    {
        QMouseEvent move(QEvent::MouseMove, place, Qt::NoButton, buttons, Qt::NoModifier);
        QApplication::sendEvent(Viewport(), &move);
    }
    void Press(const QPoint& place) const { QTest::mousePress(Viewport(), Qt::LeftButton, {}, place); }
    void Release(const QPoint& place) const
    {
        QTest::mouseRelease(Viewport(), Qt::LeftButton, {}, place);
        QCoreApplication::processEvents();
    }
    void Click(float x, float y) const
    {
        Press(At(x, y));
        Release(At(x, y));
    }
    Qt::CursorShape Cursor() const { return Viewport()->cursor().shape(); }

    std::unique_ptr<ViewFixture> fixture;
    std::unique_ptr<EventProbe> probe;
};

void TestDocViewLinks::init()
{
    fixture = std::make_unique<ViewFixture>(pages);
    probe = std::make_unique<EventProbe>(fixture->Context()->EventMgr());
    View()->FinishRendering();
}

void TestDocViewLinks::cleanup()
{
    QCOMPARE(View()->UndoStack()->count(), 0); // following a link is no change
    QVERIFY(!fixture->Document()->IsModified());
    probe.reset();
    fixture.reset();
}

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

void TestDocViewLinks::anAddressIsAskedForFirst()
{
    Opened opened;
    fixture->Context()->Answer(cancel);
    Click(40, 45);
    QCOMPARE(fixture->Context()->Asked().size(), 1);
    QVERIFY(fixture->Context()->LastAsked().text.contains("https://example.org/?a=<b>"));
    QVERIFY(opened.urls.isEmpty());
}

void TestDocViewLinks::anAttachmentIsOfferedByTheHost()
{
    Click(100, 25);
    QCOMPARE(probe->StatusTexts(), QStringList{"This kind of action is not supported."}); // by a host without a saver
    int asked = -1;
    fixture->Context()->ActionHandler()->SetAttachmentSaver([&](IG_Document* document, int index) {
        asked = document->GetAttachment(index).id;
        return QStringLiteral("kept");
    });
    Click(100, 25);
    QCOMPARE(asked, 31);
    QCOMPARE(probe->StatusTexts().last(), QString("kept"));
    fixture->Document()->RemoveAttachment(0);
    asked = -1;
    Click(100, 25);
    QCOMPARE(asked, -1);
    QCOMPARE(probe->StatusTexts().last(), QString("This attachment does not exist."));
    fixture->Document()->SetModified(false);
}

void TestDocViewLinks::aDocumentThatForbidsExportOffersNoAttachment()
{
    fixture->Document()->SetRights(true, true, true, false);
    bool wasAsked = false;
    fixture->Context()->ActionHandler()->SetAttachmentSaver([&](IG_Document*, int) {
        wasAsked = true;
        return QString();
    });
    Click(100, 25);
    QVERIFY(!wasAsked);
    QCOMPARE(probe->StatusTexts(), QStringList{"The document does not allow its attachments to be saved."});
}

void TestDocViewLinks::soundsAndMoviesAreToldOnce()
{
    Click(100, 45);
    QCOMPARE(probe->StatusTexts(), QStringList{"Sounds and movies cannot be played."});
}

void TestDocViewLinks::aLinkToAPageThatIsNotThereSaysSo()
{
    Click(100, 65);
    QCOMPARE(View()->CurrentPageIndex(), 0);
    QCOMPARE(probe->StatusTexts(), QStringList{"This page does not exist."});
}

void TestDocViewLinks::linksAreFoundAtAnyZoomAndRotation()
{
    for (const float zoom : {30.0F, 100.0F, 350.0F}) {
        for (const int rotation : {0, 90, 180, 270}) {
            View()->SetZoom(zoom, false);
            View()->SetRotation(rotation);
            View()->GoToPage(View(), 0, CCA_GRect(20, 20, 60, 30), false);
            View()->FinishRendering();
            Move(At(40, 25));
            QVERIFY2(Viewport()->toolTip().contains("Page 3"), qPrintable(QString("%1 %2").arg(zoom).arg(rotation)));
            Move(At(40, 32));
            QVERIFY(Viewport()->toolTip().isEmpty());
        }
    }
}

void TestDocViewLinks::linksOfHiddenAnnotationsAreNoLinks()
{
    const CCA_Point place = View()->ScenePointFromDocPoint({160, 45}, 0);
    QVERIFY(View()->LinkAt(place, nullptr));
    View()->SetAnnotStatus(false);
    View()->FinishRendering();
    QVERIFY(!View()->LinkAt(place, nullptr));
    QVERIFY(View()->LinkAt(View()->ScenePointFromDocPoint({40, 25}, 0), nullptr));
    View()->SetAnnotStatus(true);
    View()->FinishRendering();
    IG_Page* page = View()->Page(0);
    page->LoadAnnots();
    fixture->Document()->RemoveAnnot(page->GetAnnotById(5));
    QVERIFY(!View()->LinkAt(place, nullptr));
    fixture->Document()->SetModified(false);
}

void TestDocViewLinks::linksOfIgnoredTemplatesAreNoLinks()
{
    G_PageLink link;
    link.area.addRect(20, 200, 40, 10);
    link.templateId = 101;
    const auto list = std::make_shared<G_ActionList>();
    list->Add(std::make_unique<G_ActionGoto>());
    link.actions = list;
    fixture->Document()->AddLink(0, link);
    View()->SetZoom(50, false);
    View()->FinishRendering();
    const CCA_Point place = View()->ScenePointFromDocPoint({40, 205}, 0);
    QVERIFY(View()->LinkAt(place, nullptr));
    View()->pageFilter = QStringLiteral(R"({"1": {"IgnoreIDs": [101]}})");
    QVERIFY(!View()->LinkAt(place, nullptr));
}

void TestDocViewLinks::aPageThatWasNotPaintedHasNoLinksYet()
{
    OpenTab* other = fixture->Open(QStringLiteral("page 210 297\n").repeated(30) + "  link rect=20,20,60,30 page=1\n");
    G_DocView* view = other->view.get();
    view->GoToPage(view, 29, CCA_GRect(), false);
    const CCA_Point place = view->ScenePointFromDocPoint({40, 25}, 29);
    QVERIFY(!view->LinkAt(place, nullptr)); // its picture cannot come before the event loop runs
    view->FinishRendering();
    QVERIFY(view->LinkAt(place, nullptr));
}

void TestDocViewLinks::otherToolsFollowNoLinks()
{
    View()->SetCurrentToolHandler(nullptr);
    Move(At(40, 25));
    QVERIFY(Cursor() != Qt::PointingHandCursor);
    Click(40, 25);
    QCOMPARE(View()->CurrentPageIndex(), 0);
}

void TestDocViewLinks::leavingTheViewForgetsTheTip()
{
    Move(At(40, 25));
    QVERIFY(!Viewport()->toolTip().isEmpty());
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(Viewport(), &leave);
    QVERIFY(Viewport()->toolTip().isEmpty());
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

void TestDocViewLinks::theKeysGoFromLinkToLinkAndOut()
{
    QFETCH(QByteArray, tool);
    Choose(tool);
    QWidget* widget = View()->Widget();
    widget->setFocus();
    QStringList heard;
    const int count = View()->LinksInView().size();
    QVERIFY(count >= 8);
    for (int i = 0; i < count; ++i) {
        QTest::keyClick(widget, Qt::Key_Tab);
        heard << widget->accessibleDescription();
    }
    QCOMPARE(heard.mid(0, 3), (QStringList{"Page 3", "Attachment: note.txt", "Page 2"})); // the first row
    QVERIFY(!heard.contains(QString()));
    QTest::keyClick(widget, Qt::Key_Backtab);
    QCOMPARE(widget->accessibleDescription(), heard.at(count - 2));
    QTest::keyClick(widget, Qt::Key_Tab);
    QTest::keyClick(widget, Qt::Key_Tab); // behind the last one
    QVERIFY(widget->accessibleDescription().isEmpty());
    QTest::keyClick(widget, Qt::Key_Tab);
    QCOMPARE(widget->accessibleDescription(), heard.first());
    QTest::keyClick(widget, Qt::Key_Escape);
    QVERIFY(widget->accessibleDescription().isEmpty());
}

void TestDocViewLinks::enterRunsTheLinkWithTheFrame()
{
    QFETCH(QByteArray, tool);
    Choose(tool);
    QWidget* widget = View()->Widget();
    widget->setFocus();
    QTest::keyClick(widget, Qt::Key_Return); // without a frame: nothing
    ViewFixture::Settle();
    QCOMPARE(View()->CurrentPageIndex(), 0);
    const QImage before = widget->grab().toImage();
    QTest::keyClick(widget, Qt::Key_Tab);
    QVERIFY(widget->grab().toImage() != before);
    QTest::keyClick(widget, Qt::Key_Return);
    ViewFixture::Settle();
    QCOMPARE(View()->CurrentPageIndex(), 2);
}

void TestDocViewLinks::aLinkThatWasScrolledAwayIsNotRunByEnter()
{
    QWidget* widget = View()->Widget();
    QTest::keyClick(widget, Qt::Key_Tab);
    QVERIFY(!widget->accessibleDescription().isEmpty());
    View()->GoToPage(View(), 3, CCA_GRect(), false);
    View()->FinishRendering();
    QTest::keyClick(widget, Qt::Key_Return);
    ViewFixture::Settle();
    QCOMPARE(View()->CurrentPageIndex(), 3);
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

void TestDocViewLinks::openingFollowsAJumpAndNothingElse()
{
    Opened opened;
    int asked = 0;
    fixture->Context()->ActionHandler()->SetAttachmentSaver([&](IG_Document*, int) {
        ++asked;
        return QString();
    });
    OpenTab* other =
        fixture->Open(pages + "open uri=https://example.org attachment=31 sound page=2 to=0,50,0,50 page=3\n");
    QVERIFY(fixture->Context()->ActionHandler()->FollowOpenActions(other->view.get()));
    ViewFixture::Settle();
    QCOMPARE(other->view->CurrentPageIndex(), 1);
    QVERIFY(opened.urls.isEmpty());
    QVERIFY(fixture->Context()->Asked().isEmpty());
    QCOMPARE(asked, 0);
    QVERIFY(probe->StatusTexts().isEmpty());
    QCOMPARE(View()->CurrentPageIndex(), 0);
}

void TestDocViewLinks::openingFollowsTheFirstJumpThatLeadsSomewhere()
{
    OpenTab* other = fixture->Open(pages + "open page=99 bookmark=none bookmark=mark\n");
    QVERIFY(fixture->Context()->ActionHandler()->FollowOpenActions(other->view.get()));
    QCOMPARE(other->view->CurrentPageIndex(), 3);
    OpenTab* lost = fixture->Open(pages + "open page=99 uri=https://example.org\n");
    QVERIFY(!fixture->Context()->ActionHandler()->FollowOpenActions(lost->view.get()));
    QVERIFY(!fixture->Context()->ActionHandler()->FollowOpenActions(View()));
    QVERIFY(probe->StatusTexts().isEmpty());
}

TETO_TEST_MAIN(TestDocViewLinks)
#include "test_doc_view_links.moc"
