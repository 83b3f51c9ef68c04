#include "document_tab.h"

#include "document_search.h"
#include "view_history.h"

#include <frame/document/ig_document.h>
#include <frame/operation/event_manager.h>
#include <frame/view/application.h>
#include <frame/view/doc_view.h>
#include <frame/view/ui_context.h>

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>
#include <QUndoStack>

#include <utility>

namespace {

constexpr int FileReturnsMs = 500;

} // namespace

DocumentTab::DocumentTab(std::unique_ptr<DocumentFile> openedFile, G_UIContext* uiContext, QWidget* viewParent)
    : file(std::move(openedFile))
    , context(uiContext)
    , view(new G_DocView(uiContext, file->Document(), viewParent))
    , search(std::make_unique<DocumentSearch>(view))
    , history(std::make_unique<ViewHistory>(view))
    , watcher(new QFileSystemWatcher(this))
{
    G_Application::Instance().DocumentOpened(Document());
    view->CreateUndoStack();
    connect(view->UndoStack(), &QUndoStack::indexChanged, this, &DocumentTab::OnStackMoved);
    connect(view->UndoStack(), &QUndoStack::cleanChanged, this, &DocumentTab::DirtyChanged);
    connect(context->EventMgr(), &G_EventMgr::EventFired, this, &DocumentTab::OnEvent, Qt::DirectConnection);
    connect(watcher, &QFileSystemWatcher::fileChanged, this, &DocumentTab::OnWatchedFileChanged);
    RememberFile();
}

DocumentTab::~DocumentTab()
{
    emit Closing();
    search.reset();
    history.reset();
    delete view;
    G_Application::Instance().DocumentClosed(Document());
}

IG_Document* DocumentTab::Document() const
{
    return file->Document();
}

QString DocumentTab::Label() const
{
    const QString name = QFileInfo(Path()).fileName();
    return IsDirty() ? QLatin1Char('*') + name : name;
}

bool DocumentTab::IsDirty() const
{
    return hasOffStackChange || !view->UndoStack()->isClean();
}

// A change event may come ahead of the push or after it, so what it belongs to is known only when the turn is over:
// with no move of the stack in the same turn, the change is not on the stack.
void DocumentTab::OnEvent(G_Event* event)
{
    if (event->TypeEnum() != EventType::DocumentChanged || event->View() != view)
        return;
    hasUnsettledEvent = true;
    SettleSoon();
}

void DocumentTab::OnStackMoved()
{
    ++unsettledMoves;
    SettleSoon();
}

void DocumentTab::SettleSoon()
{
    if (!isSettling)
        QTimer::singleShot(0, this, &DocumentTab::SettleChanges);
    isSettling = true;
}

void DocumentTab::SettleChanges()
{
    const bool isOffStack = hasUnsettledEvent && unsettledMoves == 0;
    isSettling = hasUnsettledEvent = false;
    unsettledMoves = 0;
    if (!isOffStack || hasOffStackChange)
        return;
    hasOffStackChange = true;
    emit DirtyChanged();
}

SaveOutcome DocumentTab::Save(bool overwrites)
{
    return AfterSave(file->Save(overwrites));
}

SaveOutcome DocumentTab::SaveAs(const QString& path)
{
    return AfterSave(file->SaveAs(path));
}

SaveOutcome DocumentTab::AfterSave(const SaveOutcome& outcome)
{
    if (outcome.done) {
        hasOffStackChange = isAskedReadOnly = hasFileChange = false; // it is a file that was just written
        view->UndoStack()->setClean();
        RememberFile();
        emit DirtyChanged();
    }
    return outcome;
}

void DocumentTab::SetTemporaryFolder(std::unique_ptr<QTemporaryDir> folder)
{
    temporaryFolder = std::move(folder);
}

std::unique_ptr<QTemporaryDir> DocumentTab::TakeTemporaryFolder()
{
    return std::move(temporaryFolder);
}

bool DocumentTab::IsTemporary() const
{
    return temporaryFolder && QFileInfo(Path()).path() == temporaryFolder->path();
}

QString DocumentTab::PathToPropose() const
{
    if (!IsTemporary())
        return Path();
    const QDir downloads(QStandardPaths::writableLocation(QStandardPaths::DownloadLocation));
    return downloads.filePath(QFileInfo(Path()).fileName());
}

DocumentTab::FileStamp DocumentTab::CurrentStamp() const
{
    const QFileInfo info(Path());
    return info.exists() ? FileStamp{info.size(), info.lastModified().toMSecsSinceEpoch()} : FileStamp{};
}

bool DocumentTab::IsFileUnchanged() const
{
    return CurrentStamp() == stamp;
}

void DocumentTab::RememberFile()
{
    stamp = toldStamp = CurrentStamp();
    WatchFile();
}

// What is watched is a file, not its name: one that was put in its place is not watched yet.
void DocumentTab::WatchFile()
{
    if (!watcher->files().isEmpty())
        watcher->removePaths(watcher->files());
    if (QFileInfo::exists(Path()))
        watcher->addPath(Path());
}

// Many programs remove a file, or put another in its place, when they write it anew.
void DocumentTab::OnWatchedFileChanged()
{
    if (QFileInfo::exists(Path()))
        TellFileChange();
    else if (!std::exchange(awaitsFile, true))
        QTimer::singleShot(FileReturnsMs, this, &DocumentTab::TellFileChange);
}

void DocumentTab::TellFileChange()
{
    awaitsFile = false;
    WatchFile();
    const FileStamp now = CurrentStamp();
    if (now == stamp || now == toldStamp)
        return;
    toldStamp = now;
    emit FileChangedOnDisk();
}
