#pragma once

#include "reader_desk.h"

#include <reader/document_search.h>
#include <reader/find_bar.h>

#include <frame/view/doc_view.h>

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>

// The window with one document, and a user's hands on its find bar.
class FindDesk
{
public:
    FindDesk(); // three pages that have "contract" three times
    explicit FindDesk(const QString& description);
    void Open(const QString& description);
    MainWindow* Window() const { return desk.Window(); }
    G_DocView* View() const { return desk.View(); }
    DocumentSearch* Search() const { return Window()->CurrentTab()->Search(); }
    FindBar* Bar() const { return Window()->findChild<FindBar*>(); }
    QLineEdit* Box() const { return Bar()->findChild<QLineEdit*>("findText"); }
    QString State() const { return Bar()->findChild<QLabel*>("findState")->text(); }
    QWidget* Viewport() const;
    void PressFind() const;
    // Opens the bar, types, and waits for the end of the search.
    void Find(const QString& text) const;
    void Wait() const;
    int CurrentPage() const;
    QRect CurrentPlace() const; // in the viewport
    bool IsCurrentInView() const { return Viewport()->rect().contains(CurrentPlace()); }
    QCheckBox* Choice(const QString& name) const;

    ReaderDesk desk;

private:
    int files = 0;
};
