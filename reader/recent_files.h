#pragma once

#include <QStringList>

// The files opened lately, newest first, at most ten, kept in the settings.
class RecentFiles
{
public:
    QStringList Paths() const;
    void Add(const QString& path);
    void Remove(const QString& path);
};
