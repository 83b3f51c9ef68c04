#include "desk.h"

#include <frame/utils/no_content.h>
#include <frame/view/doc_view.h>

#include <QApplication>
#include <QTextEdit>
#include <QtTest>

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

void VerifyPicturePlaces(QWidget* pane, const QWidget* list, const OVPaintNoContent* picture)
{
    for (const QSize& size : {QSize(300, 500), QSize(420, 260)}) {
        pane->resize(size);
        ViewFixture::Settle();
        const QRect place = picture->PixRect();
        QCOMPARE(place.size(), QSize(120, 112));
        QCOMPARE(place.x(), (list->width() - 120) / 2);
        QCOMPARE(place.y(), (list->height() - 70 - 112) / 2);
    }
}

bool PerformByName(G_UIContext* context, const char* operation)
{
    G_Operation* copy = context->CreateOperationByName(operation, QString());
    const bool isDone = copy && copy->PerformAction();
    if (copy)
        copy->DeleteLater();
    return isDone;
}
