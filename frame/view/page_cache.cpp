#include "page_cache.h"

PageCache::PageCache(qint64 budgetBytes)
    : budget(budgetBytes)
{
}

const PagePicture* PageCache::Find(int page) const
{
    const auto it = pictures.constFind(page);
    return it == pictures.constEnd() ? nullptr : &it.value();
}

void PageCache::Put(int page, const PagePicture& picture)
{
    Remove(page);
    pictures.insert(page, picture);
    recent.append(page);
    bytes += BytesOf(picture);
}

void PageCache::Touch(int page)
{
    if (recent.removeOne(page))
        recent.append(page);
}

void PageCache::Remove(int page)
{
    const auto it = pictures.find(page);
    if (it == pictures.end())
        return;
    bytes -= BytesOf(it.value());
    pictures.erase(it);
    recent.removeOne(page);
}

void PageCache::Clear()
{
    pictures.clear();
    recent.clear();
    bytes = 0;
}

void PageCache::MarkStale(int page)
{
    const auto it = pictures.find(page);
    if (it != pictures.end())
        it->isStale = true;
}

void PageCache::Trim(const QSet<int>& onScreen)
{
    const QList<int> oldestFirst = recent;
    for (const int page : oldestFirst) {
        if (bytes <= budget)
            return;
        if (!onScreen.contains(page))
            Remove(page);
    }
}

qint64 PageCache::BytesOf(const PagePicture& picture)
{
    return qint64(picture.pixmap.width()) * picture.pixmap.height() * 4;
}
