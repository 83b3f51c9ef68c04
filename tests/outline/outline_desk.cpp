#include "outline_desk.h"

#include <outline/outline_pane.h>
#include <outline/outline_tree.h>
#include <tests/support/tree_dump.h>

#include <QApplication>
#include <QTextEdit>
#include <QTreeWidgetItemIterator>
#include <QUndoStack>
#include <QtTest>

void DeskMenu::PopupMenu(const QString& toolName, const QMap<QString, ContextMenuItemState>& states,
                         const G_OperationParam*)
{
    shown.append(toolName);
    lastStates = states;
}

QStringList DeskNavigation::opened;

G_Operation* DeskNavigation::Clone() const
{
    auto* copy = new DeskNavigation;
    copy->CopyFrom(this);
    return copy;
}

bool DeskNavigation::DoAction()
{
    opened.append(Params->GetQString("navi_params"));
    return true;
}

OutlineOperations::OutlineOperations()
{
    for (G_Operation* operation :
         std::initializer_list<G_Operation*>{&open, &addFromOutside, &add, &addSub, &batchAdd, &del, &delAll, &rename,
                                             &resetPos, &wordwrap, &expandSub, &expandOrCollapse})
        operation->RegisterToGlobal();
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

QUndoStack* OutlineTab::Stack() const
{
    return view->UndoStack();
}

QTextEdit* OutlineTab::Editor() const
{
    for (QTextEdit* editor : Tree()->findChildren<QTextEdit*>()) {
        if (!editor->isHidden())
            return editor;
    }
    return nullptr;
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

OutlineDesk::OutlineDesk(const QString& documentText)
    : fixture(documentText)
    , menu(new DeskMenu(fixture.Context()))
{
    DeskNavigation::opened.clear();
    fixture.Context()->SetContextMenu(std::unique_ptr<G_ContextMenu>(menu));
    navigation.RegisterToGlobal();
    signature.RegisterHandlerToGlobal();
    page.SetContext(fixture.Context());
    AddTab(fixture.Document(), fixture.View());
}

OutlineDesk::~OutlineDesk()
{
    for (const auto& tab : tabs)
        delete tab->pane;
    ViewFixture::Settle();
}

OutlineTab* OutlineDesk::Open(const QString& documentText)
{
    OpenTab* tab = fixture.Open(documentText);
    return AddTab(tab->document.get(), tab->view.get());
}

OutlineTab* OutlineDesk::AddTab(MemoryDocument* document, G_DocView* view)
{
    auto tab = std::make_unique<OutlineTab>();
    tab->document = document;
    tab->view = view;
    tab->pane = qobject_cast<NaviOutlineWidget*>(
        fixture.MakePane(document, [this, document] { return page.CreateWidget(document); }));
    page.SetWidgetFor(document, tab->pane);
    tab->pane->resize(260, 420);
    tab->pane->show();
    QApplication::setActiveWindow(tab->pane);
    tabs.push_back(std::move(tab));
    ViewFixture::Settle();
    return tabs.back().get();
}

void OutlineDesk::MakeCurrent(OutlineTab* tab)
{
    fixture.SetCurrent(tab->view);
    QApplication::setActiveWindow(tab->pane);
    ViewFixture::Settle();
}

bool OutlineDesk::Perform(const char* operation)
{
    G_Operation* copy = Context()->CreateOperationByName(operation, QString());
    const bool isDone = copy && copy->PerformAction();
    if (copy)
        copy->DeleteLater();
    return isDone;
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
