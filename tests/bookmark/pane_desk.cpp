#include "pane_desk.h"

#include <bookmark/bookmark_pane.h>
#include <bookmark/bookmark_tree.h>
#include <tests/support/tree_dump.h>

#include <frame/base/converters.h>
#include <frame/operation/event_manager.h>

#include <QApplication>
#include <QDrag>
#include <QTextEdit>
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

QUndoStack* DeskTab::Stack() const
{
    return view->UndoStack();
}

QTextEdit* DeskTab::Editor() const
{
    for (QTextEdit* editor : Tree()->findChildren<QTextEdit*>()) {
        if (!editor->isHidden())
            return editor;
    }
    return nullptr;
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

PaneDesk::PaneDesk(const QString& documentText)
    : fixture(documentText)
    , menu(new DeskMenu(fixture.Context()))
{
    DeskNavigation::opened.clear();
    fixture.Context()->SetContextMenu(std::unique_ptr<G_ContextMenu>(menu));
    for (G_Operation* operation :
         std::initializer_list<G_Operation*>{&open, &add, &reset, &rename, &wrap, &remove, &removeAll, &navigation})
        operation->RegisterToGlobal();
    signature.RegisterHandlerToGlobal();
    page.SetContext(fixture.Context());
    AddTab(fixture.Document(), fixture.View());
}

PaneDesk::~PaneDesk()
{
    for (const auto& tab : tabs)
        delete tab->pane;
    ViewFixture::Settle();
}

DeskTab* PaneDesk::Open(const QString& documentText)
{
    OpenTab* tab = fixture.Open(documentText);
    return AddTab(tab->document.get(), tab->view.get());
}

DeskTab* PaneDesk::AddTab(MemoryDocument* document, G_DocView* view)
{
    auto tab = std::make_unique<DeskTab>();
    tab->document = document;
    tab->view = view;
    tab->pane = qobject_cast<NaviBookmarkWidget*>(
        fixture.MakePane(document, [this, document] { return page.CreateWidget(document); }));
    page.SetWidgetFor(document, tab->pane);
    tab->pane->resize(260, 420);
    tab->pane->show();
    QApplication::setActiveWindow(tab->pane);
    tabs.push_back(std::move(tab));
    ViewFixture::Settle();
    return tabs.back().get();
}

void PaneDesk::MakeCurrent(DeskTab* tab)
{
    fixture.SetCurrent(tab->view);
    QApplication::setActiveWindow(tab->pane);
    ViewFixture::Settle();
}

bool PaneDesk::Perform(const char* operation)
{
    G_Operation* copy = Context()->CreateOperationByName(operation, QString());
    const bool isDone = copy && copy->PerformAction();
    if (copy)
        copy->DeleteLater();
    return isDone;
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
