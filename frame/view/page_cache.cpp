#include "page_cache.h"

#include <algorithm>
#include <functional>
#include <limits>

namespace {

QVector<PageCache*> allCaches; // not owned; each enrols itself
quint64 useCount = 0;

// The part of the page that the picture would show at another zoom.
QRectF AtScaleOf(const PagePicture& picture, const PageLook& look)
{
    const double scale = look.pixelsPerMm / picture.look.pixelsPerMm;
    return QRectF(picture.region.x() * scale, picture.region.y() * scale, picture.region.width() * scale,
                  picture.region.height() * scale);
}

void RemoveIf(QVector<PagePicture>& list, const std::function<bool(const PagePicture&)>& isDropped)
{
    list.erase(std::remove_if(list.begin(), list.end(), isDropped), list.end());
}

} // namespace

PageCache::PageCache()
{
    allCaches.append(this);
}

PageCache::~PageCache()
{
    allCaches.removeOne(this);
}

const QVector<PagePicture>& PageCache::Pictures(int page) const
{
    static const QVector<PagePicture> none;
    const auto it = pictures.constFind(page);
    return it == pictures.constEnd() ? none : it.value();
}

void PageCache::Put(int page, const PagePicture& picture)
{
    QVector<PagePicture>& list = pictures[page];
    RemoveIf(list,
             [&](const PagePicture& old) { return old.look == picture.look && picture.region.contains(old.region); });
    list.append(picture);
    list.last().lastUse = ++useCount;
}

const PagePicture* PageCache::FindGood(int page, const PageLook& look, const QRect& region) const
{
    for (const PagePicture& picture : Pictures(page)) {
        if (picture.IsGood() && picture.look == look && picture.region.contains(region))
            return &picture;
    }
    return nullptr;
}

bool PageCache::HasAnything(int page, const PageLook& look, const QRect& region) const
{
    const QVector<PagePicture>& list = Pictures(page);
    return std::any_of(list.cbegin(), list.cend(), [&](const PagePicture& picture) {
        const QRectF shown = AtScaleOf(picture, look).adjusted(-1, -1, 1, 1);
        return !picture.isPartial && picture.look.rotation == look.rotation && shown.contains(region);
    });
}

bool PageCache::HasUnderlay(int page, const PageLook& look) const
{
    const QVector<PagePicture>& list = Pictures(page);
    return std::any_of(list.cbegin(), list.cend(), [&](const PagePicture& picture) {
        return picture.IsGood() && picture.IsWhole() && picture.look.ShowsSameAs(look);
    });
}

void PageCache::WantNothing()
{
    for (QVector<PagePicture>& list : pictures) {
        for (PagePicture& picture : list)
            picture.isWanted = false;
    }
}

void PageCache::Want(int page, const PageLook& look, const QRect& region)
{
    const auto it = pictures.find(page);
    if (it == pictures.end())
        return;
    for (PagePicture& picture : *it) {
        if (picture.IsGood() && picture.look == look && picture.region.contains(region)) {
            picture.isWanted = true;
            picture.lastUse = ++useCount;
        }
    }
}

void PageCache::Touch(int page)
{
    const auto it = pictures.find(page);
    if (it == pictures.end())
        return;
    for (PagePicture& picture : *it)
        picture.lastUse = ++useCount;
}

void PageCache::DropOthers(int page, const PageLook& look)
{
    const auto it = pictures.find(page);
    if (it == pictures.end())
        return;
    const bool hasUnderlay = it->size() > 1 && !FindGood(page, look, QRect(QPoint(0, 0), look.whole));
    RemoveIf(*it, [&](const PagePicture& old) {
        return !(old.look == look) && !(hasUnderlay && old.IsGood() && old.IsWhole() && old.look.ShowsSameAs(look));
    });
    if (it->isEmpty())
        pictures.erase(it);
}

void PageCache::Remove(int page)
{
    pictures.remove(page);
}

void PageCache::Clear()
{
    pictures.clear();
}

void PageCache::MarkStale(int page)
{
    const auto it = pictures.find(page);
    if (it == pictures.end())
        return;
    for (PagePicture& picture : *it)
        picture.isStale = true;
}

bool PageCache::MakeRoom(qint64 bytes)
{
    while (PictureBudget::Bytes() + bytes > PictureBudget::Limit()) {
        PageCache* oldest = nullptr; // not owned
        quint64 use = std::numeric_limits<quint64>::max();
        for (PageCache* cache : qAsConst(allCaches)) {
            const quint64 own = cache->OldestUse();
            if (own < use) {
                use = own;
                oldest = cache;
            }
        }
        if (!oldest)
            return false;
        oldest->GiveUp(use);
    }
    return true;
}

quint64 PageCache::OldestUse() const
{
    quint64 oldest = std::numeric_limits<quint64>::max();
    for (const QVector<PagePicture>& list : pictures) {
        for (const PagePicture& picture : list) {
            if (!picture.isWanted)
                oldest = qMin(oldest, picture.lastUse);
        }
    }
    return oldest;
}

void PageCache::GiveUp(quint64 use)
{
    for (auto it = pictures.begin(); it != pictures.end(); ++it) {
        const int before = it->size();
        RemoveIf(*it, [use](const PagePicture& picture) { return picture.lastUse == use; });
        if (it->size() == before)
            continue;
        if (it->isEmpty())
            pictures.erase(it);
        return;
    }
}
