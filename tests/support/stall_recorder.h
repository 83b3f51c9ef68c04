#pragma once

#include <QElapsedTimer>
#include <QString>
#include <QTimer>

// Notes how long the event loop of the thread it lives on stands still, from Start to Stop: a timer that ticks every
// few milliseconds ticks late by as much. Beside the wall time it tells what remains of it without the time that the
// thread could have run but had no processor, so that a busy machine is not blamed on the program (Linux; elsewhere
// both are the same).
class StallRecorder
{
public:
    struct Stall
    {
        double wallMs = 0;
        double ownMs = 0;  // without waiting for a processor
        double workMs = 0; // that the thread's processor worked; the rest it slept or waited for others
        QString during;    // the label that was set at the time
    };

    explicit StallRecorder(double thresholdMs = 50);
    void Start();
    // Notes a stall that is under way, too.
    void Stop();
    // What the program does from here on, for the report.
    void SetLabel(const QString& text) { label = text; }

    Stall Worst() const { return worst; } // by their own time; all zero when nothing was noted
    int CountAboveThreshold() const { return count; }
    // One line for people.
    QString Report() const;

private:
    void Tick();
    double thresholdMs;
    QTimer timer;
    QElapsedTimer sinceTick;
    qint64 waitedNs = 0; // for a processor, up to the last tick
    qint64 workedNs = 0;
    QString label;
    Stall worst;
    int count = 0;
};
