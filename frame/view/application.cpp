#include "application.h"

#include <frame/base/log.h>
#include <frame/base/streams.h>
#include <frame/document/ig_document.h>

#include <QDir>
#include <QFileInfo>

namespace {

bool IsOpenDocument(const wchar_t* path)
{
    return G_Application::Instance().IsOpen(QString::fromWCharArray(path));
}

} // namespace

G_Application::G_Application()
{
    ICA_StreamWriter::SetOpenFileTest(IsOpenDocument);
}

G_Application& G_Application::Instance()
{
    static G_Application application;
    return application;
}

void G_Application::Log(const QByteArray& line)
{
    FrameLog(line);
}

void G_Application::Log(const QByteArray& text, const QByteArray& where)
{
    FrameLog(text + ' ' + where);
}

bool G_Application::CheckDocumentRight(IG_Document* document, int which, const QStringList& /*arguments*/) const
{
    if (!document)
        return false;
    return which == 0 ? document->MayEdit() : document->HasPermissions();
}

bool G_Application::IsRestricted(IG_Document* document) const
{
    return CheckDocumentRight(document, 1) && !CheckDocumentRight(document, 0);
}

void G_Application::DocumentOpened(IG_Document* document)
{
    if (document && !documents.contains(document))
        documents.append(document);
}

void G_Application::DocumentClosed(IG_Document* document)
{
    documents.removeOne(document);
}

QList<IG_Document*> G_Application::OpenDocuments() const
{
    return documents;
}

bool G_Application::IsOpen(const QString& path) const
{
    const QString wanted = QDir::cleanPath(QDir::fromNativeSeparators(path));
    const QString target = QFileInfo(wanted).canonicalFilePath(); // empty when there is no such file
    for (IG_Document* document : documents) {
        const QString key = QString::fromUtf8(document->GetDocumentKey().Bytes());
        const QString file = QDir::cleanPath(QDir::fromNativeSeparators(key));
        if (file == wanted || (!target.isEmpty() && QFileInfo(file).canonicalFilePath() == target))
            return true;
    }
    return false;
}

void G_Application::SetSaveService(std::function<bool(IG_Document*)> save)
{
    saveService = std::move(save);
}

bool G_Application::Save(IG_Document* document)
{
    return document && saveService && saveService(document);
}
