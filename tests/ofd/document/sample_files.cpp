#include "sample_files.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

namespace {

// Where the samples are; they are made at the first call by the program that stands beside the tests.
QString Folder()
{
    static QTemporaryDir folder;
    static bool isMade = false;
    if (!isMade) {
        const QString program = QCoreApplication::applicationDirPath() + QStringLiteral("/make_samples");
        if (QProcess::execute(program, {folder.path()}) != 0)
            qFatal("%s failed", qPrintable(program));
        isMade = true;
    }
    return folder.path();
}

} // namespace

QVector<SampleFile> SamplesOf(const QString& folder)
{
    const QString path = Folder() + QLatin1Char('/') + folder + QLatin1Char('/');
    QFile index(path + QStringLiteral("index.tsv"));
    if (!index.open(QIODevice::ReadOnly))
        qFatal("no index of %s", qPrintable(path));
    QVector<SampleFile> samples;
    while (!index.atEnd()) {
        const QStringList words = QString::fromUtf8(index.readLine()).trimmed().split(QLatin1Char('\t'));
        if (words.size() >= 4)
            samples.append({words[0], words[2], words[3], path + words[0] + QStringLiteral(".ofd")});
    }
    if (samples.isEmpty()) // or a test over all of them would pass without one
        qFatal("nothing in the index of %s", qPrintable(path));
    return samples;
}

QString SamplePath(const QString& name)
{
    return Folder() + QLatin1Char('/') + name + QStringLiteral(".ofd");
}
