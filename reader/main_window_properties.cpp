#include "main_window.h"

#include "link_operations.h"
#include "properties_dialog.h"
#include "reader_context.h"

#include <frame/view/context_menu.h>
#include <frame/view/doc_view.h>

#include <QGuiApplication>

void MainWindow::ShowProperties()
{
    DocumentTab* tab = CurrentTab();
    if (!tab)
        return;
    const QList<PropertiesDialog*> open = findChildren<PropertiesDialog*>(QString(), Qt::FindDirectChildrenOnly);
    PropertiesDialog* dialog = nullptr;
    for (PropertiesDialog* candidate : open) {
        if (candidate->Tab() == tab && candidate->isVisible())
            dialog = candidate;
    }
    if (dialog)
        dialog->Refresh();
    else
        dialog = new PropertiesDialog(tab, this);
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
}

void MainWindow::WatchPageMenu(DocumentTab* tab)
{
    QWidget* page = tab->View()->Widget();
    page->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(page, &QWidget::customContextMenuRequested, this, &MainWindow::ShowPageMenu);
}

// The menu is that of the view's tool, with entries for the link that it comes up on. While a drag is held no menu
// comes up: it would take the end of the drag.
void MainWindow::ShowPageMenu(const QPoint& place)
{
    G_DocView* view = context->CurrentDocView();
    G_ToolHandler* tool = view ? view->CurrentToolHandler() : nullptr;
    if (!tool || QGuiApplication::mouseButtons().testFlag(Qt::LeftButton))
        return;
    const CCA_String name = tool->Name();
    ContextMenuItemState copy;
    copy.enabled = !view->SelectHighLightText().isEmpty();
    QMap<QString, ContextMenuItemState> states{{QStringLiteral("e_copytext"), copy}};
    G_OperationParam params;
    AddLinkToMenu(view, view->VisibleSceneRect().topLeft() + place, &states, &params);
    context->ContextMenu()->PopupMenu(QString::fromUtf8(name.Bytes()), states, &params);
}
