#pragma once

#include <ofd/ofd_document.h>
#include <tests/ofd/document/ofd_file.h>

#include <QStringList>
#include <QTemporaryDir>

#include <functional>

// A folder of its own where documents are written, edited, saved and compared. Failures of what a test takes for
// granted end the run.
class SavingDesk
{
public:
    using Edit = std::function<void(ofd::OfdDocument&)>;

    QString Path(const QString& name) const { return folder.filePath(name); }
    std::unique_ptr<ofd::OfdDocument> Open(const QString& path) const;
    // Saves these edits into a fresh copy of the file; the path of the result.
    QString Saved(const OfdFile& file, const Edit& edit) const;
    // The part of the file that these edits leave.
    QByteArray SavedPart(const OfdFile& file, const QString& part, const Edit& edit) const;

private:
    QTemporaryDir folder;
};

// Names of parts that are not the same in both packages, or in one of them only; sorted.
QStringList DifferingParts(const QString& pathA, const QString& pathB);

extern const QString DocumentPart;
