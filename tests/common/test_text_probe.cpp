#include <common/public_method.h>
#include <common/text_probe.h>
#include <frame/base/log.h>
#include <frame/document/text_source.h>
#include <tests/support/test_main.h>
#include <tests/support/view_fixture.h>

#include <QtTest>

#include <climits>

namespace {

constexpr float glyphWidthMm = 2;
constexpr float glyphHeightMm = 4;

// The run of a line of text that stands at (20, y) mm.
G_TextRun Run(float y, int length)
{
    G_TextRun run;
    run.rect = CCA_GRect(20, y, 20 + glyphWidthMm * static_cast<float>(length), y + glyphHeightMm);
    return run;
}

G_HighLightItem Item(int pageIndex, const QList<G_TextRun>& runs)
{
    G_HighLightItem item;
    item.pageIndex = pageIndex;
    item.runs = runs;
    return item;
}

QString TwoPages(const QString& first, const QString& second)
{
    return QStringLiteral("page 400 297\n  text 20 30 %1\npage 400 250\n  text 20 40 %2\n").arg(first, second);
}

struct Probe
{
    QString text;
    CCA_GRect rect{-1, -1, -1, -1};
    int pageIndex = -7;
};

Probe ProbeView(const ViewFixture& fixture, int limit = 100)
{
    Probe probe;
    PublicMethod::ParseTextPage(fixture.Context(), probe.text, probe.rect, probe.pageIndex, limit);
    return probe;
}

} // namespace

namespace {

// Pages whose text may have to be read elsewhere first.
class HeavyDocument : public MemoryDocument, public IG_TextSource
{
public:
    IG_TextSource* TextSource() override { return this; }
    std::shared_ptr<const IG_ReadText> ReadText(int, const std::atomic<bool>&) override { return nullptr; }
    bool IsTextRead(int) override { return isRead; }
    bool isRead = false;
};

} // namespace

// What the highlighted text says, and where it stands.
class TestTextProbe : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        lines.clear();
        SetFrameLogListener([this](const QByteArray& line) { lines.append(line); });
    }

    void cleanup() { SetFrameLogListener({}); }

    void withoutAHighlightTheWholePageIsTheRectangleAndTheTextIsEmpty()
    {
        ViewFixture fixture(TwoPages("abc", "def"));
        fixture.View()->GoToPage(fixture.View(), 1, CCA_GRect(), false);
        const Probe probe = ProbeView(fixture);
        QCOMPARE(probe.text, QString());
        QCOMPARE(probe.pageIndex, fixture.View()->CurrentPageIndex());
        QCOMPARE(probe.pageIndex, 1);
        QCOMPARE(probe.rect, CCA_GRect(0, 0, 400, 250));
    }

    void withoutAHighlightAPageThatFailsGivesAnEmptyRectangle()
    {
        ViewFixture fixture(TwoPages("abc", "def"));
        fixture.Document()->SetPageFailure(0, true);
        const Probe probe = ProbeView(fixture);
        QCOMPARE(probe.pageIndex, 0);
        QCOMPARE(probe.rect, CCA_GRect());
        QCOMPARE(probe.text, QString());
    }

    void aHighlightOfExactlyTheLimitIsKeptWhole()
    {
        const QString text(100, QLatin1Char('x'));
        ViewFixture fixture(TwoPages(text, "def"));
        fixture.View()->SetHighLightText({Item(0, {Run(30, 100)})});
        QCOMPARE(ProbeView(fixture).text, text);
    }

    void aHighlightBeyondTheLimitIsCutAndLaterItemsAreNotRead()
    {
        const QString text = QString(100, QLatin1Char('x')) + QLatin1Char('y');
        ViewFixture fixture(TwoPages(text, "def"));
        fixture.Document()->SetPageFailure(1, true); // reading it would be logged
        fixture.View()->SetHighLightText({Item(0, {Run(30, 101)}), Item(1, {Run(40, 3)})});
        QCOMPARE(ProbeView(fixture).text, text.left(100));
        QVERIFY(!lines.contains("Page load failed PublicMethod::ParseTextPage"));
    }

    void atTheLimitLaterItemsAreStillRead()
    {
        ViewFixture fixture(TwoPages(QString(100, QLatin1Char('x')), "def"));
        fixture.Document()->SetPageFailure(1, true);
        fixture.View()->SetHighLightText({Item(0, {Run(30, 100)}), Item(1, {Run(40, 3)})});
        QCOMPARE(ProbeView(fixture).text.size(), 100);
        QVERIFY(lines.contains("Page load failed PublicMethod::ParseTextPage"));
    }

    void overTwoPagesThePlaceIsThatOfTheFirstAndTheTextRunsOn()
    {
        ViewFixture fixture(TwoPages("abc", "def"));
        fixture.View()->SetHighLightText({Item(0, {Run(30, 2), Run(30, 3)}), Item(1, {Run(40, 3)})});
        const Probe probe = ProbeView(fixture);
        QCOMPARE(probe.text, QStringLiteral("ababcdef"));
        QCOMPARE(probe.pageIndex, 0);
        QCOMPARE(probe.rect, Run(30, 2).rect);
    }

    void aPageThatFailsIsLoggedAndAddsNothingWhileThePlaceIsStillSet()
    {
        ViewFixture fixture(TwoPages("abc", "def"));
        fixture.Document()->SetPageFailure(1, true);
        fixture.View()->SetHighLightText({Item(1, {Run(40, 3)})});
        const Probe probe = ProbeView(fixture);
        QCOMPARE(probe.text, QString());
        QCOMPARE(probe.pageIndex, 1);
        QCOMPARE(probe.rect, Run(40, 3).rect);
        QVERIFY(lines.contains("Page load failed PublicMethod::ParseTextPage"));
    }

    void theItemsAfterAFailedPageStillCount()
    {
        ViewFixture fixture(TwoPages("abc", "def"));
        fixture.Document()->SetPageFailure(0, true);
        fixture.View()->SetHighLightText({Item(0, {Run(30, 3)}), Item(1, {Run(40, 3)})});
        QCOMPARE(ProbeView(fixture).text, QStringLiteral("def"));
    }

    void aFirstItemWithoutRunsGivesAnEmptyRectangle()
    {
        ViewFixture fixture(TwoPages("abc", "def"));
        fixture.View()->SetHighLightText({Item(1, {})});
        const Probe probe = ProbeView(fixture);
        QCOMPARE(probe.pageIndex, 1);
        QCOMPARE(probe.rect, CCA_GRect());
    }

    void withoutAViewNothingIsChanged()
    {
        ScriptedContext context;
        Probe probe;
        PublicMethod::ParseTextPage(&context, probe.text, probe.rect, probe.pageIndex, 100);
        PublicMethod::ParseTextPage(nullptr, probe.text, probe.rect, probe.pageIndex, 100);
        QCOMPARE(probe.pageIndex, -7);
        QCOMPARE(probe.rect, CCA_GRect(-1, -1, -1, -1));
    }

    void pagesAreLetGoAfterTheyWereRead()
    {
        ViewFixture fixture(TwoPages("abc", "def"));
        const int loadedBefore = fixture.Document()->LoadedPageCount();
        fixture.View()->SetHighLightText({Item(0, {Run(30, 3)}), Item(1, {Run(40, 3)})});
        ProbeView(fixture);
        QVERIFY(fixture.Document()->LoadedPageCount() <= loadedBefore);
    }

    void aCallerOfTheWalkIsNamedInTheLog()
    {
        ViewFixture fixture(TwoPages("abc", "def"));
        fixture.Document()->SetPageFailure(0, true);
        fixture.View()->SetHighLightText({Item(0, {Run(30, 3)})});
        PageTextProbe probe;
        ProbePageText(fixture.View(), INT_MAX, "Some::Caller", probe);
        QVERIFY(lines.contains("Page load failed Some::Caller"));
    }

    void pagesThatWouldHaveToBeReadAreToldByTheirHighlight()
    {
        HeavyDocument document;
        document.AddPage(400, 297);
        document.AddText(0, 20, 30, "abcdef");
        ScriptedContext context;
        G_DocView view(&context, &document);
        G_TextRun run = Run(30, 6);
        run.text = "selected";
        view.SetHighLightText({Item(0, {run, run})});
        PageTextProbe probe;
        ProbePageText(&view, 100, "", probe);
        QCOMPARE(probe.text, QString("selectedselected"));
        QCOMPARE(document.LoadedPageCount(), 0);
        QCOMPARE(probe.rect, run.rect);
        PageTextProbe cut;
        ProbePageText(&view, 10, "", cut);
        QCOMPARE(cut.text, QString("selectedse"));
        run.text.clear(); // a place alone tells nothing: the page is asked all the same
        view.SetHighLightText({Item(0, {run})});
        PageTextProbe asked;
        ProbePageText(&view, 100, "", asked);
        QCOMPARE(asked.text, QString("abcdef"));
        document.isRead = true;
        run.text = "selected";
        view.SetHighLightText({Item(0, {run})});
        PageTextProbe read;
        ProbePageText(&view, 100, "", read);
        QCOMPARE(read.text, QString("abcdef"));
    }

    void eachHighlightIsCollectedWithItsRectangles()
    {
        ViewFixture fixture(TwoPages("abc", "def"));
        CCA_ArrayTemplate<SelectionRects> found;
        PublicMethod::CollectSelectionRects(fixture.Context(), found);
        QCOMPARE(found.GetSize(), 0);
        fixture.View()->SetHighLightText({Item(0, {Run(30, 1), Run(30, 2)}), Item(1, {Run(40, 3)})});
        PublicMethod::CollectSelectionRects(fixture.Context(), found);
        QCOMPARE(found.GetSize(), 2);
        QCOMPARE(found[0].pageIndex, 0);
        QCOMPARE(found[0].rects.GetSize(), 2);
        QCOMPARE(found[0].rects[1], Run(30, 2).rect);
        QCOMPARE(found[1].pageIndex, 1);
        QCOMPARE(found[1].rects[0], Run(40, 3).rect);
    }

private:
    QList<QByteArray> lines;
};

TETO_TEST_MAIN(TestTextProbe)
#include "test_text_probe.moc"
