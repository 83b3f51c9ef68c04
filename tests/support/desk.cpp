#include "desk.h"

#include <frame/view/doc_view.h>

#include <QApplication>
#include <QTextEdit>

QUndoStack* DeskTabBase::Stack() const
{
    return view->UndoStack();
}

QTextEdit* DeskTabBase::OpenEditor(const QWidget* tree)
{
    for (QTextEdit* editor : tree->findChildren<QTextEdit*>()) {
        if (!editor->isHidden())
            return editor;
    }
    return nullptr;
}

void ShowPane(QWidget* pane)
{
    pane->resize(260, 420);
    pane->show();
    ActivatePane(pane);
}

void ActivatePane(QWidget* pane)
{
    QApplication::setActiveWindow(pane);
    ViewFixture::Settle();
}

bool PerformByName(G_UIContext* context, const char* operation)
{
    G_Operation* copy = context->CreateOperationByName(operation, QString());
    const bool isDone = copy && copy->PerformAction();
    if (copy)
        copy->DeleteLater();
    return isDone;
}
