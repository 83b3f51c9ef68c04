#pragma once

#include <frame/base/strings.h>

#include <QTreeWidgetItem>

class G_Dest;
class G_TreeNode;

// A row of the bookmark list. It answers the roles from the bookmark's name (shared, not copied) and its destination,
// so that a list of a hundred thousand rows costs no text until it is shown. What is set later stands over that.
//
//     DisplayRole, column 0   the name without leading and trailing blanks
//     UserRole, column 0      the destination, as a G_Dest*; not owned
//     UserRole, column 2      the name as stored. The list has one column: read it through the item, not the model
//     ToolTipRole, column 0   the name as stored
class BookmarkItem : public QTreeWidgetItem
{
public:
    enum Column { NameColumn = 0, StoredNameColumn = 2 };
    // `Stored`: the row of a bookmark just added, whose name is shown as stored and has no entry in column 2 until
    // the next refill.
    enum class Shown { Trimmed, Stored };

    BookmarkItem(const CCA_String& name, G_Dest* dest, bool isEditable, Shown shown = Shown::Trimmed);

    QVariant data(int column, int role) const override;
    void setData(int column, int role, const QVariant& value) override;
    QTreeWidgetItem* clone() const override;

    // The item of a node of the bookmark tree, owned by the caller. A node without a bookmark gets a row too, nameless,
    // so that rows and nodes stay in step.
    static BookmarkItem* FromNode(const G_TreeNode* node, bool isEditable, Shown shown = Shown::Trimmed);

private:
    // The role as a bit of `replaced`; 0 when the item has no answer of its own for it.
    unsigned OwnRole(int column, int role) const;
    QVariant OwnData(unsigned ownRole) const;

    CCA_String name; // UTF-8
    G_Dest* dest;    // not owned
    Shown shown;
    unsigned replaced = 0; // roles that were set since
};
