#pragma once

#include <frame/operation/operation.h>

#include <memory>
#include <vector>

class MainWindow;

// The reader's own operations, reached by name by panes and menus. Each works on the window of its context and returns
// false where there is none.

// "e_navigation": "navi_params" is a JSON object with "navi_open_status" ("1" opens, "0" closes) and
// "navi_btn_checked" (a pane id). Opening what is open does nothing; an unknown id is refused.
class GP_Navigation : public G_Operation
{
public:
    G_Operation* Clone() const override;
    const char* Name() const override { return "e_navigation"; }
    bool DoAction() override;
};

// "f_open": opens "filename" in a tab, read-only when "readonly" is set. A file that is open is brought to the front.
class GP_OpenFile : public G_Operation
{
public:
    G_Operation* Clone() const override;
    const char* Name() const override { return "f_open"; }
    bool DoAction() override;
};

// "t_showannot": shows or hides the annotations of the current view; "isVisible" tells which, without it it toggles.
class GP_ShowAnnotations : public G_Operation
{
public:
    G_Operation* Clone() const override;
    const char* Name() const override { return "t_showannot"; }
    bool DoAction() override;
};

// A command of the window for menus: "e_copytext", "e_selectalltext", "e_find" and "f_properties".
class GP_WindowCommand : public G_Operation
{
public:
    using Command = void (MainWindow::*)();
    // The name must live as long as the process.
    GP_WindowCommand(const char* name, Command command)
        : name(name)
        , command(command)
    {
    }
    G_Operation* Clone() const override;
    const char* Name() const override { return name; }
    bool DoAction() override;

private:
    const char* const name;
    const Command command;
};

// Makes and registers all of the above; they leave the registry when the list dies.
std::vector<std::unique_ptr<G_Operation>> RegisterHostOperations();
