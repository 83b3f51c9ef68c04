#include "pane_desk.h"

#include <bookmark/bookmark_item.h>
#include <bookmark/bookmark_node.h>
#include <bookmark/bookmark_pane.h>
#include <bookmark/bookmark_tree.h>
#include <tests/support/test_main.h>
#include <tests/support/unscaled_test.h>

#include <frame/base/converters.h>

#include <QApplication>
#include <QClipboard>
#include <QHelpEvent>
#include <QMimeData>
#include <QTextDocument>
#include <QTextEdit>
#include <QToolTip>
#include <QUndoStack>
#include <QtTest>

namespace {

const QString smile = QString::fromUtf8("\xF0\x9F\x98\x80"); // two code units, one character

// Gives the rows of the document these names, one more row each, and fills the list.
void AddNamed(const DeskTab* tab, const QStringList& names)
{
    tab->document->CreateBookmarkRoot();
    G_TreeNode* root = tab->document->GetBookmarkRoot();
    for (const QString& name : names) {
        auto* bookmark = new G_Bookmark;
        bookmark->name = GQ_ToCAS(name);
        QVERIFY(root->AddSubNode(root->SubNodeCount(), bookmark));
    }
    tab->pane->UpdateBookmark(0);
}

QTextEdit* OpenEditor(const DeskTab* tab, int row)
{
    tab->Select({row});
    QTest::keyClick(tab->Tree(), Qt::Key_F2);
    return tab->Editor();
}

void End(const DeskTab* tab)
{
    QTest::keyClick(tab->Editor(), Qt::Key_Return);
    ViewFixture::Settle();
}

} // namespace

// Names nobody planned for, and very many of them.
class TestBookmarkOddNames : public UnscaledTest
{
    Q_OBJECT
private slots:
    void namesOfEveryScriptAreListedPaintedAndUnharmedByAnEdit_data();
    void namesOfEveryScriptAreListedPaintedAndUnharmedByAnEdit();
    void aTypedNameIsNeverCutThroughACharacter();
    void aHighlightIsNeverCutThroughACharacter();
    void markupInANameIsShownAsItIs();
    void theTipOfAVeryLongNameIsCut();
    void whatIsPastedLosesItsLooks();
    void aRowJustAddedShowsItsNameAsStoredUntilTheNextRefill();
    void aHundredThousandBookmarksAreListedAddedToDeletedAndBroughtBack();
};

void TestBookmarkOddNames::namesOfEveryScriptAreListedPaintedAndUnharmedByAnEdit_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("hebrew") << QString::fromUtf8("\u05e4\u05e8\u05e7 1: \u05de\u05d1\u05d5\u05d0");
    QTest::newRow("arabic") << QString::fromUtf8("\u0627\u0644\u0641\u0635\u0644 (2)");
    QTest::newRow("emoji") << smile + smile + QStringLiteral(" x");
    QTest::newRow("combining") << QStringLiteral("e\u0301\u0302\u0303\u0304");
    QTest::newRow("chinese") << QStringLiteral("\u7b2c\u4e00\u7ae0\u3000\u6982\u8ff0");
    QTest::newRow("mnemonics and placeholders") << QStringLiteral("&File %1 %2 100%");
    QTest::newRow("blanks only") << QStringLiteral("    ");
    QTest::newRow("very long") << QString(10000, QLatin1Char('w'));
    QTest::newRow("empty") << QString();
}

void TestBookmarkOddNames::namesOfEveryScriptAreListedPaintedAndUnharmedByAnEdit()
{
    QFETCH(QString, name);
    PaneDesk desk(QStringLiteral("page 210 297"));
    const DeskTab* tab = desk.First();
    AddNamed(tab, {name, QStringLiteral("other")});
    const QString dump = tab->Dump();
    QCOMPARE(tab->Tree()->topLevelItem(0)->toolTip(0), name);
    for (int way = 0; way < 2; ++way) { // wrapped and on one line
        QVERIFY(!tab->Tree()->grab().isNull());
        QTextEdit* editor = OpenEditor(tab, 0);
        QVERIFY(editor);
        QCOMPARE(editor->toPlainText(), name);
        End(tab);
        QVERIFY(!tab->Editor());
        QCOMPARE(tab->Dump(), dump);
        QCOMPARE(tab->Stack()->count(), 0);
        QVERIFY(desk.Perform("d_bookmarkwrap"));
    }
}

void TestBookmarkOddNames::aTypedNameIsNeverCutThroughACharacter()
{
    PaneDesk desk(DocumentWithBookmarks(1));
    const DeskTab* tab = desk.First();
    const QString start(99, QLatin1Char('x'));
    OpenEditor(tab, 0)->setPlainText(start + smile + QStringLiteral("tail"));
    End(tab);
    QCOMPARE(tab->Names(), QStringList{start});
    OpenEditor(tab, 0)->setPlainText(start.left(98) + smile + QStringLiteral("tail"));
    End(tab);
    QCOMPARE(tab->Names(), QStringList{start.left(98) + smile});
}

void TestBookmarkOddNames::aHighlightIsNeverCutThroughACharacter()
{
    const QString start(99, QLatin1Char('x'));
    PaneDesk desk(QStringLiteral("page 900 297\n  text 20 30 %1%2tail\n").arg(start, smile));
    const DeskTab* tab = desk.First();
    tab->view->SelectAllText();
    QVERIFY(desk.Perform("d_addbookmark"));
    QCOMPARE(tab->Names(), QStringList{start});
}

void TestBookmarkOddNames::markupInANameIsShownAsItIs()
{
    const QString name = QStringLiteral("<b>bold</b><img src='file:///etc/hostname'>");
    PaneDesk desk(QStringLiteral("page 210 297"));
    const DeskTab* tab = desk.First();
    AddNamed(tab, {name});
    QHelpEvent help(QEvent::ToolTip, tab->RowPoint(0), tab->Tree()->viewport()->mapToGlobal(tab->RowPoint(0)));
    QApplication::sendEvent(tab->Tree()->viewport(), &help);
    QVERIFY(QToolTip::isVisible());
    QTextDocument shown;
    shown.setHtml(QToolTip::text());
    QCOMPARE(shown.toPlainText(), name);
    QToolTip::hideText();
}

void TestBookmarkOddNames::theTipOfAVeryLongNameIsCut()
{
    PaneDesk desk(QStringLiteral("page 210 297"));
    const DeskTab* tab = desk.First();
    AddNamed(tab, {QString(10000, QLatin1Char('x'))});
    QHelpEvent help(QEvent::ToolTip, tab->RowPoint(0), tab->Tree()->viewport()->mapToGlobal(tab->RowPoint(0)));
    QApplication::sendEvent(tab->Tree()->viewport(), &help);
    QTextDocument shown;
    shown.setHtml(QToolTip::text());
    QCOMPARE(shown.toPlainText(), QString(1000, QLatin1Char('x')) + QChar(0x2026));
    QToolTip::hideText();
}

void TestBookmarkOddNames::whatIsPastedLosesItsLooks()
{
    PaneDesk desk(DocumentWithBookmarks(1));
    const DeskTab* tab = desk.First();
    auto* pasted = new QMimeData; // the clipboard's
    pasted->setHtml(QStringLiteral("<h1>Big<br>name</h1><img src='file:///none.png'>"));
    pasted->setText(QStringLiteral("Big\nname"));
    QApplication::clipboard()->setMimeData(pasted);
    OpenEditor(tab, 0)->paste();
    QVERIFY(!tab->Editor()->toHtml().contains(QLatin1String("<h1")));
    QVERIFY(!tab->Editor()->toHtml().contains(QLatin1String("<img")));
    End(tab);
    QCOMPARE(tab->Names(), QStringList{"Bigname"});
    QApplication::clipboard()->clear();
}

void TestBookmarkOddNames::aRowJustAddedShowsItsNameAsStoredUntilTheNextRefill()
{
    G_TreeNode* root = G_TreeNode::CreateRoot();
    auto* bookmark = new G_Bookmark;
    bookmark->name = " A ";
    const G_TreeNode* node = root->AddSubNode(0, bookmark);
    const std::unique_ptr<BookmarkItem> added(BookmarkItem::FromNode(node, true, BookmarkItem::Shown::Stored));
    QCOMPARE(added->text(0), QStringLiteral(" A "));
    QVERIFY(!added->data(2, Qt::UserRole).isValid());
    QCOMPARE(added->toolTip(0), QStringLiteral(" A "));
    QCOMPARE(added->data(0, Qt::UserRole).value<G_Dest*>(), bookmark->dest);
    delete root;
}

void TestBookmarkOddNames::aHundredThousandBookmarksAreListedAddedToDeletedAndBroughtBack()
{
    constexpr int count = 100000;
    PaneDesk desk(QStringLiteral("page 210 297"));
    const DeskTab* tab = desk.First();
    QStringList names;
    for (int row = 0; row < count; ++row)
        names.append(QStringLiteral("new bookmark(%1)").arg(row));
    AddNamed(tab, names);
    QCOMPARE(tab->Tree()->topLevelItemCount(), count);
    QVERIFY(desk.Perform("d_addbookmark"));
    QVERIFY(tab->Editor());
    QCOMPARE(tab->Editor()->toPlainText(), QStringLiteral("new bookmark"));
    QCOMPARE(tab->Tree()->currentIndex().row(), count);
    End(tab);
    desk.Context()->Answer(1024);
    QVERIFY(desk.Perform("d_bookmarkdeleteall"));
    QCOMPARE(tab->Tree()->topLevelItemCount(), 0);
    tab->Stack()->undo();
    QCOMPARE(tab->Tree()->topLevelItemCount(), count + 1);
    QCOMPARE(tab->Rows().last(), QStringLiteral("new bookmark"));
    QCOMPARE(tab->Rows().first(), QStringLiteral("new bookmark(0)"));
    tab->Tree()->selectAll();
    QTest::keyClick(tab->Tree(), Qt::Key_Delete);
    QCOMPARE(tab->Names(), QStringList());
    tab->Stack()->undo();
    QCOMPARE(tab->Tree()->topLevelItemCount(), count + 1);
}

TETO_TEST_MAIN(TestBookmarkOddNames)
#include "test_bookmark_odd_names.moc"
