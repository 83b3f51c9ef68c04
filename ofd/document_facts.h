#pragma once

#include <ofd/model/structure.h>

#include <QString>
#include <QStringList>

#include <vector>

namespace ofd {

class Package;

// What an open document says of itself, for people and for scripts. Texts and dates are as the file writes them, white
// space at both ends taken off; empty when it says nothing.
struct DocumentFacts
{
    QString path;
    qint64 bytes = 0; // of the file
    QString formatVersion;
    QString title;
    QString author;
    QString subject;
    QString summary;
    QStringList keywords;
    QString creator; // the program
    QString creatorVersion;
    QString creationDate;
    QString modificationDate;
    int pages = 0;
    int templates = 0;
    int attachments = 0;
    Permissions permissions;
    VersionFacts version;
    bool isSigned = false;
    bool isEncrypted = false;
};

// One signature, as far as it says what it is. Whether it holds is not looked at.
struct SignatureFacts
{
    QString id;
    bool isSeal = true;  // else a signature without a seal, as the list says
    bool isRead = false; // false: its part is missing or damaged, and nothing below is known
    QString provider;    // who made it
    QString company;
    QString providerVersion;
    QString date;
    int stamps = 0; // places in which its seal is painted
    int coveredParts = 0;
};

struct SignatureList
{
    std::vector<SignatureFacts> signatures; // the first ones of the list
    int more = 0;                           // further ones that were not read
};

// Reads at most so many signatures of the document.
SignatureList ReadSignatureFacts(const Package& package, const QString& documentFolder, int most);

// One font that the document's own resources name; those of single pages are not among them.
struct FontFacts
{
    QString name;
    bool isEmbedded = false;
    QString standIn; // the installed family that is drawn with; empty when embedded, or when none was found
};

struct FontList
{
    std::vector<FontFacts> fonts; // by name, each once
    int more = 0;
};

} // namespace ofd
