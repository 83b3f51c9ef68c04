#pragma once

#include <tests/support/event_probe.h>
#include <tests/support/view_fixture.h>

#include <QUndoStack>
#include <QtTest>

#include <memory>

// A document full of links in a view, a hand on its mouse and an ear for what is told; opened anew for each test.
class LinkDesk
{
protected:
    void OpenDesk()
    {
        fixture = std::make_unique<ViewFixture>(pages);
        probe = std::make_unique<EventProbe>(fixture->Context()->EventMgr());
        View()->FinishRendering();
    }
    void CloseDesk()
    {
        QCOMPARE(View()->UndoStack()->count(), 0); // following a link is no change
        QVERIFY(!fixture->Document()->IsModified());
        probe.reset();
        fixture.reset();
    }
    // The two tools that follow links, as rows of a test.
    static void AddTools()
    {
        QTest::addColumn<QByteArray>("tool");
        QTest::newRow("hand") << QByteArray("t_handtool");
        QTest::newRow("text") << QByteArray("t_textselect");
    }

    G_DocView* View() const { return fixture->View(); }
    QWidget* Viewport() const { return ViewFixture::Viewport(View()); }
    void Choose(const QByteArray& tool) const { View()->SetCurrentToolHandler(View()->ToolHandlerByName(tool)); }
    // A point of the viewport over a place of the first page, in mm.
    QPoint At(float x, float y) const
    {
        const CCA_Point scene = View()->ScenePointFromDocPoint({x, y}, 0);
        return QPoint(scene.x, scene.y) - View()->VisibleSceneRect().topLeft();
    }
    void Move(const QPoint& place, Qt::MouseButtons buttons = Qt::NoButton) const
    {
        QMouseEvent move(QEvent::MouseMove, place, Qt::NoButton, buttons, Qt::NoModifier);
        QApplication::sendEvent(Viewport(), &move);
    }
    void Press(const QPoint& place) const { QTest::mousePress(Viewport(), Qt::LeftButton, {}, place); }
    void Release(const QPoint& place) const
    {
        QTest::mouseRelease(Viewport(), Qt::LeftButton, {}, place);
        QCoreApplication::processEvents();
    }
    void Click(float x, float y) const
    {
        Press(At(x, y));
        Release(At(x, y));
    }
    Qt::CursorShape Cursor() const { return Viewport()->cursor().shape(); }

    const QString pages = QStringLiteral("page 210 297\n"
                                         "  layer 1 Text\n"
                                         "  text 20 62 Some words\n"
                                         "  link rect=20,20,60,30 page=3\n"
                                         "  link rect=20,40,60,50 uri=https://example.org/?a=<b>\n"
                                         "  link rect=20,60,60,70 bookmark=mark\n"
                                         "  link rect=80,20,120,30 attachment=31\n"
                                         "  link rect=80,40,120,50 sound movie\n"
                                         "  link rect=80,60,120,70 page=99\n"
                                         "  link rect=140,20,180,30 page=2\n"
                                         "  link rect=160,20,180,30 page=3\n"
                                         "  annot id=5 type=1 rect=140,40,180,50\n"
                                         "  link annot=5 rect=140,40,180,50 page=2\n"
                                         "  template 101 Background\n"
                                         "page 210 297\npage 210 297\npage 210 297\n"
                                         "template 101 Background Letterhead\n"
                                         "bookmark mark page=4\n"
                                         "attachment note txt 1 31\n");

    std::unique_ptr<ViewFixture> fixture;
    std::unique_ptr<EventProbe> probe;
};
