#include "text_reader.h"

#include <QtConcurrent>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <new>
#include <utility>

namespace {

class UnreadableText : public IG_ReadText
{
public:
    bool IsReadable() const override { return false; }
    QList<G_TextGlyph> AllGlyphs() const override { return {}; }
};

} // namespace

// What both threads know. The lock is not Qt's own: the thread sanitizer does not see those.
struct G_TextReader::Shared
{
    using Flag = std::shared_ptr<std::atomic<bool>>;

    // The next page to read; -1, and the reading ends, when there is none.
    int Next(Digest* use, Flag* flag)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        isRunning = !wanted.isEmpty();
        current = isRunning ? wanted.takeFirst() : -1;
        isGivenUp = std::make_shared<std::atomic<bool>>(false);
        *flag = isGivenUp;
        *use = digest;
        return current;
    }
    // False when it is no longer wanted.
    bool Finish(int page, const Flag& flag, const std::shared_ptr<const void>& result)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        current = -1;
        if (flag->load())
            return false;
        finished.insert(page, result);
        changed.notify_all();
        return true;
    }

    std::mutex mutex;
    std::condition_variable changed;
    QVector<int> wanted;
    int current = -1;                                            // is being read
    Flag isGivenUp = std::make_shared<std::atomic<bool>>(false); // the current one
    QHash<int, std::shared_ptr<const void>> finished;            // on their way to the main thread
    Digest digest;
    bool isRunning = false;
};

G_TextReader::G_TextReader(IG_TextSource* source, Told told)
    : source(source)
    , told(std::move(told))
    , shared(std::make_unique<Shared>())
{
    pool.setMaxThreadCount(1);
}

G_TextReader::~G_TextReader()
{
    Want({});
    pool.waitForDone();
    const std::lock_guard<std::mutex> lock(shared->mutex); // the thread sanitizer does not see the wait
}

bool G_TextReader::IsReady(int page) const
{
    return !source || read.contains(page) || source->IsTextRead(page);
}

bool G_TextReader::IsWanted(int page) const
{
    const std::lock_guard<std::mutex> lock(shared->mutex);
    return shared->current == page || shared->wanted.contains(page) || shared->finished.contains(page);
}

bool G_TextReader::WaitFor(int page, int milliseconds)
{
    if (IsReady(page))
        return true;
    std::unique_lock<std::mutex> lock(shared->mutex);
    const bool isThere = shared->changed.wait_for(lock, std::chrono::milliseconds(milliseconds),
                                                  [&] { return shared->finished.contains(page); });
    if (isThere)
        read.insert(page, shared->finished.take(page));
    return isThere;
}

void G_TextReader::SetDigest(Digest digest)
{
    Want({});
    const std::lock_guard<std::mutex> lock(shared->mutex);
    shared->digest = std::move(digest);
}

std::shared_ptr<const void> G_TextReader::Take(int page)
{
    return read.take(page);
}

void G_TextReader::Want(const QVector<int>& pages)
{
    const auto keepWanted = [&pages](QHash<int, std::shared_ptr<const void>>* results) {
        for (auto it = results->begin(); it != results->end();) {
            if (pages.contains(it.key()))
                ++it;
            else
                it = results->erase(it);
        }
    };
    keepWanted(&read);
    if (!source)
        return;
    const std::lock_guard<std::mutex> lock(shared->mutex);
    keepWanted(&shared->finished);
    if (!pages.contains(shared->current))
        shared->isGivenUp->store(true);
    shared->wanted.clear();
    for (const int page : pages) {
        const bool isBeingRead = page == shared->current && !shared->isGivenUp->load();
        if (!isBeingRead && !read.contains(page) && !shared->finished.contains(page))
            shared->wanted.append(page);
    }
    if (shared->wanted.isEmpty() || shared->isRunning)
        return;
    shared->isRunning = true;
    QtConcurrent::run(&pool, [this] { ReadWanted(); });
}

// Null when it was given up. A page for which memory runs out counts as unreadable, so that who waits for it goes on.
std::shared_ptr<const void> G_TextReader::Read(int page, const Digest& digest, const std::atomic<bool>& isGivenUp)
{
    std::shared_ptr<const IG_ReadText> text;
    try {
        text = source->ReadText(page, isGivenUp);
        if (!text || !digest)
            return text;
        return digest(page, text);
    } catch (const std::bad_alloc&) {
        text = std::make_shared<UnreadableText>();
    }
    return digest ? digest(page, text) : text;
}

void G_TextReader::ReadWanted()
{
    Digest digest;
    Shared::Flag isGivenUp;
    for (int page = 0; (page = shared->Next(&digest, &isGivenUp)) >= 0;) {
        const std::shared_ptr<const void> result = Read(page, digest, *isGivenUp);
        if (!result)
            isGivenUp->store(true);
        if (shared->Finish(page, isGivenUp, result))
            QMetaObject::invokeMethod(
                this, [this, page] { Deliver(page); }, Qt::QueuedConnection);
    }
}

void G_TextReader::Deliver(int page)
{
    {
        const std::lock_guard<std::mutex> lock(shared->mutex);
        if (!shared->finished.contains(page))
            return; // no longer wanted
        read.insert(page, shared->finished.take(page));
    }
    told(page);
}
