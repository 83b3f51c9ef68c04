#pragma once

#include <frame/base/export.h>

#include <QByteArray>
#include <QList>
#include <QStringList>

#include <functional>

class G_UIContext;
class IG_Document;

// The application object: the host's log, its open documents and its services. One a process; main thread, except Log.
class FRAME_EXPORT G_Application
{
public:
    static G_Application& Instance(); // made at the first call, lives until the process ends

    // One line to the log. Callable from any thread.
    void Log(const QByteArray& line);
    // Parts joined by one blank.
    void Log(const QByteArray& text, const QByteArray& where);

    // Two checks: 0 "do its permissions allow editing", 1 "does it carry permissions at all". A null document: false.
    bool CheckDocumentRight(IG_Document* document, int which, const QStringList& arguments = {}) const;
    // The second check holds and the first does not: the document may not be edited under its rights.
    bool IsRestricted(IG_Document* document) const;

    // Told by whoever opens and closes documents; not owned.
    void DocumentOpened(IG_Document* document);
    void DocumentClosed(IG_Document* document);
    QList<IG_Document*> OpenDocuments() const;
    // True when a document is open whose key is this native path, or names the same file by way of a link.
    bool IsOpen(const QString& path) const;

    // What saves a document; set by the reader. False without one.
    void SetSaveService(std::function<bool(IG_Document*)> save);
    bool Save(IG_Document* document);

private:
    G_Application();
    Q_DISABLE_COPY(G_Application)
    QList<IG_Document*> documents; // not owned
    std::function<bool(IG_Document*)> saveService;
};
