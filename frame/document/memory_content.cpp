// The content calls of the in-memory document: attachments and text selection.
#include "memory_document.h"

#include "memory_private.h"

#include <frame/base/streams.h>

#include <QDateTime>

#include <algorithm>
#include <limits>

void MemoryDocument::AddAttachmentData(const G_AttachmentInfo& info, const QByteArray& data)
{
    d->attachments.Add(info, data);
}

int MemoryDocument::GetAttachmentCount()
{
    return d->attachments.Count();
}

int MemoryDocument::GetAttachmentIndexById(int id)
{
    return d->attachments.IndexById(id);
}

G_AttachmentInfo MemoryDocument::GetAttachment(int index)
{
    return d->attachments.Info(index);
}

bool MemoryDocument::WriteAttachment(int index, ICA_StreamWriter* writer)
{
    return d->attachments.Write(index, writer);
}

bool MemoryDocument::AddAttachment(ICA_StreamReader* reader, bool, const char* title, const char* format,
                                   const char* name, const char*, int)
{
    const std::unique_ptr<ICA_StreamReader> ownedReader(reader);
    G_AttachmentInfo info;
    info.name = title ? title : name;
    info.format = format;
    info.addDate = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss")).toUtf8();
    if (!d->attachments.AddFrom(reader, info))
        return false;
    d->isModified = true;
    return true;
}

bool MemoryDocument::RemoveAttachment(int index)
{
    if (!d->attachments.Remove(index))
        return false;
    d->isModified = true;
    return true;
}

QList<G_TextRects> MemoryDocument::SelectTextRange(const CCA_GPoint& start, int startPage, const CCA_GPoint& end,
                                                   int endPage, const OVSharedPtr<OVJson>&)
{
    QList<G_TextRects> selection;
    const bool isForward = startPage <= endPage;
    const int firstPage = std::min(startPage, endPage);
    const int lastPage = std::max(startPage, endPage);
    const bool isEmpty = firstPage == lastPage && start.x == end.x && start.y == end.y;
    if (!d->PageAt(firstPage) || !d->PageAt(lastPage) || isEmpty)
        return selection;
    constexpr float farAway = std::numeric_limits<float>::max();
    for (int index = firstPage; index <= lastPage; ++index) {
        const CCA_GPoint from = index == firstPage ? (isForward ? start : end) : CCA_GPoint{-farAway, -farAway};
        const CCA_GPoint to = index == lastPage ? (isForward ? end : start) : CCA_GPoint{farAway, farAway};
        MemoryTextPage textPage(d->PageAt(index)->Texts());
        textPage.Parse(0);
        G_TextRects rects;
        rects.pageIndex = index;
        const QList<G_TextRun> runs = textPage.RunsBetween(from, to);
        for (const G_TextRun& run : runs)
            rects.rects.Add(run.rect);
        selection.append(rects);
    }
    return selection;
}
