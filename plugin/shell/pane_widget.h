#pragma once

#include <QWidget>

class G_UIContext;
class IG_Document;

// The base of the pane widgets: a hidden pane does no work when pages change, it is only marked stale and refills when
// it is shown. Lives for one document tab. Main thread only.
class PaneWidget : public QWidget
{
    Q_OBJECT
public:
    explicit PaneWidget(QWidget* parent = nullptr);
    ~PaneWidget() override;

    G_UIContext* context = nullptr;  // not owned
    IG_Document* document = nullptr; // not owned; null leaves the pane empty
    bool needsRefresh = false;

    // The document of the current view is this pane's.
    bool IsCurrentDocument() const;

public slots:
    // Only marks the pane stale.
    void PageStructChanged(IG_Document* changedDocument);

protected:
    // Refills what the pane shows; called when a stale pane is shown.
    virtual void RefreshStale() = 0;
    void showEvent(QShowEvent* event) override;
};
