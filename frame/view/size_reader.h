#pragma once

#include <frame/document/page_renderer.h>

#include <QObject>
#include <QSizeF>
#include <QThreadPool>
#include <QVector>

#include <atomic>
#include <functional>

// Reads the sizes of a document's pages on a thread of its own, some hundred at a time, from the first to the last.
// Main thread only; the destructor waits for the page that is being read.
class SizeReader : public QObject
{
    Q_OBJECT
public:
    // The sizes in mm of the pages from `first` on.
    using Told = std::function<void(int first, const QVector<QSizeF>& sizesMm)>;
    SizeReader(IG_PageRenderer* renderer, int pageCount, Told told);
    ~SizeReader() override;
    void Start();
    bool IsStarted() const { return next > 0; }

private:
    void ReadMore();
    QVector<QSizeF> Read(int first, int end); // on the other thread
    IG_PageRenderer* renderer;                // not owned
    const int pageCount;
    const Told told;
    int next = 0;
    std::atomic<bool> isGivenUp{false};
    QThreadPool pool;
};
