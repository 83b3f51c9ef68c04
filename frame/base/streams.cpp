#include "streams.h"

#include "log.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <memory>

namespace {

bool (*openFileTest)(const wchar_t* path) = nullptr;

class FileStreamReader : public ICA_StreamReader
{
public:
    explicit FileStreamReader(const QString& path)
        : file(path)
    {
    }
    bool Open() { return file.open(QIODevice::ReadOnly); }
    qint64 GetSize() override { return file.size(); }
    qint64 Read(void* buffer, qint64 size) override
    {
        if (!buffer || size < 0)
            return -1;
        return file.read(static_cast<char*>(buffer), size);
    }

private:
    QFile file;
};

// Writes beside the target and renames over it when it is deleted without a failure before.
class FileStreamWriter : public ICA_StreamWriter
{
public:
    explicit FileStreamWriter(const QString& path)
        : file(path)
    {
    }
    ~FileStreamWriter() override
    {
        if (!hasFailed && !file.commit())
            FrameLog("A file could not be put in place: " + file.errorString().toUtf8());
    }
    bool Open() { return file.open(QIODevice::WriteOnly); }
    bool Write(const void* data, qint64 size) override
    {
        const bool isSane = size >= 0 && (data || size == 0);
        if (hasFailed || !isSane || file.write(static_cast<const char*>(data), size) != size)
            Abandon();
        return !hasFailed;
    }
    void Abandon() override
    {
        if (!hasFailed)
            file.cancelWriting();
        hasFailed = true;
    }

private:
    QSaveFile file;
    bool hasFailed = false;
};

} // namespace

ICA_StreamReader::~ICA_StreamReader() = default;

ICA_StreamReader* ICA_StreamReader::CreateFileStreamReader(const wchar_t* path, int)
{
    if (!path)
        return nullptr;
    const QString native = QString::fromWCharArray(path);
    // A pipe or a device would block or never end.
    if (!QFileInfo(native).isFile())
        return nullptr;
    auto reader = std::make_unique<FileStreamReader>(native);
    return reader->Open() ? reader.release() : nullptr;
}

ICA_StreamWriter::~ICA_StreamWriter() = default;

ICA_StreamWriter* ICA_StreamWriter::CreateFileStreamWriter(const wchar_t* path, int)
{
    if (!path || (openFileTest && openFileTest(path)))
        return nullptr;
    const QString native = QString::fromWCharArray(path);
    if (native.isEmpty() || QFileInfo(native).isDir())
        return nullptr;
    auto writer = std::make_unique<FileStreamWriter>(native);
    if (writer->Open())
        return writer.release();
    writer->Abandon();
    return nullptr;
}

void ICA_StreamWriter::SetOpenFileTest(bool (*isOpenDocument)(const wchar_t* path))
{
    openFileTest = isOpenDocument;
}
