// What opening a long document to its first painted page costs, against what its container costs any reader: reading
// the directory and inflating one page. And what saving a large file after one rename costs, against copying it.

#include "measuring.h"

#include <ofd/ofd_document.h>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QThreadPool>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>
#include <zip.h>

namespace {

constexpr double openingBudget = 10;   // times the container's cost
constexpr double savingBudget = 1.2;   // times a copy
constexpr double resavingBudget = 1.1; // times a copy
constexpr int openingRounds = 30;
constexpr int savingRounds = 9;
// A virtual machine gives memory that it does not use back to its host, and the next one to take it pays for that, up
// to ten times the copying. So each piece of work is done a few times in a row and the last time counts: it takes what
// the time before gave back.
constexpr int warmingTimes = 2;

// Processor time so far of this process with all its threads, and of the programs that it ran.
double CpuMilliseconds()
{
    double seconds = 0;
    for (const int who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        struct rusage usage = {};
        getrusage(who, &usage);
        for (const timeval& part : {usage.ru_utime, usage.ru_stime})
            seconds += double(part.tv_sec) + double(part.tv_usec) / 1e6;
    }
    return seconds * 1000;
}

void OpenToFirstPage(const QString& path, bool withAllSizes)
{
    const ofd::OpenResult opened = ofd::OfdDocument::Open(path);
    if (!opened)
        qFatal("%s", qPrintable(opened.error));
    // The view asks for every page's size before it can lay out the column.
    for (int i = 0; withAllSizes && i < opened.document->GetPageCount(); ++i) {
        if (opened.document->PageSizeMm(i).isEmpty())
            qFatal("a page without a size");
    }
    G_RenderRequest request;
    const G_RenderResult page = opened.document->Renderer()->RenderPage(request);
    if (page.image.isNull() || !page.error.isEmpty())
        qFatal("the first page was not painted");
}

// libzip reads the directory; one page is inflated.
void ReadDirectoryAndOnePage(const QString& path)
{
    zip_t* archive = zip_open(QFile::encodeName(path).constData(), ZIP_RDONLY, nullptr); // owned
    zip_stat_t entry;
    if (!archive || zip_stat(archive, "Doc_0/Pages/Page_0/Content.xml", 0, &entry) != 0)
        qFatal("libzip cannot read the report");
    QByteArray bytes(int(entry.size), Qt::Uninitialized);
    zip_file_t* file = zip_fopen_index(archive, entry.index, 0); // owned
    if (!file || zip_fread(file, bytes.data(), entry.size) != zip_int64_t(entry.size))
        qFatal("libzip cannot inflate the page");
    zip_fclose(file);
    zip_discard(archive);
}

void MeasureOpening(const QTemporaryDir& folder)
{
    const QString path = MakeReport(folder, 1000, 3000);
    const double first = MillisecondsOf([&] { OpenToFirstPage(path, true); });
    std::vector<double> container, opening, openingWithSizes;
    for (int i = 0; i < openingRounds; ++i) {
        container.push_back(MillisecondsOf([&] { ReadDirectoryAndOnePage(path); }));
        opening.push_back(MillisecondsOf([&] { OpenToFirstPage(path, false); }));
        openingWithSizes.push_back(MillisecondsOf([&] { OpenToFirstPage(path, true); }));
    }
    const double base = Median(container);
    std::printf("1,000 pages, directory and one page     %8.2f ms\n", base);
    std::printf("1,000 pages, open to first page         %8.2f ms  %5.1f times (budget %.0f)\n", Median(opening),
                Median(opening) / base, openingBudget);
    std::printf("1,000 pages, with the size of each page %8.2f ms  %5.1f times\n", Median(openingWithSizes),
                Median(openingWithSizes) / base);
    std::printf("1,000 pages, the first time of all      %8.2f ms  (finds and opens the fonts)\n", first);
}

void Flush(const QString& path)
{
    const int descriptor = open(QFile::encodeName(path).constData(), O_RDONLY);
    if (descriptor < 0 || fsync(descriptor) != 0)
        qFatal("the copy cannot be flushed");
    close(descriptor);
}

void Copy(const QString& from, const QString& to, bool isFlushed)
{
    if (QProcess::execute(QStringLiteral("cp"), {from, to}) != 0)
        qFatal("cp failed");
    if (isFlushed)
        Flush(to);
}

// To a name of another length each time, so that all behind it moves.
void RenameBookmark(ofd::OfdDocument& document)
{
    static int times = 0;
    auto* bookmark = dynamic_cast<G_Bookmark*>(document.GetBookmarkRoot()->SubNode(0)->data);
    ++times;
    bookmark->name = "renamed " + QByteArray::number(times) + QByteArray(times % 9 * 7, 'x');
}

void SaveAfterRename(ofd::OfdDocument& document)
{
    RenameBookmark(document);
    const ofd::DocumentSaveResult result = document.Save();
    if (!result)
        qFatal("%s", qPrintable(result.error));
}

// What cp reads is in memory, so what a save reads must be too for the two to compare.
void ReadThrough(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("the file cannot be read");
    std::vector<char> block(1 << 20);
    while (file.read(block.data(), qint64(block.size())) > 0) {
    }
}

// As a copy: to a new file that nobody waits for.
void SaveCopyAfterRename(ofd::OfdDocument& document, const QString& path)
{
    RenameBookmark(document);
    const ofd::DocumentSaveResult result = document.SaveCopy(path);
    if (!result)
        qFatal("%s", qPrintable(result.error));
}

void Resave(const QString& from, const QString& to)
{
    const ofd::OpenResult opened = ofd::OfdDocument::Open(from);
    const ofd::DocumentSaveResult result = opened ? opened.document->SaveAs(to) : ofd::DocumentSaveResult();
    if (!result)
        qFatal("%s", qPrintable(opened.error + result.error));
}

// A line like "VmHWM:   1234 kB" of the process's own status.
double StatusMegabytes(const char* key)
{
    QFile status(QStringLiteral("/proc/self/status"));
    status.open(QIODevice::ReadOnly);
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith(key))
            return line.simplified().split(' ').value(1).toDouble() / 1024;
    }
    return 0;
}

// How far memory went above what it was, at its peak.
double PeakAbove(const std::function<void()>& work)
{
    QFile reset(QStringLiteral("/proc/self/clear_refs"));
    if (!reset.open(QIODevice::WriteOnly) || reset.write("5") != 1)
        qFatal("the peak of memory cannot be reset");
    reset.close();
    const double before = StatusMegabytes("VmRSS:");
    work();
    return StatusMegabytes("VmHWM:") - before;
}

// What a piece of work took, round by round.
struct Costs
{
    std::vector<double> wall;
    std::vector<double> cpu; // with what it leaves to other threads

    // `prepare` comes before each time and does not count.
    void Measure(const std::function<void()>& work, const std::function<void()>& prepare)
    {
        for (int i = 0; i < warmingTimes; ++i) {
            prepare();
            work();
            QThreadPool::globalInstance()->waitForDone();
        }
        prepare();
        const double before = CpuMilliseconds();
        wall.push_back(MillisecondsOf(work));
        QThreadPool::globalInstance()->waitForDone();
        cpu.push_back(CpuMilliseconds() - before);
    }
};

double Best(const std::vector<double>& values)
{
    return *std::min_element(values.begin(), values.end());
}

// The best round is the one in which the machine gave memory and processor without delay.
void PrintSaving(const char* what, const Costs& costs, const Costs& copying, const Costs& flushing, double budget)
{
    const double wall = Median(costs.wall);
    const double cpu = Median(costs.cpu);
    std::printf("%s %8.1f ms  %5.2f times cp (budget %.1f), %.2f times cp and flush; CPU %.1f ms, %.2f times cp\n",
                what, wall, wall / Median(copying.wall), budget, wall / Median(flushing.wall), cpu,
                cpu / Median(copying.cpu));
    std::printf("          best of all rounds            %8.1f ms  %5.2f times cp; CPU %.1f ms, %.2f times cp\n",
                Best(costs.wall), Best(costs.wall) / Best(copying.wall), Best(costs.cpu),
                Best(costs.cpu) / Best(copying.cpu));
}

void MeasureSaving(const QTemporaryDir& folder)
{
    const QString path = MakeReport(
        folder, 1000, 3000,
        {QStringLiteral("--bookmarks"), QStringLiteral("10"), QStringLiteral("--pad"), QStringLiteral("200000000")});
    const QString copy = folder.filePath(QStringLiteral("copy.ofd"));
    const ofd::OpenResult opened = ofd::OfdDocument::Open(path);
    if (!opened)
        qFatal("%s", qPrintable(opened.error));
    Costs saving, savingAgain, savingCopy, resaving, copying, flushing;
    // At first, while no earlier save has left memory to take.
    const double memory = PeakAbove([&] { SaveAfterRename(*opened.document); });
    // None of them pays for removing its old copy.
    const auto remove = [&] { QFile::remove(copy); };
    const auto removeAndRead = [&] {
        remove();
        ReadThrough(path);
    };
    Flush(path);
    for (int i = 0; i < savingRounds; ++i) {
        copying.Measure([&] { Copy(path, copy, false); }, removeAndRead);
        flushing.Measure([&] { Copy(path, copy, true); }, removeAndRead);
        resaving.Measure([&] { Resave(path, copy); }, removeAndRead);
        savingCopy.Measure([&] { SaveCopyAfterRename(*opened.document, copy); }, removeAndRead);
        saving.Measure([&] { SaveAfterRename(*opened.document); }, removeAndRead);
        savingAgain.Measure([&] { SaveAfterRename(*opened.document); }, remove);
    }
    std::printf("%4lld MB, cp                            %8.1f ms; CPU %.1f ms\n", QFileInfo(path).size() / 1'000'000,
                Median(copying.wall), Median(copying.cpu));
    std::printf("          best of all rounds            %8.1f ms; CPU %.1f ms\n", Best(copying.wall),
                Best(copying.cpu));
    std::printf("        cp and flush                    %8.1f ms, best %.1f ms\n", Median(flushing.wall),
                Best(flushing.wall));
    PrintSaving("        resave, flushed                  ", resaving, copying, flushing, resavingBudget);
    PrintSaving("        save after one rename, flushed   ", saving, copying, flushing, savingBudget);
    PrintSaving("        again, from a file not in memory", savingAgain, copying, flushing, savingBudget);
    PrintSaving("        rename as a copy, not flushed    ", savingCopy, copying, flushing, savingBudget);
    std::printf("        memory above the open document  %8.1f MB at most\n", memory);
}

} // namespace

int main(int argc, char** argv)
{
    PaintOffscreenByDefault();
    QGuiApplication application(argc, argv);
    const QTemporaryDir folder;
    if (!application.arguments().contains(QStringLiteral("--saving")))
        MeasureOpening(folder);
    MeasureSaving(folder);
    return 0;
}
