#include "stall_recorder.h"

#include <QFile>
#include <QObject>

namespace {

constexpr int kTickMs = 5;
constexpr double kNsInMs = 1e6;

// What the calling thread has waited for a processor so far: the second number of what the kernel tells.
qint64 WaitedForProcessorNs()
{
    QFile file(QStringLiteral("/proc/thread-self/schedstat"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> numbers = file.readAll().split(' ');
    return numbers.size() > 1 ? numbers.at(1).toLongLong() : 0;
}

} // namespace

StallRecorder::StallRecorder(double thresholdMs)
    : thresholdMs(thresholdMs)
{
    timer.setTimerType(Qt::PreciseTimer);
    timer.setInterval(kTickMs);
    QObject::connect(&timer, &QTimer::timeout, &timer, [this] { Tick(); });
}

void StallRecorder::Start()
{
    worst = {};
    count = 0;
    waitedNs = WaitedForProcessorNs();
    sinceTick.start();
    timer.start();
}

void StallRecorder::Stop()
{
    Tick();
    timer.stop();
}

void StallRecorder::Tick()
{
    const qint64 waited = WaitedForProcessorNs();
    Stall stall;
    stall.wallMs = double(sinceTick.nsecsElapsed()) / kNsInMs - kTickMs;
    stall.ownMs = qMax(0.0, stall.wallMs - double(waited - waitedNs) / kNsInMs);
    stall.during = label;
    waitedNs = waited;
    sinceTick.start();
    if (stall.ownMs > worst.ownMs)
        worst = stall;
    if (stall.ownMs > thresholdMs)
        ++count;
}

QString StallRecorder::Report() const
{
    const QString where = worst.during.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(worst.during);
    return QStringLiteral("worst stall %1 ms, with waiting for a processor %2 ms%3; %4 over %5 ms")
        .arg(worst.ownMs, 0, 'f', 1)
        .arg(worst.wallMs, 0, 'f', 1)
        .arg(where)
        .arg(count)
        .arg(thresholdMs, 0, 'f', 0);
}
