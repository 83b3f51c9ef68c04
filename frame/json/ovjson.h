#pragma once

#include <frame/base/export.h>

#include <QByteArray>
#include <QString>

#include <memory>

// A shared pointer to a frame object.
template <typename T>
using OVSharedPtr = std::shared_ptr<T>;

// Settings of the JSON reader and writer; a null config means these defaults.
struct OVJsonConfig
{
    bool indented = false;
};

// A JSON value that keeps the order of an object's keys. A handle: copies name the same value, so that what AddArray
// returns can be filled in place. Wrong-typed writes do nothing, and so do writes that would put a value into itself;
// reads of what is absent give defaults (for a value: one that is neither object nor array nor text nor number).
// Used from one thread at a time, with all its copies.
class FRAME_EXPORT OVJson
{
public:
    OVJson();                  // an empty object
    static OVJson MakeArray(); // an empty one

    // Writers on an object; an earlier value of the key is replaced in place.
    void SetString(const QByteArray& key, const QString& value);
    void SetInt(const QByteArray& key, int value);
    void SetDouble(const QByteArray& key, double value); // a value that is no finite number is written as 0
    void SetBool(const QByteArray& key, bool value);
    void SetObject(const QByteArray& key, const OVJson& value);
    OVJson AddArray(const QByteArray& key); // a new, empty one

    // Writers on an array; position -1 appends.
    void InsertUInt(int position, unsigned value);
    void InsertInt(int position, int value);
    void Append(const OVJson& value);
    void Append(int value);
    void Append(const QString& value);

    // What kind of value it is; a truth value and a null are none of these.
    bool IsObject() const;
    bool IsArray() const;
    bool IsString() const;
    bool IsNumber() const;
    // Elements of an array or members of an object, by place.
    int Size() const;
    OVJson At(int position) const;
    int MemberCount() const;
    QByteArray KeyAt(int position) const;
    bool HasMember(const QByteArray& key) const;
    OVJson Member(const QByteArray& key) const;
    int ToInt(int defaultValue = 0) const; // numbers and decimal texts
    double ToDouble(double defaultValue = 0) const;
    bool ToBool(bool defaultValue = false) const;
    QString ToQString() const; // strings, and numbers as decimal text

private:
    friend class OVJsonFactory;
    friend class JsonParser;
    friend class JsonWriter;
    struct Value;
    explicit OVJson(std::shared_ptr<Value> value);
    void Set(const QByteArray& key, std::shared_ptr<Value> member);
    void Insert(int position, std::shared_ptr<Value> element);

    std::shared_ptr<Value> value;
};

// Turns text into values and back.
class FRAME_EXPORT OVJsonFactory
{
public:
    // UTF-8 text of `length` bytes (-1: up to the null). Null when the text is no JSON object or array, deeper than 64
    // levels, larger than 64 MiB, or of more than four million values.
    static OVSharedPtr<OVJson> ParseJsonString(const char* text, int length, const OVJsonConfig* config = nullptr);
    // UTF-8. A null value gives the empty text, and so does one deeper than the 64 levels that can be read back.
    static QByteArray BuildJsonString(const OVSharedPtr<OVJson>& value, const OVJsonConfig* config = nullptr);
};
