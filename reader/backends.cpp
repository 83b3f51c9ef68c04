#include "document_file.h"
#include "ofd_file.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace {

// One row a format. A file goes to the first backend that knows its first bytes.
struct Backend
{
    bool (*knows)(const QByteArray& head);
    OpenOutcome (*open)(const QString& path, bool readOnly);
};

const Backend backends[] = {
    {IsOfdHead, OpenOfdFile},
};

QString Translated(const char* text)
{
    return QCoreApplication::translate("OpenDocumentFile", text);
}

} // namespace

OpenOutcome OpenDocumentFile(const QString& path, bool readOnly)
{
    const QFileInfo info(path);
    if (!info.exists())
        return {nullptr, Translated(QT_TRANSLATE_NOOP("OpenDocumentFile", "The file does not exist."))};
    if (info.isDir())
        return {nullptr, Translated(QT_TRANSLATE_NOOP("OpenDocumentFile", "This is a folder, not a document."))};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {
            nullptr,
            Translated(QT_TRANSLATE_NOOP("OpenDocumentFile", "The file cannot be read: %1")).arg(file.errorString())};
    const QByteArray head = file.read(1024);
    if (head.isEmpty())
        return {nullptr, Translated(QT_TRANSLATE_NOOP("OpenDocumentFile", "The file is empty."))};
    for (const Backend& backend : backends) {
        if (backend.knows(head))
            return backend.open(info.absoluteFilePath(), readOnly);
    }
    return {nullptr,
            Translated(QT_TRANSLATE_NOOP("OpenDocumentFile", "The file is not a document that this program reads."))};
}
