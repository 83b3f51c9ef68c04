#pragma once

#include <frame/base/streams.h>

#include <QByteArray>

#include <cstring>

// A reader over bytes in memory; can be told to break after some of them.
class BytesReader : public ICA_StreamReader
{
public:
    explicit BytesReader(QByteArray bytes, int failsAt = -1)
        : bytes(std::move(bytes))
        , failsAt(failsAt)
    {
    }
    qint64 GetSize() override { return bytes.size(); }
    qint64 Read(void* buffer, qint64 size) override
    {
        if (failsAt >= 0 && at >= failsAt)
            return -1;
        const int end = failsAt >= 0 ? qMin(failsAt, bytes.size()) : bytes.size();
        const auto count = static_cast<int>(qMin<qint64>(size, end - at));
        std::memcpy(buffer, bytes.constData() + at, static_cast<size_t>(count));
        at += count;
        return count;
    }

private:
    QByteArray bytes;
    int failsAt;
    int at = 0;
};

// A writer that keeps what it gets, or that refuses every byte.
class BytesWriter : public ICA_StreamWriter
{
public:
    explicit BytesWriter(bool fails = false)
        : fails(fails)
    {
    }
    bool Write(const void* data, qint64 size) override
    {
        if (fails)
            return false;
        bytes.append(static_cast<const char*>(data), static_cast<int>(size));
        return true;
    }
    void Abandon() override { wasAbandoned = true; }

    QByteArray bytes;
    bool wasAbandoned = false;

private:
    bool fails;
};
