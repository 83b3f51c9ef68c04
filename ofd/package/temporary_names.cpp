#include "temporary_names.h"

#include <QList>
#include <QRandomGenerator>

#include <cerrno>
#include <csignal>

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ofd {

namespace {

const char NamePrefix[] = ".saving-"; // then the process, a random word, and the ending
const char NameEnding[] = ".tmp";

// The process that the name of a temporary file tells; 0 when it is none of ours.
pid_t ProcessOf(const QByteArray& name)
{
    if (!name.startsWith(NamePrefix) || !name.endsWith(NameEnding))
        return 0;
    const QList<QByteArray> pieces = name.split('-');
    return pieces.size() == 3 ? pid_t(pieces.at(1).toInt()) : 0;
}

} // namespace

void RemoveLeftovers(const QByteArray& folder)
{
    DIR* const entries = ::opendir(folder.constData());
    if (!entries)
        return;
    while (const dirent* entry = ::readdir(entries)) {
        const pid_t process = ProcessOf(entry->d_name);
        if (process <= 0 || ::kill(process, 0) == 0 || errno != ESRCH)
            continue;
        const int leftover = ::openat(::dirfd(entries), entry->d_name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
        if (leftover < 0)
            continue;
        struct stat facts = {};
        const bool isFile = ::fstat(leftover, &facts) == 0 && S_ISREG(facts.st_mode);
        if (isFile && ::flock(leftover, LOCK_EX | LOCK_NB) == 0)
            ::unlinkat(::dirfd(entries), entry->d_name, 0);
        ::close(leftover);
    }
    ::closedir(entries);
}

QString NewTemporaryName(const QString& folder)
{
    return folder + QLatin1Char('/') + QLatin1String(NamePrefix) + QString::number(::getpid()) + QLatin1Char('-') +
           QString::number(QRandomGenerator::system()->generate64(), 36) + QLatin1String(NameEnding);
}

} // namespace ofd
