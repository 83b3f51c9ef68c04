#pragma once

#include <frame/base/export.h>

#include <QtGlobal>

// A sequential source of bytes. Owned by whoever holds it; used from one thread at a time.
class FRAME_EXPORT ICA_StreamReader
{
public:
    virtual ~ICA_StreamReader();
    // Total size in bytes, -1 when unknown.
    virtual qint64 GetSize() = 0;
    // Reads at most `size` bytes from the present position; returns how many came, 0 at the end, -1 on an error.
    virtual qint64 Read(void* buffer, qint64 size) = 0;
    // Opens a file for reading, owned by the caller; null when it cannot be opened. The flags are reserved and are 0.
    static ICA_StreamReader* CreateFileStreamReader(const wchar_t* path, int flags);
};

// A sequential sink of bytes. What was written becomes visible under its name only when the writer is deleted after
// every write succeeded: a failed write leaves nothing behind and an earlier file whole.
class FRAME_EXPORT ICA_StreamWriter
{
public:
    virtual ~ICA_StreamWriter();
    // Writes all bytes; false when that failed, and for all that is written afterwards.
    virtual bool Write(const void* data, qint64 size) = 0;
    // Gives up: nothing of what was written becomes visible, and later writes fail. For a source that broke half-way.
    virtual void Abandon() = 0;
    // Opens a file for writing, owned by the caller; null when it cannot be made or when it is the file of an open
    // document. The flags are reserved and are 0.
    static ICA_StreamWriter* CreateFileStreamWriter(const wchar_t* path, int flags);
    // What answers whether a native path belongs to an open document; set once by the application, null lets all pass.
    static void SetOpenFileTest(bool (*isOpenDocument)(const wchar_t* path));
};
