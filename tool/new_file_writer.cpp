#include "new_file_writer.h"

#include <QFile>

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

NewFileWriter::NewFileWriter(const QString& path)
    : path(QFile::encodeName(path))
{
    constexpr int mode = 0666; // what the user's mask leaves of it
    descriptor = ::open(this->path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
    isMade = descriptor >= 0;
    if (!isMade)
        error = errno;
}

NewFileWriter::~NewFileWriter()
{
    Close();
    if (isMade && !isFinished)
        ::unlink(path.constData());
}

bool NewFileWriter::Write(const void* data, qint64 size)
{
    const char* at = static_cast<const char*>(data);
    while (size > 0 && error == 0) {
        const ssize_t count = ::write(descriptor, at, size_t(size));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0) {
            error = errno;
            break;
        }
        at += count;
        size -= count;
    }
    return error == 0;
}

void NewFileWriter::Abandon()
{
    wasAbandoned = error == 0;
    if (error == 0)
        error = EIO;
}

void NewFileWriter::Close()
{
    if (descriptor >= 0 && ::close(descriptor) != 0 && error == 0)
        error = errno;
    descriptor = -1;
}

bool NewFileWriter::Finish()
{
    Close();
    isFinished = error == 0;
    return isFinished;
}
