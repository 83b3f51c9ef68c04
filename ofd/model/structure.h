#pragma once

#include <QDate>
#include <QHash>
#include <QSet>
#include <QSizeF>
#include <QString>
#include <QStringList>
#include <QVector>

namespace ofd {

// A page as the document lists it. The order of the list is the page order.
struct PageEntry
{
    int id = 0;
    QString part; // empty when the part is missing: the page is then an empty sheet
};

struct TemplateEntry
{
    int id = 0;
    QString part; // empty when missing
    QString name;
    QString zOrder; // as written; empty when not given
};

// What the document allows. All true when it says nothing.
struct Permissions
{
    bool exist = false;
    bool edit = true;
    bool annotate = true;
    bool exportContent = true;
    bool print = true;
    int copies = -1; // that may be printed at a time; negative: any number
    QDate validFrom; // invalid: no bound
    QDate validUntil;

    bool IsValidOn(const QDate& day) const;
};

// By what actions name the attachments that the file has. Identifiers may be any words; the numbers that they have in
// memory are what they end in, or made up where that is no number or another's.
struct AttachmentIds
{
    QHash<QString, int> byWord;
    QHash<int, int> byNumber; // that identifiers end in; the first one holds
    QSet<int> madeUp;
};

// Which of the states of a document that its file keeps is open. The others are neither shown nor edited.
struct VersionFacts
{
    int count = 0;        // versions that the file lists; 0: it keeps none, and nothing else is said here
    int shown = 0;        // place of the one that is open, from 1; 0: the document itself, no version
    QString name;         // of the one that is open; its own number or its identifier when it has no name
    bool isNewest = true; // of all that are listed
    bool isWanted = true; // false: another one is said to be current, but cannot be read
};

// What the entry part and the document part say, read at opening and never changed afterwards. Part names are resolved.
struct DocumentStructure
{
    QString documentPart;
    QString documentFolder; // "Doc_0/", empty at the root
    QString title;
    QVector<PageEntry> pages;
    QHash<int, int> pageIndexById; // the first page of an id wins
    QVector<TemplateEntry> templates;
    QHash<int, int> templateById; // position in `templates`
    QStringList documentRes;
    QStringList publicRes;
    quint32 defaultColorSpace = 0;
    int highestId = 0; // that the document part states or uses
    QSizeF pageSizeMm; // of pages without an area of their own; invalid when the document has none
    QString attachmentsPart;
    AttachmentIds attachmentIds;
    QString annotationsPart;
    QString customTagsPart;
    Permissions permissions;
    VersionFacts version;
    bool isSigned = false;
    bool isEncrypted = false;
};

// A sheet for pages about whose size nothing is known.
constexpr double DefaultPageWidthMm = 210;
constexpr double DefaultPageHeightMm = 297;

} // namespace ofd
