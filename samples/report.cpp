#include "report.h"

#include "document_builder.h"

#include <random>

namespace samples {

namespace {

constexpr double kPointMm = 25.4 / 72;

// Points from the page's bottom, as such a report is usually set, to millimetres from its top.
double TopMm(double pointsFromBottom)
{
    return (842 - pointsFromBottom) * kPointMm;
}

QByteArray Noise(qint64 size)
{
    std::mt19937_64 random(20240520);
    QByteArray bytes(int(size), Qt::Uninitialized);
    for (int at = 0; at < bytes.size(); at += 8) {
        const quint64 value = random();
        memcpy(bytes.data() + at, &value, size_t(qMin(8, bytes.size() - at)));
    }
    return bytes;
}

QVector<int> AddPages(DocumentBuilder& document, int count)
{
    TextStyle style;
    style.font = document.AddFont("Helvetica", Face::Sans);
    style.sizeMm = 12 * kPointMm;
    PageSetup setup;
    setup.sizeMm = QSizeF(595 * kPointMm, 842 * kPointMm);
    QVector<int> pages;
    for (int index = 0; index < count; ++index) {
        pages.append(document.AddPage(setup, [&](PageBuilder& page) {
            page.BeginLayer();
            for (int line = 0; line < 50; ++line) {
                const QPointF at(50 * kPointMm, TopMm(800 - 14 * line));
                const QString text = QStringLiteral("Page %1 line %2 of the report with some words in it");
                page.Objects().Text(at, text.arg(index + 1).arg(line), style);
            }
        }));
    }
    return pages;
}

void AddChapters(DocumentBuilder& document, const QVector<int>& pages, int entries)
{
    if (entries == 0)
        return;
    const int groups = qMax(1, entries / 100);
    const int sections = qMax(0, entries / groups - 1);
    for (int group = 0; group < groups; ++group) {
        Outline chapter;
        chapter.title = QStringLiteral("Chapter %1").arg(group);
        chapter.dest.type = "Fit";
        chapter.dest.pageId = pages[group % pages.size()];
        for (int section = 0; section < sections; ++section) {
            Outline entry;
            entry.title = QStringLiteral("Chapter %1 section %2").arg(group).arg(section);
            entry.dest.pageId = pages[(group * sections + section) % pages.size()];
            entry.dest.top = TopMm(800);
            chapter.children.push_back(entry);
        }
        document.AddOutline(chapter);
    }
}

} // namespace

Package MakeReport(const ReportSetup& setup)
{
    DocumentBuilder document(QStringLiteral("Report of %1 pages").arg(setup.pages));
    const QVector<int> pages = AddPages(document, setup.pages);
    AddChapters(document, pages, setup.entries);
    for (int index = 0; index < setup.bookmarks; ++index) {
        Dest dest;
        dest.pageId = pages[index % pages.size()];
        dest.top = TopMm(800);
        document.AddBookmark(QStringLiteral("Bookmark %1").arg(index + 1), dest);
    }
    if (setup.entries > 0)
        document.SetPageMode("UseOutlines");
    if (setup.padBytes > 0) {
        Attachment pad;
        pad.name = "pad";
        pad.fileName = "pad.bin";
        pad.format = "bin";
        pad.data = Noise(setup.padBytes);
        pad.isStored = true;
        document.AddAttachment(pad);
    }
    return document.Build();
}

} // namespace samples
