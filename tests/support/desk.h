#pragma once

#include "host_doubles.h"
#include "view_fixture.h"

#include <frame/navigation/navigation_page.h>

#include <memory>
#include <vector>

class OVPaintNoContent;
class QTextEdit;
class QUndoStack;

// An open document with its view and one pane. A subclass says which pane, has `void Take(QWidget*)` for it and
// `QWidget* Widget() const`, and adds what its tests do with it.
struct DeskTabBase
{
    MemoryDocument* document = nullptr; // not owned
    G_DocView* view = nullptr;          // not owned

    QUndoStack* Stack() const;
    // The open row editor of a tree, or null.
    static QTextEdit* OpenEditor(const QWidget* tree);
};

// Shows a pane as the reader does, in its active window.
void ShowPane(QWidget* pane);
// Makes the pane's window the active one.
void ActivatePane(QWidget* pane);
// Resizes a pane whose list is empty and looks where the picture of the empty list stands in `list`; a wrong place
// fails the test.
void VerifyPicturePlaces(QWidget* pane, const QWidget* list, const OVPaintNoContent* picture);
// Performs an operation on the current document; what it answers, false for an unknown one.
bool PerformByName(G_UIContext* context, const char* operation);

// What stands around a pane in a reader: its operations (registered by the constructor of Operations), the page, a
// context and open documents. Takes all of it down in the order a reader does.
template <typename Operations, typename Page, typename Tab>
class Desk
{
public:
    explicit Desk(const QString& documentText)
        : fixture(documentText)
        , menu(new DeskMenu(fixture.Context()))
    {
        DeskNavigation::Forget();
        fixture.Context()->SetContextMenu(std::unique_ptr<G_ContextMenu>(menu));
        navigation.RegisterToGlobal();
        signature.RegisterHandlerToGlobal();
        page.SetContext(fixture.Context());
        AddTab(fixture.Document(), fixture.View());
    }
    ~Desk()
    {
        for (const auto& tab : tabs)
            delete tab->Widget();
        ViewFixture::Settle();
    }
    // Opens another document; it is the current one afterwards. A malformed text form fails the test.
    Tab* Open(const QString& documentText)
    {
        OpenTab* tab = fixture.Open(documentText);
        return AddTab(tab->document.get(), tab->view.get());
    }
    Tab* First() const { return tabs.front().get(); }
    void MakeCurrent(Tab* tab)
    {
        fixture.SetCurrent(tab->view);
        ActivatePane(tab->Widget());
    }
    bool Perform(const char* operation) { return PerformByName(Context(), operation); }
    ScriptedContext* Context() const { return fixture.Context(); }

private:
    Operations operations;
    DeskNavigation navigation;
    DeskSignatureTool signature;

public:
    Page page;
    ViewFixture fixture;
    DeskMenu* menu; // owned by the context

private:
    Tab* AddTab(MemoryDocument* document, G_DocView* view)
    {
        auto tab = std::make_unique<Tab>();
        tab->document = document;
        tab->view = view;
        QWidget* pane = fixture.MakePane(document, [this, document] { return page.CreateWidget(document); });
        tab->Take(pane);
        page.SetWidgetFor(document, pane);
        ShowPane(pane);
        tabs.push_back(std::move(tab));
        return tabs.back().get();
    }
    std::vector<std::unique_ptr<Tab>> tabs;
};
