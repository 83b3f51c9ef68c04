// make_samples OUTDIR [NAME...]: writes the sample documents, or those of the given names or folders.
// make_samples --list: their names, what they show and what a reader must do with them.
// make_samples --report PAGES ENTRIES OUT.ofd [--bookmarks N] [--pad BYTES]: a long report of any size, for measuring.
#include "catalogue.h"
#include "report.h"

#include <QGuiApplication>

#include <cstdio>

namespace {

int Usage()
{
    std::fprintf(stderr, "usage: make_samples OUTDIR [NAME...]\n"
                         "       make_samples --list\n"
                         "       make_samples --report PAGES ENTRIES OUT.ofd [--bookmarks N] [--pad BYTES]\n");
    return 2;
}

int List()
{
    for (const samples::Sample& sample : samples::Samples())
        std::printf("%s\t%s\t%s\t%s\n", qPrintable(sample.name), qPrintable(sample.group), qPrintable(sample.shows),
                    qPrintable(sample.mustDo));
    return 0;
}

int Report(QStringList arguments)
{
    if (arguments.size() < 3)
        return Usage();
    samples::ReportSetup setup;
    bool pagesFine = false, entriesFine = false;
    setup.pages = arguments.takeFirst().toInt(&pagesFine);
    setup.entries = arguments.takeFirst().toInt(&entriesFine);
    const QString path = arguments.takeFirst();
    if (!pagesFine || !entriesFine || setup.pages < 1 || setup.entries < 0)
        return Usage();
    while (!arguments.isEmpty()) {
        const QString option = arguments.takeFirst();
        bool isNumber = false;
        const qint64 value = arguments.isEmpty() ? 0 : arguments.takeFirst().toLongLong(&isNumber);
        if (!isNumber || value < 0 || value > 1900000000)
            return Usage();
        if (option == QLatin1String("--bookmarks"))
            setup.bookmarks = int(value);
        else if (option == QLatin1String("--pad"))
            setup.padBytes = value;
        else
            return Usage();
    }
    if (samples::MakeReport(setup).Save(path))
        return 0;
    std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
    return 1;
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    QStringList arguments = QGuiApplication::arguments().mid(1);
    if (arguments.isEmpty())
        return Usage();
    const QString first = arguments.takeFirst();
    if (first == QLatin1String("--list"))
        return List();
    if (first == QLatin1String("--report"))
        return Report(arguments);
    if (first.startsWith(QLatin1Char('-')))
        return Usage();
    const QString error = samples::WriteSamples(first, arguments);
    if (error.isEmpty())
        return 0;
    std::fprintf(stderr, "%s\n", qPrintable(error));
    return 1;
}
