#pragma once

#include <QString>
#include <QVector>

// The sample documents, made once a test program in a folder that goes with it.
struct SampleFile
{
    QString name;
    QString shows;
    QString mustDo;
    QString path;
};

// The samples of a folder, "deviations" or "damaged".
QVector<SampleFile> SamplesOf(const QString& folder);
// A sample at the top, as "tour".
QString SamplePath(const QString& name);
