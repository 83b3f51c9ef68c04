#pragma once

#include <frame/base/export.h>
#include <frame/document/text_source.h>

#include <QHash>
#include <QObject>
#include <QThreadPool>
#include <QVector>

#include <functional>
#include <memory>

// Reads the text of a few pages on a thread of its own, in the order in which they are wanted, so that a heavy page
// keeps nobody waiting. Main thread only; the destructor gives up and waits for the page that is being read.
class FRAME_EXPORT G_TextReader : public QObject
{
    Q_OBJECT
public:
    // What is made of a page's text, on the thread that reads. Called for one page at a time.
    using Digest = std::function<std::shared_ptr<const void>(int page, const std::shared_ptr<const IG_ReadText>& text)>;
    // Called on the main thread when a page was read.
    using Told = std::function<void(int page)>;

    // Without a source there is nothing to be read: every page is ready. The source outlives the reader.
    G_TextReader(IG_TextSource* source, Told told);
    ~G_TextReader() override;

    // Whether asking the page itself for its text takes no time.
    bool IsReady(int page) const;
    // Reads these pages, the first one first. What else was wanted or read is given up.
    void Want(const QVector<int>& pages);
    // As long as it is not set, the text itself is kept of each page. What was read before is dropped.
    void SetDigest(Digest digest);
    // What was made of a page that was read and is wanted; null when it was not read.
    std::shared_ptr<const void> Take(int page);
    // Whether the page is being read or waits for it.
    bool IsWanted(int page) const;
    // Waits that long at the most for a page that is wanted; true when it is ready. Nobody is told of that page then.
    bool WaitFor(int page, int milliseconds);

    static constexpr int pagesAhead = 16; // so many are worth wanting at a time

private:
    struct Shared;
    // On the other thread.
    void ReadWanted();
    std::shared_ptr<const void> Read(int page, const Digest& digest, const std::atomic<bool>& isGivenUp);
    void Deliver(int page);

    IG_TextSource* source; // not owned; may be null
    const Told told;
    const std::unique_ptr<Shared> shared;
    QHash<int, std::shared_ptr<const void>> read; // that are still wanted
    QThreadPool pool;
};
