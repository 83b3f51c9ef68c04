#pragma once

#include <frame/base/strings.h>

#include <QTreeWidgetItem>

class G_TreeNode;

// A row of the outline's tree. It answers the roles from the entry's title (shared, not copied), so that a tree of a
// hundred thousand rows costs no text until it is shown. What is set later stands over that.
//
//     DisplayRole, column 0   the title without leading and trailing blanks
//     DisplayRole, column 1   the page number, or "..." without a destination
//     UserRole, columns 0, 1  the depth, 1 for a top-level entry
//     UserRole, column 2      the title as stored. The tree has two columns: read it through the item, not the model
//     ToolTipRole, column 0   the title as stored
//     ToolTipRole, column 1   as shown
class OutlineTreeItem : public QTreeWidgetItem
{
public:
    enum { Type = QTreeWidgetItem::UserType }; // tells it from a tree's invisible root
    struct Entry
    {
        G_TreeNode* node = nullptr; // not owned
        CCA_String title;           // UTF-8, as stored
        int depth = 1;
        int pageIndex = -1; // from 0; negative without a destination
        bool isOpen = true; // as the document's record says
        bool isEditable = true;
    };
    explicit OutlineTreeItem(const Entry& entry);

    // Good until the next refill of the tree.
    G_TreeNode* Node() const { return node; }
    // The record's expansion. The tree itself knows the state of entries that have children; for the others, whose
    // state shows only once they get some, this is the one place.
    bool IsRecordOpen() const { return isRecordOpen; }
    void SetRecordOpen(bool isOpen) { isRecordOpen = isOpen; }

    QVariant data(int column, int role) const override;
    void setData(int column, int role, const QVariant& value) override;
    QTreeWidgetItem* clone() const override;

private:
    // The role as a bit of `replaced`; 0 when the item has no answer of its own for it.
    static unsigned OwnRole(int column, int role);
    QVariant OwnData(unsigned ownRole) const;
    QString PageText() const;

    G_TreeNode* node; // not owned
    CCA_String title; // UTF-8
    int depth;
    int pageIndex;
    bool isRecordOpen;
    unsigned char replaced = 0; // roles that were set since
};

// Which node each row of a tree shows. The rows know it themselves: a table of a hundred thousand would cost as much to
// fill as the rows. The items asked for must live.
class OutlineItemNodes
{
public:
    int size() const { return count; }
    bool isEmpty() const { return count == 0; }
    // Null for null and for what is no row of the tree.
    G_TreeNode* value(const QTreeWidgetItem* item) const
    {
        const bool isRow = item && tree && item->treeWidget() == tree && item->type() == OutlineTreeItem::Type;
        return isRow ? static_cast<const OutlineTreeItem*>(item)->Node() : nullptr;
    }
    bool contains(const QTreeWidgetItem* item) const { return value(item) != nullptr; }
    // The tree has so many rows now.
    void Reset(const QTreeWidget* newTree, int newCount)
    {
        tree = newTree;
        count = newCount;
    }

private:
    const QTreeWidget* tree = nullptr; // not owned
    int count = 0;
};
