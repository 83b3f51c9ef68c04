#include "direct_copy.h"

#include <QByteArray>
#include <QScopeGuard>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <exception>
#include <thread>

#include <fcntl.h>
#include <linux/fs.h>
#include <linux/magic.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace ofd {

namespace {

constexpr qint64 RequestBytes = qint64(4) << 20;
constexpr int RequestsAtOnce = 4;

// The requests of one range, taken by several threads.
class Requests
{
public:
    Requests(const PageRange& range, char* bytes, int target)
        : range(range)
        , bytes(bytes)
        , target(target)
    {
    }

    // Writes the next one; how many bytes it had, 0 when there is none left or one has failed.
    qint64 WriteNext()
    {
        const qint64 at = next.fetch_add(RequestBytes);
        if (at >= range.count || hasFailed)
            return 0;
        const qint64 count = std::min(RequestBytes, range.count - at);
        const bool isWritten = Write(at, count);
        // What the system read for it does not count as memory of this process any longer.
        (void)::madvise(bytes + at, size_t(count), MADV_DONTNEED);
        if (!isWritten) {
            hasFailed = true;
            return 0;
        }
        done += count;
        return count;
    }
    void Stop() { next = range.count; }
    qint64 GetDone() const { return done; }
    bool IsComplete() const { return done == range.count; }

private:
    bool Write(qint64 at, qint64 count)
    {
        while (count > 0) {
            const ssize_t put = ::pwrite(target, bytes + at, size_t(count), off_t(range.toOffset + at));
            if (put < 0 && errno == EINTR)
                continue;
            if (put <= 0 || put % PageBytes != 0)
                return false;
            at += put;
            count -= put;
        }
        return true;
    }

    const PageRange& range;
    char* bytes; // not owned; only read
    int target;  // not owned
    std::atomic<qint64> next{0};
    std::atomic<qint64> done{0};
    std::atomic<bool> hasFailed{false};
};

// The threads that write beside the calling one. All of them have ended when this is gone, even when an exception of
// the progress took it away; they take no new request then.
class Helpers
{
public:
    explicit Helpers(Requests& requests)
        : requests(requests)
    {
        try {
            for (std::thread& thread : threads)
                thread = std::thread([&requests] {
                    while (requests.WriteNext() > 0) {
                    }
                });
        } catch (const std::exception&) {
            // No more threads or no memory to be had: those that are there do it.
        }
    }
    ~Helpers()
    {
        requests.Stop();
        for (std::thread& thread : threads) {
            if (thread.joinable())
                thread.join();
        }
    }
    Helpers(const Helpers&) = delete;
    Helpers& operator=(const Helpers&) = delete;

private:
    Requests& requests;
    std::array<std::thread, RequestsAtOnce - 1> threads;
};

// The calling thread writes too, and tells how far all of them are. False when that ended it.
bool WriteAll(Requests& requests, const CopyProgress& progress)
{
    qint64 told = 0;
    const auto tell = [&] {
        const qint64 news = requests.GetDone() - told;
        told += news;
        return !progress || news == 0 || progress(news);
    };
    bool goesOn = true;
    {
        const Helpers helpers(requests);
        while (goesOn && requests.WriteNext() > 0)
            goesOn = tell();
    }
    return goesOn && tell();
}

// Whether a file gets a new length without a byte being written, and takes what it is made of in any order. FAT and its
// like fill a longer file with zeros at first, so that all would be written twice; of others nothing is known.
bool HasSparseFiles(int file)
{
    struct statfs facts = {};
    if (::fstatfs(file, &facts) != 0)
        return false;
    switch (quint32(facts.f_type)) {
    case EXT4_SUPER_MAGIC:
    case XFS_SUPER_MAGIC:
    case BTRFS_SUPER_MAGIC:
    case F2FS_SUPER_MAGIC:
    case OVERLAYFS_SUPER_MAGIC: // lies on one of them, or in memory
        return true;
    default:
        return false;
    }
}

} // namespace

bool ShareBlocks(const PageRange& range)
{
    file_clone_range request = {};
    request.src_fd = range.from;
    request.src_offset = quint64(range.fromOffset);
    request.src_length = quint64(range.count);
    request.dest_offset = quint64(range.toOffset);
    return ::ioctl(range.to, FICLONERANGE, &request) == 0;
}

DirectCopy CopyDirectly(const PageRange& range, const CopyProgress& progress)
{
    if (!HasSparseFiles(range.to))
        return DirectCopy::Impossible;
    // A descriptor of its own: what is written around the range goes the usual way.
    const QByteArray path = "/proc/self/fd/" + QByteArray::number(range.to);
    const int target = ::open(path.constData(), O_WRONLY | O_DIRECT | O_CLOEXEC);
    if (target < 0)
        return DirectCopy::Impossible;
    const auto closing = qScopeGuard([target] { ::close(target); });
    // Only the system reads through the mapping. A source that was made shorter meanwhile is an error to it, where this
    // process would be ended by a signal.
    void* const bytes =
        ::mmap(nullptr, size_t(range.count), PROT_READ, MAP_SHARED, range.from, off_t(range.fromOffset));
    if (bytes == MAP_FAILED)
        return DirectCopy::Impossible;
    const auto unmapping = qScopeGuard([bytes, &range] { ::munmap(bytes, size_t(range.count)); });
    // Writes that make a file longer wait for each other, so it has its length at first.
    if (::ftruncate(range.to, off_t(range.toOffset + range.count)) != 0)
        return DirectCopy::Impossible;
    Requests requests(range, static_cast<char*>(bytes), target);
    if (!WriteAll(requests, progress))
        return DirectCopy::Cancelled;
    return requests.IsComplete() ? DirectCopy::Done : DirectCopy::Impossible;
}

} // namespace ofd
