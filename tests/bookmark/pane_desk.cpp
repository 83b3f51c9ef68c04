#include "pane_desk.h"

#include <bookmark/bookmark_pane.h>
#include <bookmark/bookmark_tree.h>
#include <tests/support/tree_dump.h>

#include <frame/base/converters.h>
#include <frame/operation/event_manager.h>

#include <QDrag>
#include <QtTest>

void DeskTab::Take(QWidget* widget)
{
    pane = qobject_cast<NaviBookmarkWidget*>(widget);
}

QWidget* DeskTab::Widget() const
{
    return pane;
}

CBookmarkTreeWidget* DeskTab::Tree() const
{
    return pane->tree;
}

QStringList DeskTab::Rows() const
{
    QStringList rows;
    for (int row = 0; row < Tree()->topLevelItemCount(); ++row)
        rows.append(Tree()->topLevelItem(row)->text(0));
    return rows;
}

QStringList DeskTab::Names() const
{
    QStringList names;
    const G_TreeNode* root = document->GetBookmarkRoot();
    for (int row = 0; root && row < root->SubNodeCount(); ++row)
        names.append(GQ_ToQStringFromUtf8(root->SubNode(row)->NodeText()));
    return names;
}

QString DeskTab::Dump() const
{
    return DumpTree(document->GetBookmarkRoot());
}

QTextEdit* DeskTab::Editor() const
{
    return OpenEditor(Tree());
}

QPoint DeskTab::RowPoint(int row) const
{
    return Tree()->visualItemRect(Tree()->topLevelItem(row)).center();
}

QPoint DeskTab::LowPoint(int row) const
{
    return RowPoint(row) + QPoint(0, 3);
}

void DeskTab::Click(int row) const
{
    QTest::mouseClick(Tree()->viewport(), Qt::LeftButton, {}, RowPoint(row));
}

void DeskTab::DoubleClick(int row) const
{
    Click(row);
    QTest::mouseDClick(Tree()->viewport(), Qt::LeftButton, {}, RowPoint(row));
}

Drag::Outcome DeskTab::DragRow(int row, const QList<QPoint>& path) const
{
    Drag::Outcome outcome;
    QWidget* viewport = Tree()->viewport();
    ReorderTree::SetDragRunner([&](QDrag* drag) {
        outcome = Drag::DropAt(viewport, drag->mimeData(), path);
        return outcome.action;
    });
    Drag::MouseDrag(viewport, RowPoint(row), path.last());
    ReorderTree::SetDragRunner({});
    ViewFixture::Settle();
    return outcome;
}

void DeskTab::Select(const QList<int>& rows) const
{
    Tree()->clearSelection();
    if (!rows.isEmpty())
        Tree()->setCurrentItem(Tree()->topLevelItem(rows.first()), 0, QItemSelectionModel::NoUpdate);
    for (const int row : rows)
        Tree()->topLevelItem(row)->setSelected(true);
}

QList<int> DeskTab::SelectedRows() const
{
    QList<int> rows;
    for (int row = 0; row < Tree()->topLevelItemCount(); ++row) {
        if (Tree()->topLevelItem(row)->isSelected())
            rows.append(row);
    }
    return rows;
}

void DeskTab::SwallowPageChange() const
{
    emit view->UIContext()->EventMgr()->PageChange(view);
}

QString DocumentWithBookmarks(int count)
{
    QString text = QStringLiteral("page 210 297\npage 210 297\npage 210 297\n");
    for (int row = 0; row < count; ++row) {
        text += QStringLiteral("bookmark \"%1\" page=1 rect=0,%2,100,%3 zoom=1 mode=0\n")
                    .arg(row < 26 ? QString(QChar('A' + row)) : QStringLiteral("N%1").arg(row))
                    .arg(10 * row)
                    .arg(10 * row + 50);
    }
    return text;
}
