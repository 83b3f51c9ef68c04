#include "find_desk.h"

#include <tests/ofd/document/document_export.h>

#include <frame/document/memory_document.h>

#include <QAbstractScrollArea>
#include <QtTest>

namespace {

const QString threePages = QString::fromUtf8("page 210 297\n  layer 1 Text\n"
                                             "  text 20 30 The contract begins\n"
                                             "  text 20 40 where the Contract ends\n"
                                             "page 210 297\n  layer 1 Text\n"
                                             "  text 20 30 nothing here\n"
                                             "page 210 297\n  layer 1 Text\n"
                                             "  text 20 30 a contractor\n"
                                             "  text 20 200 合同编\n"
                                             "  text 20 210 号\n");

} // namespace

FindDesk::FindDesk()
    : FindDesk(threePages)
{
}

FindDesk::FindDesk(const QString& description)
    : desk(false)
{
    Open(description);
    if (!QTest::qWaitForWindowActive(Window()))
        QTest::qFail("the window is not active", __FILE__, __LINE__);
}

void FindDesk::Open(const QString& description)
{
    const auto document = MemoryDocument::FromText(description);
    const QString path = QStringLiteral("%1/%2.ofd").arg(desk.Folder()).arg(++files);
    if (!document) {
        QTest::qFail("bad description", __FILE__, __LINE__);
        return;
    }
    ExportDocument(*document, path);
    if (!Window()->OpenFile(path))
        QTest::qFail("the file does not open", __FILE__, __LINE__);
}

QWidget* FindDesk::Viewport() const
{
    return qobject_cast<QAbstractScrollArea*>(View()->Widget())->viewport();
}

void FindDesk::PressFind() const
{
    QTest::keyClick(Window(), Qt::Key_F, Qt::ControlModifier);
}

void FindDesk::Find(const QString& text) const
{
    PressFind();
    if (text.at(0).unicode() < 0x80)
        QTest::keyClicks(Box(), text);
    else
        Box()->insert(text); // as an input method does
    Wait();
}

void FindDesk::Wait() const
{
    if (!QTest::qWaitFor([this] { return !Search()->IsSearching(); }, 20000))
        QTest::qFail("the search does not end", __FILE__, __LINE__);
}

int FindDesk::CurrentPage() const
{
    int page = -1;
    Search()->CurrentRects(&page);
    return page;
}

QRect FindDesk::CurrentPlace() const
{
    int page = -1;
    const QList<CCA_GRect> rects = Search()->CurrentRects(&page);
    const CCA_Rect rect = View()->SceneRectFromDocRect(rects.value(0), page);
    const QPoint shift = View()->VisibleSceneRect().topLeft();
    return QRect(rect.left, rect.top, rect.Width(), rect.Height()).translated(-shift);
}

QCheckBox* FindDesk::Choice(const QString& name) const
{
    const QList<QCheckBox*> choices = Bar()->findChildren<QCheckBox*>();
    for (QCheckBox* choice : choices) {
        if (choice->accessibleName() == name)
            return choice;
    }
    return nullptr;
}
