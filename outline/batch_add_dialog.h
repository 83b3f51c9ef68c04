#pragma once

#include <frame/utils/dialog.h>

#include <QPointer>

class G_UIContext;
class NaviOutlineWidget;
class QLabel;
class QLayout;
class QPushButton;
class QTextEdit;

// Takes the titles of many new entries, one a line, and adds them behind the current one. Modeless; its
// GPI_OutlineBatchAdd makes one a pane, shows it again when asked again, and takes it down with the pane.
class BatchAddOutlineDlg : public Utils::Widgets::OV_Dialog
{
    Q_OBJECT
public:
    BatchAddOutlineDlg(QWidget* parent, NaviOutlineWidget* widget);

public slots:
    // Adds the lines by "d_outline_batchadd" and hides the dialog. Only hides it when there is no line, when the pane
    // is gone or when its document is not the current one.
    void AddOutline();

private:
    QLayout* BuildTitle();
    QLayout* BuildText();
    QLayout* BuildButtons();

    QPointer<NaviOutlineWidget> widget; // not owned
    G_UIContext* context;               // not owned
    QLabel* tip = nullptr;              // owned
    QTextEdit* textEdit = nullptr;      // owned
    QPushButton* closeButton = nullptr; // owned
};
