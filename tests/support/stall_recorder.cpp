#include "stall_recorder.h"

#include <QFile>
#include <QObject>

namespace {

constexpr int kTickMs = 5;
constexpr double kNsInMs = 1e6;

// What the calling thread has done so far, as the kernel counts it: the first two numbers are the time that it worked
// and the time that it waited for a processor.
struct ThreadTimes
{
    qint64 workedNs = 0;
    qint64 waitedNs = 0;
};

ThreadTimes TimesSoFar()
{
    QFile file(QStringLiteral("/proc/thread-self/schedstat"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QList<QByteArray> numbers = file.readAll().split(' ');
    return numbers.size() > 1 ? ThreadTimes{numbers.at(0).toLongLong(), numbers.at(1).toLongLong()} : ThreadTimes{};
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
    const ThreadTimes times = TimesSoFar();
    waitedNs = times.waitedNs;
    workedNs = times.workedNs;
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
    const ThreadTimes times = TimesSoFar();
    Stall stall;
    stall.wallMs = double(sinceTick.nsecsElapsed()) / kNsInMs - kTickMs;
    stall.ownMs = qMax(0.0, stall.wallMs - double(times.waitedNs - waitedNs) / kNsInMs);
    stall.workMs = double(times.workedNs - workedNs) / kNsInMs;
    stall.during = label;
    waitedNs = times.waitedNs;
    workedNs = times.workedNs;
    sinceTick.start();
    if (stall.ownMs > worst.ownMs)
        worst = stall;
    if (stall.ownMs > thresholdMs)
        ++count;
}

QString StallRecorder::Report() const
{
    const QString where = worst.during.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(worst.during);
    return QStringLiteral("worst stall %1 ms (%6 of work), with waiting for a processor %2 ms%3; %4 over %5 ms")
        .arg(worst.ownMs, 0, 'f', 1)
        .arg(worst.wallMs, 0, 'f', 1)
        .arg(where)
        .arg(count)
        .arg(thresholdMs, 0, 'f', 0)
        .arg(worst.workMs, 0, 'f', 1);
}
