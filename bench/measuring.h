#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

class QTemporaryDir;

// What the benches share: how time is taken and how it is told. Times are in the unit that a name says.

// Processor time of this process, so that what else runs on the machine does not count.
double CpuSecondsOf(const std::function<void()>& work);
// The least of five runs.
double BestCpuSecondsOf(const std::function<void()>& work);
// Time on the clock, for what waits for other threads, programs or the disk.
double MillisecondsOf(const std::function<void()>& work);

double Median(std::vector<double> values);

// Two works measured in the same moment: ours, and what it is measured against. In seconds.
struct Ratio
{
    double ours;
    double bare;
    double Value() const { return ours / bare; }
};

// By their values. Pairs measured in turn, so that a slow moment of the machine meets both.
Ratio Median(std::vector<Ratio> ratios);
// One line: both times, their ratio and the most it may be, and whether it is more.
void Print(const char* what, const Ratio& ratio, double budget);

// Widgets paint without a screen unless the environment names a platform. To be called ahead of the application.
void PaintOffscreenByDefault();

// Writes a report of so many pages and outline entries into the folder with the program make_samples, which stands
// beside this one; ends the bench when that fails. `more` are further arguments. Returns the file's path.
QString MakeReport(const QTemporaryDir& folder, int pages, int entries, const QStringList& more = {});
