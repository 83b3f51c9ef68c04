#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

class G_Event;
class G_EventMgr;

// Listens to an event manager and remembers what was fired, for tests that count. Lives as long as the test likes; the
// manager may die first. Main thread.
class EventProbe : public QObject
{
    Q_OBJECT
public:
    explicit EventProbe(G_EventMgr* manager);

    int Count(int type) const { return types.count(type); }
    int Total() const { return types.size(); }
    QList<int> Types() const { return types; } // in the order of firing
    // The texts of the status events (173), in the order of firing.
    QStringList StatusTexts() const { return statusTexts; }
    void Clear();

private slots:
    void Remember(G_Event* event);

private:
    QList<int> types;
    QStringList statusTexts;
};
