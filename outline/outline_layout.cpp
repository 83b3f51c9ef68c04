// How the outline pane is put together: tree, buttons, connections.

#include "outline_delegate.h"
#include "outline_pane.h"
#include "outline_tree.h"

#include <frame/utils/dpi.h>
#include <frame/view/doc_view.h>
#include <frame/view/ui_context.h>
#include <plugin/shell/style.h>

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QShortcut>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

// "image" and not "border-image" or an icon: an SVG is then drawn at the button's size. The grounds show what the mouse
// is over and where the keyboard is.
const char buttonGrounds[] = "%1{border:none;border-radius:2px;background:transparent;}"
                             "%1:hover{background:#E4E6EB;}"
                             "%1:focus{background:#DCE8FC;}"
                             "%1:disabled{background:transparent;}";

QString ImageRule(const QString& selector, const QString& image)
{
    return QStringLiteral("%1{image:url(%2);}").arg(selector, image);
}

void Dress(QAbstractButton* button, const char* kind, const QString& imageRules, const QSize& size)
{
    const QString sheet = QString::fromLatin1(buttonGrounds).arg(QLatin1String(kind)) + imageRules;
    button->setStyleSheet(Utils::OVDpi::Instance()->ScaleStyleSheet(sheet));
    button->setFixedSize(PaneStyle::Scaled(size.width()), PaneStyle::Scaled(size.height()));
}

void Name(QAbstractButton* button, const QString& tip)
{
    button->setToolTip(tip);
    button->setAccessibleName(tip);
}

// The plus stands left of the arrow that opens the menu.
void DressAddButton(QToolButton* button)
{
    QString rules = ImageRule(QStringLiteral("QToolButton"), QStringLiteral(":/nodeQrc/image/btn_add_normal.svg"));
    rules += ImageRule(QStringLiteral("QToolButton:disabled"), QStringLiteral(":/nodeQrc/image/btn_add_disabled.svg"));
    rules += QStringLiteral(
        "QToolButton{padding-right:10px;image-position:left;}"
        "QToolButton::menu-button{subcontrol-origin:border;subcontrol-position:right;width:10px;border:none;}"
        "QToolButton::menu-button:hover{background:#D5D9E0;}"
        "QToolButton::menu-arrow{image:url(:/catalog/image/down_triangle_normal.svg);width:10px;height:10px;}"
        "QToolButton::menu-arrow:disabled{image:url(:/catalog/image/down_triangle_disabled.svg);}");
    Dress(button, "QToolButton", rules, QSize(34, 24));
}

// Shows what a click would do: collapse while unchecked, expand while checked.
void DressExpandButton(QPushButton* button)
{
    const auto image = [](const char* name) {
        return QStringLiteral(":/catalog/image/btn_%1.svg").arg(QLatin1String(name));
    };
    const QString rules = ImageRule(QStringLiteral("QPushButton"), image("collapse_outline_normal")) +
                          ImageRule(QStringLiteral("QPushButton:checked"), image("expand_outline_normal")) +
                          ImageRule(QStringLiteral("QPushButton:disabled"), image("collapse_outline_disabled")) +
                          ImageRule(QStringLiteral("QPushButton:checked:disabled"), image("expand_outline_disabled"));
    Dress(button, "QPushButton", rules, QSize(24, 24));
}

QString TreeSheet()
{
    return Utils::OVDpi::Instance()->ScaleStyleSheet(
        QStringLiteral("QTreeView{color:#36425A;background:#F5F7F9;outline:0px;}"
                       "QTreeView::branch{background:#F5F7F9;}"
                       "QTreeView::branch:closed:has-children{image:url(:/core/res/icons/navi/collapse.png);}"
                       "QTreeView::branch:open:has-children{image:url(:/core/res/icons/navi/expand.png);}"));
}

} // namespace

void NaviOutlineWidget::BuildLayout()
{
    auto* column = new QVBoxLayout(this);
    column->setSpacing(PaneStyle::Scaled(8));
    column->setContentsMargins(PaneStyle::Scaled(6), 0, 0, 0);
    column->addLayout(BuildButtonRow());
    auto* separator = new QLabel(this);
    separator->setFixedHeight(PaneStyle::Scaled(1));
    separator->setStyleSheet(
        Utils::OVDpi::Instance()->ScaleStyleSheet(QStringLiteral("background:#E4E6EB;margin-right:12px;")));
    column->addWidget(separator);
    BuildTree();
    column->addWidget(tree);
}

QLayout* NaviOutlineWidget::BuildButtonRow()
{
    auto* row = new QHBoxLayout;
    row->setSpacing(PaneStyle::Scaled(12));
    row->setContentsMargins(PaneStyle::Scaled(4), PaneStyle::Scaled(4), 0, 0);
    addButton = new QToolButton(this);
    addButton->setPopupMode(QToolButton::MenuButtonPopup);
    addButton->setFocusPolicy(Qt::StrongFocus); // a tool button's own takes no click and no tab everywhere
    auto* menu = new QMenu(addButton);
    menu->addAction(tr("Batch add"));
    addButton->setMenu(menu);
    // The arrow is the mouse's; without an entry there is no other way to the menu for the keyboard.
    auto* menuKey = new QShortcut(Qt::ALT + Qt::Key_Down, addButton);
    menuKey->setContext(Qt::WidgetShortcut);
    connect(menuKey, &QShortcut::activated, addButton, &QToolButton::showMenu);
    DressAddButton(addButton);
    Name(addButton, tr("Add outline"));
    delButton = new QPushButton(this);
    PaneStyle::MakeToolButton(delButton, QStringLiteral("btn_del"), tr("Del outline"));
    expandButton = new QPushButton(this);
    expandButton->setCheckable(true);
    DressExpandButton(expandButton);
    Name(expandButton, tr("Collapse all outline"));
    for (QWidget* button : std::initializer_list<QWidget*>{addButton, delButton, expandButton})
        row->addWidget(button);
    row->addSpacerItem(
        new QSpacerItem(PaneStyle::Scaled(150), PaneStyle::Scaled(16), QSizePolicy::Expanding, QSizePolicy::Minimum));
    return row;
}

void NaviOutlineWidget::BuildTree()
{
    tree = new CTreeWidget(this, context->CurrentDocView());
    tree->setAccessibleName(tr("Catalog"));
    tree->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded); // the stretched title column never needs one
    tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
    // Entries are edited through "d_outline_rename" alone: an editor of the view's own would show a title that the
    // document does not have.
    tree->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tree->setFrameStyle(0);
    tree->setContextMenuPolicy(Qt::CustomContextMenu);
    tree->setHeaderHidden(true);
    tree->setColumnCount(2);
    tree->setIndentation(PaneStyle::Scaled(20)); // what the delegate counts with
    QHeaderView* header = tree->header();
    header->setStretchLastSection(false);
    header->setMinimumSectionSize(0);
    header->setSectionResizeMode(OutlineColumn::Title, QHeaderView::Stretch);
    header->setSectionResizeMode(OutlineColumn::Page, QHeaderView::Fixed);
    tree->setColumnWidth(OutlineColumn::Page, PaneStyle::Scaled(64));
    tree->setStyleSheet(TreeSheet());
    tree->setItemDelegate(new OutLineTreeItemDelegate(tree, this));
}

void NaviOutlineWidget::ConnectControls()
{
    connect(addButton, SIGNAL(clicked()), this, SLOT(AddOutline()));
    connect(addButton->menu()->actions().first(), SIGNAL(triggered()), this, SLOT(BatchAddOutline()));
    connect(delButton, SIGNAL(clicked()), this, SLOT(DelOutline()));
    connect(expandButton, SIGNAL(clicked()), this, SLOT(ExpandOrCollapseOutline()));
    connect(tree, SIGNAL(itemClicked(QTreeWidgetItem*, int)), this, SLOT(OnClickItem(QTreeWidgetItem*, int)));
    connect(tree, SIGNAL(customContextMenuRequested(const QPoint&)), this, SLOT(PopRequestMenu(const QPoint&)));
    connect(tree, SIGNAL(itemExpanded(QTreeWidgetItem*)), this, SLOT(RecordExpandState(QTreeWidgetItem*)));
    connect(tree, SIGNAL(itemCollapsed(QTreeWidgetItem*)), this, SLOT(RecordExpandState(QTreeWidgetItem*)));
}
