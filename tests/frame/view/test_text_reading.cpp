// Text that takes long to read: nobody waits for it, and what was asked for happens when it has come.
#include <tests/support/drag.h>
#include <tests/support/scripted_context.h>
#include <tests/support/test_main.h>
#include <tests/support/view_fixture.h>

#include <frame/document/memory_document.h>
#include <frame/document/text_source.h>
#include <frame/view/text_reader.h>

#include <QClipboard>
#include <QSet>
#include <QSignalSpy>
#include <QThread>
#include <QThreadPool>
#include <QtTest>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <new>

namespace {

class NoText : public IG_ReadText
{
public:
    bool IsReadable() const override { return true; }
    QList<G_TextGlyph> AllGlyphs() const override { return {}; }
};

// Reads pages when it is let, and tells what it was asked for.
class SlowSource : public IG_TextSource
{
public:
    std::shared_ptr<const IG_ReadText> ReadText(int pageIndex, const std::atomic<bool>& isGivenUp) override
    {
        std::unique_lock<std::mutex> lock(mutex);
        asked.append(pageIndex);
        wasOnMainThread = wasOnMainThread || QThread::currentThread() == qApp->thread();
        changed.notify_all();
        while (!isGivenUp && isBlocked && !let.contains(pageIndex))
            changed.wait_for(lock, std::chrono::milliseconds(2));
        if (isGivenUp) {
            ++givenUp;
            return nullptr;
        }
        return std::make_shared<NoText>();
    }
    bool IsTextRead(int) override { return false; }

    void Block(bool blocked)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        isBlocked = blocked;
        changed.notify_all();
    }
    void Let(int page)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        let.insert(page);
        changed.notify_all();
    }
    QList<int> Asked()
    {
        const std::lock_guard<std::mutex> lock(mutex);
        return asked;
    }

    std::atomic<bool> wasOnMainThread{false};
    std::atomic<int> givenUp{0};

private:
    std::mutex mutex; // not Qt's own: the thread sanitizer does not see those
    std::condition_variable changed;
    QSet<int> let;
    QList<int> asked;
    bool isBlocked = true;
};

// Has no memory for page 1.
class StarvedSource : public IG_TextSource
{
public:
    std::shared_ptr<const IG_ReadText> ReadText(int pageIndex, const std::atomic<bool>&) override
    {
        if (pageIndex == 1)
            throw std::bad_alloc();
        return std::make_shared<NoText>();
    }
    bool IsTextRead(int) override { return false; }
};

class SlowDocument : public MemoryDocument
{
public:
    IG_TextSource* TextSource() override { return &source; }
    SlowSource source;
};

// A view of a document of ten pages, with the tool that selects.
class SlowDesk
{
public:
    SlowDesk()
    {
        for (int i = 0; i < pageCount; ++i)
            AddPage(i);
        view = std::make_unique<G_DocView>(&context, &document);
        view->Widget()->resize(900, 700);
        view->Widget()->show();
        context.SetCurrentDocView(view.get());
        view->SetZoom(30, false);
        ViewFixture::Settle();
    }
    void AddPage(int index)
    {
        document.AddPage(210, 297);
        document.AddText(index, 20, 30, "some words");
    }
    ~SlowDesk() { document.source.Block(false); }
    void ChooseTool()
    {
        view->SetCurrentToolHandler(view->ToolHandlerByName("t_textselect"));
        ViewFixture::Settle();
    }
    QPoint At(int page, float x, float y) const
    {
        const CCA_Point scene = view->ScenePointFromDocPoint({x, y}, page);
        return QPoint(scene.x, scene.y) - view->VisibleSceneRect().topLeft();
    }
    QWidget* Viewport() const { return ViewFixture::Viewport(view.get()); }
    QString Selected() const
    {
        QStringList texts;
        for (const G_HighLightItem& item : view->SelectHighLightText()) {
            for (const G_TextRun& run : item.runs)
                texts.append(QStringLiteral("%1:%2").arg(item.pageIndex).arg(run.text));
        }
        return texts.join(' ');
    }

    static constexpr int pageCount = 10;
    SlowDocument document;
    ScriptedContext context;
    std::unique_ptr<G_DocView> view;
};

class TestTextReading : public QObject
{
    Q_OBJECT
private slots:
    void aDragSelectsOnceTheTextHasCome();
    void aDoubleClickSelectsOnceTheTextHasCome();
    void anotherPressForgetsTheDoubleClick();
    void allTextIsSelectedAsItComes();
    void theCopyComesWhenAllTextHasCome();
    void aLongCopyThatIsOnItsWayDoesNotReplaceALaterOne();
    void escapeEndsTheSelectingAndTheCopy_data();
    void escapeEndsTheSelectingAndTheCopy();
    void selectedTextAskedForByACallIsReadAtOnce();
    void closingTheViewGivesUpThePageThatIsRead();
    void aReaderReadsInTheOrderInWhichPagesAreWanted();
    void aReaderGivesUpWhatIsNoLongerWanted();
    void aReaderWaitsNoLongerThanItMay();
    void whatADigestMadeIsDroppedWithIt();
    void aPageForWhichMemoryRunsOutIsUnreadableAndTheNextIsRead_data();
    void aPageForWhichMemoryRunsOutIsUnreadableAndTheNextIsRead();
};

void TestTextReading::aDragSelectsOnceTheTextHasCome()
{
    SlowDesk desk;
    desk.ChooseTool();
    Drag::MouseDrag(desk.Viewport(), desk.At(0, 20, 32), desk.At(0, 28, 32)); // 2 mm a character
    QCOMPARE(desk.Selected(), QString());
    QVERIFY(desk.view->IsSelecting());
    desk.document.source.Let(0);
    QTRY_COMPARE(desk.Selected(), QString("0:some"));
    QVERIFY(!desk.view->IsSelecting());
    QVERIFY(!desk.document.source.wasOnMainThread);
}

void TestTextReading::aDoubleClickSelectsOnceTheTextHasCome()
{
    SlowDesk desk;
    desk.ChooseTool();
    QTest::mouseDClick(desk.Viewport(), Qt::LeftButton, Qt::NoModifier, desk.At(0, 34, 32));
    QCOMPARE(desk.Selected(), QString());
    desk.document.source.Let(0);
    QTRY_COMPARE(desk.Selected(), QString("0:words"));
}

void TestTextReading::anotherPressForgetsTheDoubleClick()
{
    SlowDesk desk;
    desk.ChooseTool();
    QTest::mouseDClick(desk.Viewport(), Qt::LeftButton, Qt::NoModifier, desk.At(0, 34, 32));
    QTest::mouseClick(desk.Viewport(), Qt::LeftButton, Qt::NoModifier, desk.At(0, 100, 100));
    QSignalSpy spy(desk.view.get(), &G_DocView::TextRead);
    desk.view->IsTextAtHand(0, 0);
    desk.document.source.Let(0);
    QTRY_VERIFY(!spy.isEmpty());
    QCOMPARE(desk.Selected(), QString());
}

void TestTextReading::allTextIsSelectedAsItComes()
{
    SlowDesk desk;
    desk.view->SelectAllText();
    QVERIFY(desk.view->IsSelecting());
    QCOMPARE(desk.Selected(), QString());
    desk.document.source.Let(0);
    desk.document.source.Let(1);
    QTRY_COMPARE(desk.Selected(), QString("0:some words 1:some words"));
    desk.document.source.Block(false);
    QTRY_VERIFY(!desk.view->IsSelecting());
    QCOMPARE(desk.view->SelectHighLightText().size(), SlowDesk::pageCount);
    QCOMPARE(desk.document.LoadedPageCount(), 0);
}

void TestTextReading::theCopyComesWhenAllTextHasCome()
{
    SlowDesk desk;
    QGuiApplication::clipboard()->clear();
    desk.view->SelectAllText();
    desk.view->CopySelectedText();
    QCOMPARE(QGuiApplication::clipboard()->text(), QString());
    desk.document.source.Block(false);
    QTRY_COMPARE(QGuiApplication::clipboard()->text().split('\n').size(), SlowDesk::pageCount);
}

void TestTextReading::aLongCopyThatIsOnItsWayDoesNotReplaceALaterOne()
{
    SlowDesk desk;
    const auto copy = [&desk](int pages, const QString& text) {
        G_HighLightItem item;
        item.runs.append({CCA_GRect(20, 30, 60, 35), text});
        QList<G_HighLightItem> items;
        for (; item.pageIndex < pages; ++item.pageIndex)
            items.append(item);
        desk.view->SetHighLightText(items);
        desk.view->CopySelectedText();
    };
    QGuiApplication::clipboard()->clear();
    copy(5000, "long");
    copy(1, "short");
    QThreadPool::globalInstance()->waitForDone();
    ViewFixture::Settle();
    QCOMPARE(QGuiApplication::clipboard()->text(), QString("short"));
    copy(5000, "long"); // the next one comes as ever
    QTRY_COMPARE(QGuiApplication::clipboard()->text().count("long"), 5000);
}

void TestTextReading::escapeEndsTheSelectingAndTheCopy_data()
{
    QTest::addColumn<bool>("isTextTool");
    QTest::newRow("text") << true;
    QTest::newRow("hand") << false;
}

void TestTextReading::escapeEndsTheSelectingAndTheCopy()
{
    QFETCH(bool, isTextTool);
    SlowDesk desk;
    QGuiApplication::clipboard()->clear();
    if (isTextTool) {
        desk.ChooseTool();
        QTest::keyClick(desk.view->Widget(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(desk.view->Widget(), Qt::Key_C, Qt::ControlModifier);
    } else {
        desk.view->SelectAllText();
        desk.view->CopySelectedText();
    }
    QVERIFY(desk.view->IsSelecting());
    QTest::keyClick(desk.view->Widget(), Qt::Key_Escape);
    QVERIFY(!desk.view->IsSelecting());
    QSignalSpy spy(desk.view.get(), &G_DocView::TextRead);
    desk.view->IsTextAtHand(3, 3);
    desk.document.source.Block(false);
    QTRY_VERIFY(!spy.isEmpty());
    QCOMPARE(desk.Selected(), QString());
    QCOMPARE(QGuiApplication::clipboard()->text(), QString());
}

void TestTextReading::selectedTextAskedForByACallIsReadAtOnce()
{
    SlowDesk desk;
    desk.view->SelectAllText();
    QCOMPARE(desk.view->SelectedText().split('\n').size(), SlowDesk::pageCount);
    QVERIFY(!desk.view->IsSelecting());
}

void TestTextReading::closingTheViewGivesUpThePageThatIsRead()
{
    SlowDesk desk;
    desk.view->SelectAllText();
    QTRY_VERIFY(!desk.document.source.Asked().isEmpty());
    desk.view.reset(); // does not wait for ever
    QCOMPARE(desk.document.source.givenUp.load(), 1);
}

void TestTextReading::aReaderReadsInTheOrderInWhichPagesAreWanted()
{
    SlowSource source;
    source.Block(false);
    QList<int> told;
    G_TextReader reader(&source, [&told](int page) { told.append(page); });
    reader.Want({3, 1, 2});
    QTRY_COMPARE(told, (QList<int>{3, 1, 2}));
    QVERIFY(reader.IsReady(1));
    reader.Want({1, 4});
    QVERIFY(reader.IsReady(1) && !reader.IsReady(3)); // what is no longer wanted is let go
    QTRY_COMPARE(told, (QList<int>{3, 1, 2, 4}));
    QCOMPARE(source.Asked(), (QList<int>{3, 1, 2, 4}));
    QVERIFY(!source.wasOnMainThread);
    QVERIFY(G_TextReader(nullptr, [](int) {}).IsReady(7));
}

void TestTextReading::aPageForWhichMemoryRunsOutIsUnreadableAndTheNextIsRead_data()
{
    QTest::addColumn<bool>("hasDigest");
    QTest::newRow("the text itself") << false;
    QTest::newRow("what is made of it") << true;
}

void TestTextReading::aPageForWhichMemoryRunsOutIsUnreadableAndTheNextIsRead()
{
    QFETCH(bool, hasDigest);
    StarvedSource source;
    QList<int> told;
    G_TextReader reader(&source, [&told](int page) { told.append(page); });
    if (hasDigest)
        reader.SetDigest([](int, const std::shared_ptr<const IG_ReadText>& text) {
            return std::make_shared<bool>(text->IsReadable());
        });
    reader.Want({0, 1, 2});
    QTRY_COMPARE(told, (QList<int>{0, 1, 2}));
    for (const int page : {0, 1, 2}) {
        const std::shared_ptr<const void> taken = reader.Take(page);
        QVERIFY(taken);
        const bool isReadable = hasDigest ? *static_cast<const bool*>(taken.get())
                                          : static_cast<const IG_ReadText*>(taken.get())->IsReadable();
        QCOMPARE(isReadable, page != 1);
    }
}

void TestTextReading::aReaderGivesUpWhatIsNoLongerWanted()
{
    SlowSource source;
    QList<int> told;
    G_TextReader reader(&source, [&told](int page) { told.append(page); });
    reader.Want({0, 1});
    QTRY_COMPARE(source.Asked(), QList<int>{0});
    source.Let(5);
    reader.Want({5});
    QVERIFY(reader.IsWanted(5) && !reader.IsWanted(1));
    QTRY_COMPARE(told, QList<int>{5});
    QCOMPARE(source.givenUp.load(), 1);
    QCOMPARE(source.Asked(), (QList<int>{0, 5}));
}

void TestTextReading::aReaderWaitsNoLongerThanItMay()
{
    SlowSource source;
    int told = 0;
    G_TextReader reader(&source, [&told](int) { ++told; });
    reader.Want({0});
    QVERIFY(!reader.WaitFor(0, 1));
    source.Let(0);
    QVERIFY(reader.WaitFor(0, 60'000));
    QVERIFY(reader.IsReady(0) && !reader.IsWanted(0));
    ViewFixture::Settle();
    QCOMPARE(told, 0); // who waited knows
}

void TestTextReading::whatADigestMadeIsDroppedWithIt()
{
    SlowSource source;
    source.Block(false);
    QList<int> told;
    G_TextReader reader(&source, [&told](int page) { told.append(page); });
    reader.SetDigest(
        [](int page, const std::shared_ptr<const IG_ReadText>&) { return std::make_shared<int>(10 * page); });
    reader.Want({2});
    QVERIFY(reader.WaitFor(2, 60'000));
    reader.SetDigest(
        [](int page, const std::shared_ptr<const IG_ReadText>&) { return std::make_shared<int>(20 * page); });
    QVERIFY(!reader.Take(2));
    reader.Want({2});
    QVERIFY(reader.WaitFor(2, 60'000));
    const std::shared_ptr<const void> made = reader.Take(2);
    QVERIFY(made);
    QCOMPARE(*static_cast<const int*>(made.get()), 40);
    QVERIFY(!reader.Take(2));
}

} // namespace

TETO_TEST_MAIN(TestTextReading)
#include "test_text_reading.moc"
