#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace samples {

// One sample document: its name (also the file's path below the output folder, without ".ofd"), what it shows, what a
// reader must do with it, and how to write it.
struct Sample
{
    QString name;
    QString group;
    QString shows;
    QString mustDo;
    std::function<bool(const QString& path)> write;
};

// Every sample, in a fixed order: the ordinary documents, then "deviations/…", "features/…", "damaged/…".
const std::vector<Sample>& Samples();

// Writes the samples of these names (a name may also be a folder, "deviations"; none: all) below the folder, and beside
// the deviations and the damaged files an index.tsv with one line a file: name, group, what it shows, what to do. Empty
// on success, else what went wrong.
QString WriteSamples(const QString& folder, const QStringList& names = {});

} // namespace samples
