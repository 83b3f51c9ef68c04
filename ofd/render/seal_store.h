#pragma once

#include <ofd/parse/seal_reader.h>

#include <QCache>
#include <QHash>
#include <QImage>

#include <memory>
#include <mutex>

namespace ofd {

class DocumentStore;

// What a seal shows: a picture, or the first page of a document of its own, or nothing when neither can be read.
struct SealFace
{
    QImage image;
    std::shared_ptr<DocumentStore> document; // null when it is a picture
};

// The stamps of a document's signatures and what their seals show, read when first asked for. Seals are shown, never
// verified: that one is painted says nothing about whether the signature holds. Any thread.
class SealStore
{
public:
    // `nesting` is how many documents this one is inside of; seals of documents that are too deep are left out.
    explicit SealStore(int nesting);
    ~SealStore();

    // The stamps on the page, in the order of the signatures. `store` is the document itself.
    QVector<Stamp> GetStamps(const DocumentStore& store, int pageIndex);
    SealFace GetFace(const DocumentStore& store, const Stamp& stamp);

private:
    SealFace ReadFace(const DocumentStore& store, const Stamp& stamp) const;
    SealFace FaceOf(const SealPicture& picture) const;

    const int nesting;
    std::mutex mutex; // guards the caches; held while the stamps are read, not while a seal is
    bool areStampsRead = false;
    QHash<int, QVector<Stamp>> stampsByPage; // by page index
    QCache<QString, SealFace> faces;         // by the parts that hold the seal; weighed in KB
};

} // namespace ofd
