#include "outline_desk.h"

#include <outline/outline_pane.h>
#include <outline/outline_tree.h>
#include <tests/support/tree_dump.h>

#include <QTreeWidgetItemIterator>

void OutlineTab::Take(QWidget* widget)
{
    pane = qobject_cast<NaviOutlineWidget*>(widget);
}

QWidget* OutlineTab::Widget() const
{
    return pane;
}

CTreeWidget* OutlineTab::Tree() const
{
    return pane->tree;
}

QString OutlineTab::Dump() const
{
    return DumpTree(document->GetOutlineRoot());
}

QString OutlineTab::Names() const
{
    return DumpNames(document->GetOutlineRoot());
}

QString OutlineTab::Rows() const
{
    QString rows;
    for (QTreeWidgetItemIterator it(Tree()); *it; ++it) {
        for (const QTreeWidgetItem* above = (*it)->parent(); above; above = above->parent())
            rows += QStringLiteral("  ");
        rows += (*it)->text(0) + QLatin1Char('\n');
    }
    return rows;
}

QTextEdit* OutlineTab::Editor() const
{
    return OpenEditor(Tree());
}

G_TreeNode* OutlineTab::Node(const QList<int>& rows) const
{
    G_TreeNode* node = document->GetOutlineRoot();
    for (const int row : rows)
        node = node ? node->SubNode(row) : nullptr;
    return node;
}

QTreeWidgetItem* OutlineTab::Item(const QList<int>& rows) const
{
    QTreeWidgetItem* item = Tree()->invisibleRootItem();
    for (const int row : rows)
        item = item ? item->child(row) : nullptr;
    return item;
}

QTreeWidgetItem* OutlineTab::Item(const QString& title) const
{
    return Tree()->findItems(title, Qt::MatchExactly | Qt::MatchRecursive).value(0);
}

void OutlineTab::MakeCurrent(const QString& title) const
{
    Tree()->setCurrentItem(Item(title));
}

void OutlineTab::Select(const QStringList& titles) const
{
    Tree()->clearSelection();
    if (!titles.isEmpty())
        Tree()->setCurrentItem(Item(titles.first()), 0, QItemSelectionModel::NoUpdate);
    for (const QString& title : titles)
        Item(title)->setSelected(true);
}

QString SmallOutline()
{
    return QStringLiteral("page 210 297\npage 210 297\npage 210 297\n"
                          "outline \"A\" page=1 rect=0,0,100,50\n"
                          "  outline \"A1\" page=1 rect=0,10,100,50\n"
                          "    outline \"A1a\" page=1 rect=0,20,100,50\n"
                          "  outline \"A2\" page=1 rect=0,30,100,50 closed\n"
                          "outline \"B\"\n"
                          "outline \"C\" page=2 rect=0,0,100,50\n"
                          "  outline \"C1\" page=2 rect=0,10,100,50\n");
}
