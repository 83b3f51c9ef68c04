#pragma once

#include <QPointer>
#include <QWidget>

class G_DocView;
class QComboBox;
class QKeyEvent;
class QSpinBox;

// Page box and zoom box of the status line; they follow one view and steer it.
class StatusPanel : public QWidget
{
    Q_OBJECT
public:
    explicit StatusPanel(QWidget* parent);
    void SetView(G_DocView* newView); // null greys the panel
    // Puts the focus on the page box, ready for a number.
    void EditPage();

signals:
    // The user ended typing in one of the boxes, or gave it up.
    void Typed();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private slots:
    void GoToTypedPage();
    void ApplyZoomText();
    void ApplyZoomChoice(int position);
    void ShowPage(int pageIndex);
    void ShowPageCount();
    void ShowZoom(float percent);

private:
    QPointer<G_DocView> view;
    QMetaObject::Connection pagesWatch; // of the view's document
    QSpinBox* pageBox;                  // owned by this
    QComboBox* zoomBox;                 // owned by this
};
