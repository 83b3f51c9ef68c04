#include "plain_reorder_tree.h"

#include <common/text_edits.h>
#include <tests/support/test_main.h>
#include <tests/support/view_fixture.h>

#include <QSignalSpy>
#include <QStyledItemDelegate>
#include <QtTest>

#include <memory>

Q_DECLARE_METATYPE(QTreeWidgetItem*)

namespace {

// Opens one of the two editors on a row.
template <typename Editor>
class EditorDelegate : public QStyledItemDelegate
{
public:
    explicit EditorDelegate(QTreeWidget* tree)
        : QStyledItemDelegate(tree)
        , tree(tree)
    {
    }
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&, const QModelIndex&) const override
    {
        return new Editor(parent, tree);
    }
    void setEditorData(QWidget* editor, const QModelIndex& index) const override
    {
        static_cast<QTextEdit*>(editor)->setPlainText(index.data().toString());
    }
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override
    {
        model->setData(index, static_cast<QTextEdit*>(editor)->toPlainText());
        if (whileCommitting)
            whileCommitting();
    }
    std::function<void()> whileCommitting;

private:
    QTreeWidget* tree;
};

} // namespace

// How an edit of a row ends.
class TestTextEdits : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qRegisterMetaType<QTreeWidgetItem*>("QTreeWidgetItem*"); }

    void init()
    {
        tree = std::make_unique<PlainReorderTree>(nullptr);
        for (int row = 0; row < 3; ++row) {
            auto* item = new QTreeWidgetItem({QStringLiteral("row %1").arg(row)});
            item->setFlags(item->flags() | Qt::ItemIsEditable);
            tree->addTopLevelItem(item);
        }
        auto* child = new QTreeWidgetItem({QStringLiteral("child")});
        child->setFlags(child->flags() | Qt::ItemIsEditable);
        tree->topLevelItem(2)->addChild(child);
        tree->expandAll();
        tree->resize(300, 300);
        tree->show();
        tree->activateWindow();
        ViewFixture::Settle();
    }

    void cleanup() { tree.reset(); }

    void enterCommitsClosesClearsThePendingRowAndTellsTheTree_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::newRow("return") << int(Qt::Key_Return) << int(Qt::NoModifier);
        QTest::newRow("enter") << int(Qt::Key_Enter) << int(Qt::KeypadModifier);
        QTest::newRow("shift and return") << int(Qt::Key_Return) << int(Qt::ShiftModifier);
        QTest::newRow("control and return") << int(Qt::Key_Return) << int(Qt::ControlModifier);
    }

    void enterCommitsClosesClearsThePendingRowAndTellsTheTree()
    {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        QTextEdit* editor = Open<EnterMonitorTextEdit>(tree->topLevelItem(1));
        editor->setPlainText(QStringLiteral("new text"));
        SetPending();
        QSignalSpy changed(tree.get(), SIGNAL(itemChanged(QTreeWidgetItem*, int)));
        QTest::keyClick(editor, static_cast<Qt::Key>(key), static_cast<Qt::KeyboardModifiers>(modifiers));
        QCOMPARE(tree->topLevelItem(1)->text(0), QStringLiteral("new text"));
        QCOMPARE(tree->currentItem(), tree->topLevelItem(1));
        QVERIFY(!tree->pendingNode);
        QCOMPARE(tree->pendingRow, -1);
        QCOMPARE(changed.size(), 1); // the commit itself was mute
        QCOMPARE(changed.first().at(0).value<QTreeWidgetItem*>(), tree->topLevelItem(1));
        QCOMPARE(changed.first().at(1).toInt(), 0);
        ViewFixture::Settle();
        QVERIFY(!OpenEditor());
        QVERIFY(!tree->signalsBlocked());
    }

    void enterWithTheSameTextClearsThePendingRowToo()
    {
        QTextEdit* editor = Open<BookmarkEnterMonitorTextEdit>(tree->topLevelItem(0));
        SetPending();
        QSignalSpy changed(tree.get(), SIGNAL(itemChanged(QTreeWidgetItem*, int)));
        QTest::keyClick(editor, Qt::Key_Return);
        QCOMPARE(tree->pendingRow, -1);
        QVERIFY(!tree->pendingNode);
        QCOMPARE(changed.size(), 1);
    }

    void enterOnAChildRowEndsItsEditToo()
    {
        QTreeWidgetItem* child = tree->topLevelItem(2)->child(0);
        QTextEdit* editor = Open<EnterMonitorTextEdit>(child);
        editor->setPlainText(QStringLiteral("renamed"));
        QTest::keyClick(editor, Qt::Key_Return);
        QCOMPARE(child->text(0), QStringLiteral("renamed"));
        QCOMPARE(tree->currentItem(), child);
    }

    void losingTheFocusCancelsThePendingRowInTheBookmarkEditorOnly()
    {
        QTextEdit* bookmarkEditor = Open<BookmarkEnterMonitorTextEdit>(tree->topLevelItem(0));
        SetPending();
        LoseFocus(bookmarkEditor);
        QCOMPARE(tree->pendingRow, -1);
        QVERIFY(!tree->pendingNode);

        QTextEdit* plainEditor = Open<EnterMonitorTextEdit>(tree->topLevelItem(1));
        SetPending();
        LoseFocus(plainEditor);
        QCOMPARE(tree->pendingRow, 7);
        QVERIFY(tree->pendingNode);
    }

    void otherKeysStayInTheEditor()
    {
        QTextEdit* editor = Open<EnterMonitorTextEdit>(tree->topLevelItem(1));
        SetPending();
        QSignalSpy changed(tree.get(), SIGNAL(itemChanged(QTreeWidgetItem*, int)));
        editor->selectAll();
        QTest::keyClicks(editor, QStringLiteral("xyz"));
        QCOMPARE(editor->toPlainText(), QStringLiteral("xyz"));
        QCOMPARE(changed.size(), 0);
        QCOMPARE(tree->pendingRow, 7);
    }

    void withoutACurrentItemOnlyThePendingRowIsCleared()
    {
        EnterMonitorTextEdit editor(nullptr, tree.get());
        tree->setCurrentItem(nullptr);
        SetPending();
        QSignalSpy changed(tree.get(), SIGNAL(itemChanged(QTreeWidgetItem*, int)));
        QTest::keyClick(&editor, Qt::Key_Return);
        QCOMPARE(tree->pendingRow, -1);
        QCOMPARE(changed.size(), 0);
    }

    void anEditorOnAnotherKindOfTreeWorksWithoutPendingRows()
    {
        QTreeWidget other;
        other.addTopLevelItem(new QTreeWidgetItem({"a"}));
        other.setCurrentItem(other.topLevelItem(0));
        BookmarkEnterMonitorTextEdit editor(nullptr, &other);
        QSignalSpy changed(&other, SIGNAL(itemChanged(QTreeWidgetItem*, int)));
        QTest::keyClick(&editor, Qt::Key_Return);
        QCOMPARE(changed.size(), 1);
        LoseFocus(&editor);
    }

    void aRowThatDiesWhileItsEditCommitsIsNotToldOf()
    {
        QTextEdit* editor = Open<EnterMonitorTextEdit>(tree->topLevelItem(1));
        auto* delegate = static_cast<EditorDelegate<EnterMonitorTextEdit>*>(tree->itemDelegate());
        delegate->whileCommitting = [this] { tree->clear(); };
        SetPending();
        QSignalSpy changed(tree.get(), SIGNAL(itemChanged(QTreeWidgetItem*, int)));
        QTest::keyClick(editor, Qt::Key_Return);
        QCOMPARE(changed.size(), 0);
        QCOMPARE(tree->pendingRow, -1);
        QVERIFY(!tree->signalsBlocked());
    }

    void anEditorThatDiesWhileTheTreeIsToldIsNotTouchedAgain()
    {
        QPointer<QTextEdit> editor = Open<EnterMonitorTextEdit>(tree->topLevelItem(1));
        connect(tree.get(), &QTreeWidget::itemChanged, this, [editor] { delete editor; });
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        // By hand: sendEvent itself looks at its receiver afterwards.
        QVERIFY(static_cast<QObject*>(editor.data())->event(&press));
        QVERIFY(!editor);
    }

    void anEditorWhoseTreeDiedEndsNothing()
    {
        auto lone = std::make_unique<PlainReorderTree>(nullptr);
        EnterMonitorTextEdit editor(nullptr, lone.get());
        lone.reset();
        QTest::keyClick(&editor, Qt::Key_Return);
        QVERIFY(!editor.treeWidget);
    }

private:
    // Closed editors live, hidden, until the event loop deletes them.
    QTextEdit* OpenEditor() const
    {
        for (QTextEdit* editor : tree->viewport()->findChildren<QTextEdit*>()) {
            if (!editor->isHidden())
                return editor;
        }
        return nullptr;
    }

    template <typename Editor>
    QTextEdit* Open(QTreeWidgetItem* item)
    {
        tree->setItemDelegate(new EditorDelegate<Editor>(tree.get()));
        tree->setCurrentItem(item);
        tree->editItem(item, 0);
        return OpenEditor();
    }

    void SetPending()
    {
        tree->pendingNode = reinterpret_cast<G_TreeNode*>(tree.get()); // never followed
        tree->pendingRow = 7;
    }

    static void LoseFocus(QWidget* editor)
    {
        QFocusEvent out(QEvent::FocusOut);
        QCoreApplication::sendEvent(editor, &out);
    }

    std::unique_ptr<PlainReorderTree> tree;
};

TETO_TEST_MAIN(TestTextEdits)
#include "test_text_edits.moc"
