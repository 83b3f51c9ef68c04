#include "reading_turns.h"

namespace ofd {

ReadingTurns::Turn::Turn(ReadingTurns& turns, const QString& what)
    : turns(turns)
    , what(what)
{
    std::unique_lock<std::mutex> lock(turns.mutex);
    turns.changed.wait(lock, [&] { return !turns.taken.contains(what); });
    turns.taken.insert(what);
}

ReadingTurns::Turn::~Turn()
{
    {
        const std::lock_guard<std::mutex> lock(turns.mutex);
        turns.taken.remove(what);
    }
    turns.changed.notify_all();
}

} // namespace ofd
