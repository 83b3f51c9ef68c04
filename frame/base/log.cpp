#include "log.h"

#include <QLoggingCategory>
#include <QMutex>

#include <utility>

namespace {

Q_LOGGING_CATEGORY(frameLog, "tetobaisfla")

using Listener = std::function<void(const QByteArray&)>;

QMutex listenerMutex;

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
        const QMutexLocker lock(&listenerMutex);
        listener = TheListener();
    }
    if (listener)
        listener(line);
}

void SetFrameLogListener(std::function<void(const QByteArray& line)> listener)
{
    const QMutexLocker lock(&listenerMutex);
    TheListener() = std::move(listener);
}
