#include "measuring.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <limits>

namespace {

double CpuSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

// A large request makes the allocator tidy up what was freed before, which is none of the next work's expense.
void TidyMemory()
{
    void* volatile large = std::malloc(100000); // volatile, or the compiler would see that nobody needs it
    std::free(large);
}

} // namespace

double CpuSecondsOf(const std::function<void()>& work)
{
    TidyMemory();
    const double start = CpuSeconds();
    work();
    return CpuSeconds() - start;
}

double BestCpuSecondsOf(const std::function<void()>& work)
{
    double best = std::numeric_limits<double>::max();
    for (int round = 0; round < 5; ++round)
        best = std::min(best, CpuSecondsOf(work));
    return best;
}

double MillisecondsOf(const std::function<void()>& work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return double(timer.nsecsElapsed()) / 1e6;
}

double Median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

Ratio Median(std::vector<Ratio> ratios)
{
    std::sort(ratios.begin(), ratios.end(), [](const Ratio& a, const Ratio& b) { return a.Value() < b.Value(); });
    return ratios[ratios.size() / 2];
}

void Print(const char* what, const Ratio& ratio, double budget)
{
    std::printf("%-66s %8.2f ms / %8.2f ms = %5.2f (at most %.1f)%s\n", what, ratio.ours * 1e3, ratio.bare * 1e3,
                ratio.Value(), budget, ratio.Value() > budget ? "  TOO MUCH" : "");
}

void PaintOffscreenByDefault()
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

QString MakeReport(const QTemporaryDir& folder, int pages, int entries, const QStringList& more)
{
    const QString path = folder.filePath(QStringLiteral("report-%1%2.ofd").arg(pages).arg(more.join(QString())));
    const QString program = QCoreApplication::applicationDirPath() + QStringLiteral("/make_samples");
    const QStringList arguments{QStringLiteral("--report"), QString::number(pages), QString::number(entries), path};
    if (QProcess::execute(program, arguments + more) != 0)
        qFatal("%s failed", qPrintable(program));
    return path;
}
