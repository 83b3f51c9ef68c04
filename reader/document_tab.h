#pragma once

#include "document_file.h"

#include <QObject>

#include <memory>

class DocumentSearch;
class G_DocView;
class G_Event;
class G_UIContext;
class QFileSystemWatcher;
class QTemporaryDir;
class ViewHistory;

// One open document of the window: its file, its view and whether it is dirty. Owned by the window. The view dies
// before the document.
class DocumentTab : public QObject
{
    Q_OBJECT
public:
    DocumentTab(std::unique_ptr<DocumentFile> file, G_UIContext* context, QWidget* viewParent);
    ~DocumentTab() override;

    IG_Document* Document() const;
    G_DocView* View() const { return view; }
    DocumentSearch* Search() const { return search.get(); }
    ViewHistory* History() const { return history.get(); }
    QString Path() const { return file->Path(); }
    PropertySection Properties(PropertyTopic topic) const { return file->Properties(topic); }
    // The file's name, with a star in front while dirty.
    QString Label() const;
    // Dirty when the undo stack is not at its saved state, or when a change that is not on the stack came since the
    // last save.
    bool IsDirty() const;
    // `overwrites`: also when somebody else changed the file since it was opened.
    SaveOutcome Save(bool overwrites = false);
    SaveOutcome SaveAs(const QString& path);
    // Writes the document as it is now to another file; the tab stays as dirty as it is.
    SaveOutcome SaveCopy(const QString& path) { return file->SaveCopy(path); }
    // Whether a save would make signatures invalid and the user was not asked yet. Agreeing holds as long as the tab.
    bool MustAskAboutSignatures() const { return !mayBreakSignatures && file->BreaksSignatures(); }
    void AllowBreakingSignatures() { mayBreakSignatures = true; }
    // The file was changed by somebody else, and the user has neither seen to it nor said to ignore it: told whenever
    // the tab is in front. A save ends it.
    void SetFileChange(bool isOpen) { hasFileChange = isOpen; }
    bool HasFileChange() const { return hasFileChange; }
    // Whether who opened the document wanted it read-only; it holds when the file is reloaded.
    bool IsAskedReadOnly() const { return isAskedReadOnly; }
    void SetAskedReadOnly(bool isAsked) { isAskedReadOnly = isAsked; }
    // The folder that the file was put into only to be looked at; it goes with the tab.
    void SetTemporaryFolder(std::unique_ptr<QTemporaryDir> folder);
    std::unique_ptr<QTemporaryDir> TakeTemporaryFolder();
    bool IsTemporary() const;
    // What names of files that come from it are made of: its own, or one where a file stays.
    QString PathToPropose() const;
    // Whether the file on disk is still what was opened or saved.
    bool IsFileUnchanged() const;

signals:
    void DirtyChanged();
    // The file was changed, replaced or removed by somebody else.
    void FileChangedOnDisk();
    // The document is about to close: whoever shows it lets go of it now.
    void Closing();

private slots:
    void OnEvent(G_Event* event);
    void OnStackMoved();
    void SettleChanges();
    void OnWatchedFileChanged();
    void TellFileChange();

private:
    struct FileStamp
    {
        qint64 size = -1;
        qint64 modifiedMs = 0;
        bool operator==(const FileStamp& other) const { return size == other.size && modifiedMs == other.modifiedMs; }
    };
    FileStamp CurrentStamp() const;
    void RememberFile();
    void WatchFile();
    void SettleSoon();
    SaveOutcome AfterSave(const SaveOutcome& outcome);

    std::unique_ptr<QTemporaryDir> temporaryFolder; // null for most; outlives the file
    std::unique_ptr<DocumentFile> file;
    G_UIContext* context;                   // not owned
    G_DocView* view;                        // owned; deleted ahead of the file
    std::unique_ptr<DocumentSearch> search; // deleted ahead of the view
    std::unique_ptr<ViewHistory> history;   // the same
    QFileSystemWatcher* watcher;            // owned by this
    FileStamp stamp;                        // of the file that was opened or saved
    FileStamp toldStamp;                    // of the change that was told last
    // Of the present turn of the event loop:
    int unsettledMoves = 0; // index changes of the undo stack
    bool hasUnsettledEvent = false;
    bool isSettling = false;
    bool hasOffStackChange = false;
    bool mayBreakSignatures = false;
    bool isAskedReadOnly = false;
    bool hasFileChange = false;
    bool awaitsFile = false; // it is gone, perhaps to come back at once
};
