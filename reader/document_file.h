#pragma once

#include "document_properties.h"

#include <QString>

#include <memory>

class IG_Document;

// What came of a save.
struct SaveOutcome
{
    bool done = false;
    QString error;   // why not, for the user; empty when done
    QString warning; // what the user should know although it was done; may be empty
    // Nothing was written because the file on disk is not the one that was opened; ask, and save with `overwrites`.
    bool isForeignChange = false;
};

// An open document together with the file that it came from: what the window needs beyond IG_Document. Owns the
// document. Main thread only.
class DocumentFile
{
public:
    virtual ~DocumentFile() = default;
    virtual IG_Document* Document() = 0; // never null
    virtual QString Path() const = 0;    // absolute
    virtual SaveOutcome Save(bool overwrites) = 0;
    // Writes to another file, which is the document's file afterwards.
    virtual SaveOutcome SaveAs(const QString& path) = 0;
    // Writes the document as it is now to another file and stays with its own.
    virtual SaveOutcome SaveCopy(const QString& path) = 0;
    // Whether saving now would make a signature of the document invalid.
    virtual bool BreaksSignatures() const = 0;
    // A name for the user; the title the document gives itself, empty when it gives none.
    virtual QString Title() const = 0;
    // What the document tells of a topic. Cheap: no page is read for it.
    virtual PropertySection Properties(PropertyTopic topic) = 0;
};

// What came of opening: a file, or the reason why not.
struct OpenOutcome
{
    std::unique_ptr<DocumentFile> file;
    QString error;
};

// Opens a file with the backend that its content asks for. Nothing is ever written into it by opening.
OpenOutcome OpenDocumentFile(const QString& path, bool readOnly);
