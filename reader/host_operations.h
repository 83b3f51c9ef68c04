#pragma once

#include <frame/operation/operation.h>

#include <memory>
#include <vector>

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

// "t_showannot": shows or hides the annotations of the current view; "checked" tells which, without it it toggles.
class GP_ShowAnnotations : public G_Operation
{
public:
    G_Operation* Clone() const override;
    const char* Name() const override { return "t_showannot"; }
    bool DoAction() override;
};

// Makes and registers all of the above; they leave the registry when the list dies.
std::vector<std::unique_ptr<G_Operation>> RegisterHostOperations();
