#pragma once

#include <frame/base/streams.h>

#include <QString>

// Writes into a file that did not exist before: it never follows a link and never touches a file that is there. What
// was begun and not finished is removed.
class NewFileWriter : public ICA_StreamWriter
{
public:
    explicit NewFileWriter(const QString& path);
    ~NewFileWriter() override;
    NewFileWriter(const NewFileWriter&) = delete;
    NewFileWriter& operator=(const NewFileWriter&) = delete;

    bool Write(const void* data, qint64 size) override;
    void Abandon() override;
    // Closes the file; false when it could not be made or not written whole. It is then gone again.
    bool Finish();
    // Of the system; 0 without one. EEXIST when there is such a file.
    int Error() const { return error; }
    // Given up by whoever had the bytes, not by the disk.
    bool WasAbandoned() const { return wasAbandoned; }

private:
    void Close();

    const QByteArray path;
    int descriptor = -1;
    int error = 0;
    bool isMade = false;
    bool isFinished = false;
    bool wasAbandoned = false;
};
