#include "log.h"

#include <QLoggingCategory>

#include <mutex>
#include <utility>

namespace {

Q_LOGGING_CATEGORY(frameLog, "tetobaisfla")

using Listener = std::function<void(const QByteArray&)>;

std::mutex listenerMutex;

Listener& TheListener()
{
    static Listener listener;
    return listener;
}

} // namespace

void FrameLog(const QByteArray& line)
{
    qCDebug(frameLog).noquote() << QString::fromUtf8(line);
    Listener listener;
    {
        // Called outside the lock, so that a listener may log or replace itself.
        const std::lock_guard<std::mutex> lock(listenerMutex);
        listener = TheListener();
    }
    if (listener)
        listener(line);
}

void SetFrameLogListener(std::function<void(const QByteArray& line)> listener)
{
    const std::lock_guard<std::mutex> lock(listenerMutex);
    TheListener() = std::move(listener);
}
