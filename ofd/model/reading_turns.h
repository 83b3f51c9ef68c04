#pragma once

#include <QSet>
#include <QString>

#include <condition_variable>
#include <mutex>

namespace ofd {

// Lets one thread read what several want at once: the tiles of a page are painted side by side, and all need its
// content. Any thread. A thread that has a turn takes no other of the same kind.
class ReadingTurns
{
public:
    // Waits while another thread reads the same; afterwards it may be there already. Ends with its scope.
    class Turn
    {
    public:
        Turn(ReadingTurns& turns, const QString& what);
        ~Turn();
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;

    private:
        ReadingTurns& turns;
        const QString what;
    };

private:
    std::mutex mutex;
    std::condition_variable changed;
    QSet<QString> taken;
};

} // namespace ofd
