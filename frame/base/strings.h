#pragma once

#include <frame/base/export.h>

#include <QByteArray>
#include <QString>

// An 8-bit text, UTF-8 by convention. A value type; copies share their bytes with atomic counting, so a copy may be
// handed to another thread.
class FRAME_EXPORT CCA_String
{
public:
    CCA_String() = default;
    CCA_String(const char* text)
        : bytes(text)
    {
    } // null gives the empty text
    CCA_String(const char* text, int length)
        : bytes(text, length)
    {
    }
    CCA_String(const QByteArray& text)
        : bytes(text)
    {
    }

    bool IsEmpty() const { return bytes.isEmpty(); }
    int GetLength() const { return bytes.size(); } // in bytes
    // Null-terminated, valid as long as the text is not changed; never null.
    const char* GetBuffer() const { return bytes.constData(); }
    operator const char*() const { return bytes.constData(); }
    const QByteArray& Bytes() const { return bytes; }

    CCA_String& operator+=(const CCA_String& other)
    {
        bytes += other.bytes;
        return *this;
    }
    friend CCA_String operator+(CCA_String left, const CCA_String& right) { return left += right; }
    friend bool operator==(const CCA_String& left, const CCA_String& right) { return left.bytes == right.bytes; }
    friend bool operator!=(const CCA_String& left, const CCA_String& right) { return left.bytes != right.bytes; }
    friend bool operator==(const CCA_String& left, const char* right) { return left.bytes == right; }
    friend bool operator!=(const CCA_String& left, const char* right) { return left.bytes != right; }
    friend bool operator<(const CCA_String& left, const CCA_String& right) { return left.bytes < right.bytes; }

private:
    QByteArray bytes;
};

// A wide text (wchar_t, UTF-32 on Linux). A value type.
class FRAME_EXPORT CCA_WString
{
public:
    CCA_WString() = default;
    CCA_WString(const wchar_t* text)
        : text(text ? QString::fromWCharArray(text) : QString())
    {
    }
    CCA_WString(const QString& text)
        : text(text)
    {
    }

    bool IsEmpty() const { return text.isEmpty(); }
    int GetLength() const { return text.size(); } // in UTF-16 units
    const QString& ToQString() const { return text; }
    friend bool operator==(const CCA_WString& left, const CCA_WString& right) { return left.text == right.text; }
    friend bool operator!=(const CCA_WString& left, const CCA_WString& right) { return left.text != right.text; }

private:
    QString text;
};

// Conversions between the 8-bit and the wide texts.
class FRAME_EXPORT CCA_StringConverter
{
public:
    // A null text gives the empty text; `length` -1 means up to the terminating null.
    static CCA_String unicode_to_utf8(const wchar_t* text, int length = -1);
    static CCA_WString utf8_to_unicode(const char* text, int length = -1);
};

// Allocates a null-terminated copy that the receiver frees with CCA_FreeWide. Never null.
FRAME_EXPORT wchar_t* CCA_AllocWide(const QString& text);
// Frees what CCA_AllocWide made; null is accepted.
FRAME_EXPORT void CCA_FreeWide(wchar_t* text);
