// What opening a long document to its first painted page costs, against what its container costs any reader: reading
// the directory and inflating one page. And what saving a large file after one rename costs, against copying it.

#include <ofd/ofd_document.h>

#include <QCoreApplication>
#include <QElapsedTimer>
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

double Milliseconds(const std::function<void()>& work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return double(timer.nsecsElapsed()) / 1e6;
}

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

double Median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// A report with so many pages, made by the program that stands beside this one.
QString MakeReport(const QTemporaryDir& folder, const QString& name, const QStringList& more)
{
    const QString path = folder.filePath(name);
    const QString program = QCoreApplication::applicationDirPath() + QStringLiteral("/make_samples");
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(program,
                  QStringList{QStringLiteral("--report"), QStringLiteral("1000"), QStringLiteral("3000"), path} + more);
    if (!process.waitForFinished(-1) || process.exitCode() != 0)
        qFatal("%s failed", qPrintable(program));
    return path;
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
    const QString path = MakeReport(folder, QStringLiteral("long.ofd"), {});
    const double first = Milliseconds([&] { OpenToFirstPage(path, true); });
    std::vector<double> container, opening, openingWithSizes;
    for (int i = 0; i < openingRounds; ++i) {
        container.push_back(Milliseconds([&] { ReadDirectoryAndOnePage(path); }));
        opening.push_back(Milliseconds([&] { OpenToFirstPage(path, false); }));
        openingWithSizes.push_back(Milliseconds([&] { OpenToFirstPage(path, true); }));
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

void SaveAfterRename(ofd::OfdDocument& document, int round)
{
    auto* bookmark = dynamic_cast<G_Bookmark*>(document.GetBookmarkRoot()->SubNode(0)->data);
    // Of another length each time, so that all behind it moves.
    bookmark->name = "renamed " + QByteArray::number(round) + QByteArray(round * 7, 'x');
    const ofd::DocumentSaveResult result = document.Save();
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

    void Measure(const std::function<void()>& work)
    {
        const double before = CpuMilliseconds();
        wall.push_back(Milliseconds(work));
        QThreadPool::globalInstance()->waitForDone();
        cpu.push_back(CpuMilliseconds() - before);
    }
};

void PrintSaving(const char* what, const Costs& costs, const Costs& copying, const Costs& flushing, double budget)
{
    const double wall = Median(costs.wall);
    std::printf("%s %8.1f ms  %5.2f times cp (budget %.1f), %.2f times cp and flush; CPU %.1f ms, %.2f times cp\n",
                what, wall, wall / Median(copying.wall), budget, wall / Median(flushing.wall), Median(costs.cpu),
                Median(costs.cpu) / Median(copying.cpu));
}

void MeasureSaving(const QTemporaryDir& folder)
{
    const QString path = MakeReport(
        folder, QStringLiteral("large.ofd"),
        {QStringLiteral("--bookmarks"), QStringLiteral("10"), QStringLiteral("--pad"), QStringLiteral("200000000")});
    const QString copy = folder.filePath(QStringLiteral("copy.ofd"));
    const ofd::OpenResult opened = ofd::OfdDocument::Open(path);
    if (!opened)
        qFatal("%s", qPrintable(opened.error));
    Costs saving, resaving, copying, flushing;
    std::vector<double> memory;
    // None of them pays for removing its old copy.
    for (int i = 0; i < savingRounds; ++i) {
        QFile::remove(copy);
        copying.Measure([&] { Copy(path, copy, false); });
        Flush(copy);
        QFile::remove(copy);
        flushing.Measure([&] { Copy(path, copy, true); });
        QFile::remove(copy);
        resaving.Measure([&] { Resave(path, copy); });
        QFile::remove(copy);
        memory.push_back(PeakAbove([&] { saving.Measure([&] { SaveAfterRename(*opened.document, i); }); }));
    }
    std::printf("%4lld MB, cp                            %8.1f ms; CPU %.1f ms\n", QFileInfo(path).size() / 1'000'000,
                Median(copying.wall), Median(copying.cpu));
    std::printf("        cp and flush                    %8.1f ms\n", Median(flushing.wall));
    PrintSaving("        resave, flushed                 ", resaving, copying, flushing, resavingBudget);
    PrintSaving("        save after one rename, flushed  ", saving, copying, flushing, savingBudget);
    std::printf("        memory above the open document  %8.1f MB at most\n",
                *std::max_element(memory.begin(), memory.end()));
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    const QTemporaryDir folder;
    if (!application.arguments().contains(QStringLiteral("--saving")))
        MeasureOpening(folder);
    MeasureSaving(folder);
    return 0;
}
