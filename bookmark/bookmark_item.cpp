#include "bookmark_item.h"

#include "bookmark_node.h"

#include <common/text_rules.h>
#include <frame/base/converters.h>

namespace {

enum OwnRoles : unsigned { ShownName = 1, Destination = 2, StoredName = 4, Tip = 8 };

} // namespace

BookmarkItem::BookmarkItem(const CCA_String& name, G_Dest* dest, bool isEditable, Shown shown)
    : name(name)
    , dest(dest)
    , shown(shown)
{
    // Added to what the item has: without its drag flag the view would never start a drag.
    Qt::ItemFlags wanted = flags() | Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    if (isEditable)
        wanted |= Qt::ItemIsEditable;
    setFlags(wanted);
}

BookmarkItem* BookmarkItem::FromNode(const G_TreeNode* node, bool isEditable, Shown shown)
{
    const G_Bookmark* bookmark = BookmarkOf(node);
    if (!bookmark)
        return new BookmarkItem(CCA_String(), nullptr, isEditable, shown);
    return new BookmarkItem(bookmark->name, bookmark->dest, isEditable, shown);
}

unsigned BookmarkItem::OwnRole(int column, int role) const
{
    if (column == NameColumn) {
        switch (role) {
        case Qt::DisplayRole:
        case Qt::EditRole:
            return ShownName;
        case Qt::UserRole:
            return Destination;
        case Qt::ToolTipRole:
            return Tip;
        default:
            return 0;
        }
    }
    const bool hasStoredName = shown == Shown::Trimmed;
    return column == StoredNameColumn && role == Qt::UserRole && hasStoredName ? unsigned(StoredName) : 0;
}

QVariant BookmarkItem::OwnData(unsigned ownRole) const
{
    if (ownRole == Destination)
        return QVariant::fromValue(dest);
    const QString stored = GQ_ToQStringFromUtf8(name);
    return ownRole == ShownName && shown == Shown::Trimmed ? RemoveBlanks(stored) : stored;
}

QVariant BookmarkItem::data(int column, int role) const
{
    const unsigned own = OwnRole(column, role);
    if (own == 0 || (replaced & own) != 0)
        return QTreeWidgetItem::data(column, role);
    return OwnData(own);
}

void BookmarkItem::setData(int column, int role, const QVariant& value)
{
    const unsigned own = OwnRole(column, role);
    const bool isFirst = own != 0 && (replaced & own) == 0;
    if (isFirst && OwnData(own) == value)
        return; // as the base does: setting what is there already changes nothing
    replaced |= own;
    QTreeWidgetItem::setData(column, role, value);
}

QTreeWidgetItem* BookmarkItem::clone() const
{
    return new BookmarkItem(*this);
}
