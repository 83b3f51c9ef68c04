#include "outline_item.h"

#include "outline_pane.h"

#include <common/text_rules.h>
#include <frame/base/converters.h>

namespace {

enum OwnRoles : unsigned {
    ShownTitle = 1,
    ShownPage = 2,
    Depth = 4,
    PageDepth = 8,
    StoredTitle = 16,
    Tip = 32,
    PageTip = 64
};

unsigned TitleRole(int role)
{
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return ShownTitle;
    case Qt::UserRole:
        return Depth;
    case Qt::ToolTipRole:
        return Tip;
    default:
        return 0;
    }
}

unsigned PageRole(int role)
{
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return ShownPage;
    case Qt::UserRole:
        return PageDepth;
    case Qt::ToolTipRole:
        return PageTip;
    default:
        return 0;
    }
}

} // namespace

OutlineTreeItem::OutlineTreeItem(const Entry& entry)
    : QTreeWidgetItem(Type)
    , node(entry.node)
    , title(entry.title)
    , depth(entry.depth)
    , pageIndex(entry.pageIndex)
    , isRecordOpen(entry.isOpen)
{
    // Added to what the item has: without its drag flag the view would never start a drag.
    Qt::ItemFlags wanted = flags() | Qt::ItemIsSelectable | Qt::ItemIsEnabled;
    if (entry.isEditable)
        wanted |= Qt::ItemIsEditable;
    setFlags(wanted);
}

unsigned OutlineTreeItem::OwnRole(int column, int role)
{
    switch (column) {
    case OutlineColumn::Title:
        return TitleRole(role);
    case OutlineColumn::Page:
        return PageRole(role);
    case OutlineColumn::StoredTitle:
        return role == Qt::UserRole ? unsigned(StoredTitle) : 0;
    default:
        return 0;
    }
}

QString OutlineTreeItem::PageText() const
{
    return pageIndex >= 0 ? QString::number(qint64(pageIndex) + 1) : QString::fromLatin1(NoDestinationText);
}

QVariant OutlineTreeItem::OwnData(unsigned ownRole) const
{
    switch (ownRole) {
    case Depth:
    case PageDepth:
        return depth;
    case ShownPage:
    case PageTip:
        return PageText();
    case ShownTitle:
        return RemoveBlanks(GQ_ToQStringFromUtf8(title));
    default:
        return GQ_ToQStringFromUtf8(title);
    }
}

QVariant OutlineTreeItem::data(int column, int role) const
{
    const unsigned own = OwnRole(column, role);
    if (own == 0 || (replaced & own) != 0)
        return QTreeWidgetItem::data(column, role);
    return OwnData(own);
}

void OutlineTreeItem::setData(int column, int role, const QVariant& value)
{
    const unsigned own = OwnRole(column, role);
    const bool isFirst = own != 0 && (replaced & own) == 0;
    if (isFirst && OwnData(own) == value)
        return; // as the base does: setting what is there already changes nothing
    replaced = static_cast<unsigned char>(replaced | own);
    QTreeWidgetItem::setData(column, role, value);
}

QTreeWidgetItem* OutlineTreeItem::clone() const
{
    return new OutlineTreeItem(*this);
}
