#pragma once

#include "background_job.h"

#include <QWidget>

#include <memory>

class QLabel;
class QProgressBar;

// Shows the window's one piece of background work in the status line, with a button to give it up; hidden without work.
// Main thread only.
class JobBar : public QWidget
{
    Q_OBJECT
public:
    explicit JobBar(QWidget* parent);
    bool IsBusy() const { return job != nullptr; }
    // Whether the work is for that one.
    bool IsBusyFor(const QObject* owner) const { return job && jobOwner == owner; }
    // Begins work for the owner, who must call Stop before what the work uses dies. Only when nothing else is under
    // way.
    void Start(const QObject* owner, const QString& text, const BackgroundJob::Work& work);
    // Gives the work up and waits for it; JobEnded does not come then.
    void Stop();

signals:
    void JobEnded(const JobOutcome& outcome);

private:
    void ShowProgress(int done, int total);
    void OnEnded(const JobOutcome& outcome);

    QLabel* label;                     // owned by this
    QProgressBar* bar;                 // owned by this
    const QObject* jobOwner = nullptr; // not owned; only compared
    std::unique_ptr<BackgroundJob> job;
};
