#include "outline_gestures.h"

#include <outline/outline_pane.h>
#include <outline/outline_tree.h>

#include <QApplication>
#include <QDrag>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QTextEdit>
#include <QTreeWidgetItemIterator>
#include <QtTest>

namespace Gesture {

QRect TitleRect(const OutlineTab* tab, const QString& title)
{
    return tab->Tree()->visualRect(tab->Tree()->IndexOf(tab->Item(title)));
}

QPoint AsSibling(const OutlineTab* tab, const QString& title)
{
    const QRect rect = TitleRect(tab, title);
    return QPoint(rect.left() + 10, rect.center().y() + 3);
}

QPoint AsChild(const OutlineTab* tab, const QString& title)
{
    return AsSibling(tab, title) + QPoint(30, 0);
}

QPoint PagePoint(const OutlineTab* tab, const QString& title)
{
    const QModelIndex index = tab->Tree()->IndexOf(tab->Item(title)).siblingAtColumn(OutlineColumn::Page);
    return tab->Tree()->visualRect(index).center();
}

void Click(const OutlineTab* tab, const QString& title, Qt::KeyboardModifiers modifiers)
{
    QTest::mouseClick(tab->Tree()->viewport(), Qt::LeftButton, modifiers, AsSibling(tab, title));
}

void DoubleClick(const OutlineTab* tab, const QString& title)
{
    Click(tab, title);
    QTest::mouseDClick(tab->Tree()->viewport(), Qt::LeftButton, {}, AsSibling(tab, title));
}

void Rename(const OutlineTab* tab, const QString& title, const QString& newTitle, Qt::Key endKey)
{
    tab->MakeCurrent(title);
    QTest::keyClick(tab->Tree(), Qt::Key_F2);
    QTextEdit* editor = tab->Editor();
    QVERIFY(editor);
    if (newTitle.isEmpty())
        QTest::keyClick(editor, Qt::Key_Backspace);
    else
        QTest::keyClicks(editor, newTitle);
    QTest::keyClick(editor, endKey);
    ViewFixture::Settle();
}

Drag::Outcome DragEntry(const OutlineTab* tab, const QString& title, const QList<QPoint>& path)
{
    Drag::Outcome outcome;
    QWidget* viewport = tab->Tree()->viewport();
    ReorderTree::SetDragRunner([&](QDrag* drag) {
        outcome = Drag::DropAt(viewport, drag->mimeData(), path);
        return outcome.action;
    });
    Drag::MouseDrag(viewport, AsSibling(tab, title), path.last());
    ReorderTree::SetDragRunner({});
    ViewFixture::Settle();
    return outcome;
}

int DragsBegun(const OutlineTab* tab, const QString& title)
{
    int begun = 0;
    ReorderTree::SetDragRunner([&](QDrag*) {
        ++begun;
        return Qt::IgnoreAction;
    });
    Drag::MouseDrag(tab->Tree()->viewport(), AsSibling(tab, title), AsSibling(tab, title) + QPoint(0, 60));
    ReorderTree::SetDragRunner({});
    return begun;
}

void HoverDrag(const OutlineTab* tab, const QMimeData* data, const QPoint& place)
{
    QDragEnterEvent enter(place, Qt::MoveAction, data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(tab->Tree()->viewport(), &enter);
    QDragMoveEvent move(place, Qt::MoveAction, data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(tab->Tree()->viewport(), &move);
}

QStringList Selected(const OutlineTab* tab)
{
    QStringList titles;
    for (QTreeWidgetItemIterator it(tab->Tree()); *it; ++it) {
        if ((*it)->isSelected())
            titles.append((*it)->text(OutlineColumn::Title));
    }
    return titles;
}

} // namespace Gesture
