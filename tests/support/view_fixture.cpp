#include "view_fixture.h"

#include <frame/operation/event_manager.h>
#include <frame/view/settings.h>

#include <QAbstractScrollArea>
#include <QCoreApplication>
#include <QWidget>
#include <QtTest>

#include <algorithm>
#include <utility>

ViewFixture::ViewFixture(const QString& documentText, const QSize& viewSize)
    : context(std::make_unique<ScriptedContext>())
{
    G_SettingMgr::Instance()->UseFile(QString());
    QObject::connect(context->EventMgr(), &G_EventMgr::EventFired, context.get(),
                     [this](G_Event* event) { fired.append(event->TypeEnum()); });
    Open(documentText, viewSize);
}

ViewFixture::~ViewFixture()
{
    while (!tabs.empty())
        Close(tabs.back().get());
    context.reset();
    Settle();
}

QWidget* ViewFixture::Viewport(const G_DocView* view)
{
    return qobject_cast<QAbstractScrollArea*>(view->Widget())->viewport();
}

OpenTab* ViewFixture::Open(const QString& documentText, const QSize& viewSize)
{
    auto tab = std::make_unique<OpenTab>();
    QString error;
    tab->document = MemoryDocument::FromText(documentText, &error);
    if (!tab->document) {
        QTest::qFail(qPrintable(QStringLiteral("malformed document text: ") + error), __FILE__, __LINE__);
        tab->document = std::make_unique<MemoryDocument>();
    }
    tab->view = std::make_unique<G_DocView>(context.get(), tab->document.get());
    tab->view->CreateUndoStack();
    context->SetCurrentDocView(tab->view.get());
    tab->view->Widget()->resize(viewSize);
    tab->view->Widget()->show();
    tabs.push_back(std::move(tab));
    Settle();
    return tabs.back().get();
}

void ViewFixture::Close(OpenTab* tab)
{
    const auto it = std::find_if(tabs.begin(), tabs.end(), [tab](const auto& own) { return own.get() == tab; });
    if (it == tabs.end())
        return;
    tab->view.reset();
    Settle(); // a deleted annotation or a parked copy may still look at the document
    tabs.erase(it);
}

void ViewFixture::SetCurrent(G_DocView* view)
{
    context->SetCurrentDocView(view);
}

void ViewFixture::Settle()
{
    for (int turn = 0; turn < 3; ++turn) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

QList<int> ViewFixture::TakeFiredEvents()
{
    return std::exchange(fired, {});
}
