#pragma once

#include <ofd/package/package.h>

#include <QPair>
#include <QVector>

// Name and raw region (local header, data, descriptor) of every usable entry, in the order of the directory.
QVector<QPair<QString, QByteArray>> RawEntries(const ofd::Package& package);

// Reads every entry with another program's library, which also checks that all headers agree.
void CompareWithReferee(const QString& path, const ofd::Package& package);
