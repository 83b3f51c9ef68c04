#pragma once

#include "raw_zip.h"

#include <ofd/package/package.h>
#include <ofd/package/package_changes.h>

#include <QStringList>
#include <QTemporaryDir>

#include <memory>

// A folder of its own where packages are written, saved and compared.
class PackageDesk
{
public:
    QString Folder() const { return folder.path(); }
    QString Path(const char* name = "a.ofd") const { return folder.filePath(QString::fromLatin1(name)); }
    // Writes the archive and opens it; null when it cannot be opened.
    std::unique_ptr<ofd::Package> OpenZip(const RawZip& zip, const char* name = "a.ofd") const;
    // Everything in the folder, hidden files too.
    QStringList FilesLeft() const;

private:
    QTemporaryDir folder;
};

extern const QString DocumentName;
extern const QString ImageName;

// Failing to write ends the run.
void WriteFile(const QString& path, const QByteArray& bytes);
// Empty when there is no such file.
QByteArray ReadFile(const QString& path);
// A new document part.
ofd::PackageChanges DocumentChange(const QByteArray& bytes = "<Document>changed</Document>");
// Every oddity that must come through a save: what is in the wild and what is merely possible.
RawZip OddRawZip();
