// Which links a view has and where they lie, and how the keys go from one to the next.
#include "link_desk.h"

#include <tests/support/test_main.h>

#include <QtTest>

namespace {

// Knows which of its pages somebody was given and has not released.
class CountingDocument : public MemoryDocument
{
public:
    IG_Page* GetPage(int index) override
    {
        given.insert(index);
        return MemoryDocument::GetPage(index);
    }
    void ReleasePage(int index, int flags) override
    {
        given.remove(index);
        MemoryDocument::ReleasePage(index, flags);
    }
    QSet<int> given;
};

} // namespace

class TestDocViewLinkPlaces : public QObject, private LinkDesk
{
    Q_OBJECT

private slots:
    void init() { OpenDesk(); }
    void cleanup() { CloseDesk(); }
    void linksAreFoundAtAnyZoomAndRotation();
    void linksOfHiddenAnnotationsAreNoLinks();
    void linksOfIgnoredTemplatesAreNoLinks();
    void aPageThatWasNotPaintedHasNoLinksYet();
    void pagesThatWereAskedForLinksAreReleasedWithTheView();
    void theKeysGoFromLinkToLinkAndOut_data() { AddTools(); }
    void theKeysGoFromLinkToLinkAndOut();
    void enterRunsTheLinkWithTheFrame_data() { AddTools(); }
    void enterRunsTheLinkWithTheFrame();
    void aLinkThatWasScrolledAwayIsNotRunByEnter();
};

void TestDocViewLinkPlaces::linksAreFoundAtAnyZoomAndRotation()
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

void TestDocViewLinkPlaces::linksOfHiddenAnnotationsAreNoLinks()
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

void TestDocViewLinkPlaces::linksOfIgnoredTemplatesAreNoLinks()
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

void TestDocViewLinkPlaces::aPageThatWasNotPaintedHasNoLinksYet()
{
    OpenTab* other = fixture->Open(QStringLiteral("page 210 297\n").repeated(30) + "  link rect=20,20,60,30 page=1\n");
    G_DocView* view = other->view.get();
    view->GoToPage(view, 29, CCA_GRect(), false);
    const CCA_Point place = view->ScenePointFromDocPoint({40, 25}, 29);
    QVERIFY(!view->LinkAt(place, nullptr)); // its picture cannot come before the event loop runs
    view->FinishRendering();
    QVERIFY(view->LinkAt(place, nullptr));
}

void TestDocViewLinkPlaces::pagesThatWereAskedForLinksAreReleasedWithTheView()
{
    CountingDocument document;
    for (int i = 0; i < 3; ++i)
        document.AddPage(100, 100);
    G_PageLink link;
    link.area.addRect(0, 0, 50, 50);
    const auto list = std::make_shared<G_ActionList>();
    list->Add(std::make_unique<G_ActionGoto>());
    link.actions = list;
    document.AddLink(1, link);
    auto view = std::make_unique<G_DocView>(nullptr, &document);
    view->Widget()->resize(400, 300);
    view->GoToPage(nullptr, 1, CCA_GRect(), false);
    view->FinishRendering();
    QVERIFY(view->LinkAt(view->ScenePointFromDocPoint({20, 20}, 1), nullptr));
    QVERIFY(document.given.contains(1));
    view.reset();
    QCOMPARE(document.given, QSet<int>());
}

void TestDocViewLinkPlaces::theKeysGoFromLinkToLinkAndOut()
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

void TestDocViewLinkPlaces::enterRunsTheLinkWithTheFrame()
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

void TestDocViewLinkPlaces::aLinkThatWasScrolledAwayIsNotRunByEnter()
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

TETO_TEST_MAIN(TestDocViewLinkPlaces)
#include "test_doc_view_link_places.moc"
