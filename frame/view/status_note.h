#pragma once

#include <frame/base/export.h>

#include <QLabel>
#include <QPointer>
#include <QStringList>
#include <QTimer>

// Short notes over the lower edge of a widget: one at a time, each for a few seconds, later ones wait their turn. Takes
// no mouse events and no focus. Owned by the widget it lies over.
class FRAME_EXPORT G_StatusNote : public QLabel
{
    Q_OBJECT
public:
    // The note of a host widget, made when missing; null without a host.
    static G_StatusNote* For(QWidget* host);
    // Shows the text, or queues it behind those that wait. A text that is shown or waits already is not queued twice;
    // the shown one stays longer instead.
    void Show(const QString& text);
    QStringList Waiting() const { return waiting; }
    // How long each note stays, in milliseconds.
    void SetDuration(int milliseconds);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit G_StatusNote(QWidget* host);
    void ShowNext();
    void Place();

    QStringList waiting;
    QTimer timer;
};
