#pragma once

#include "ovjson.h"

#include <QHash>
#include <QVector>

// What the reader and the writer refuse, so that no text can exhaust the stack or the memory.
constexpr int maxJsonDepth = 64;
constexpr int maxJsonBytes = 64 * 1024 * 1024;
constexpr int maxJsonValues = 4 * 1000 * 1000;

// The value behind the handles. Private to this room.
struct OVJson::Value
{
    enum Kind { Null, Bool, Number, String, Array, Object };

    static std::shared_ptr<Value> Make(Kind kind);
    static std::shared_ptr<Value> MakeNumber(double number); // 0 for what is no finite number
    static std::shared_ptr<Value> MakeString(const QString& text);

    // The member's place, -1 when there is none.
    int Find(const QByteArray& key) const;
    // Appends a member or replaces the earlier one in its place.
    void Put(const QByteArray& key, std::shared_ptr<Value> value);
    // True when the wanted value is this one or stands anywhere in it.
    bool Holds(const Value* wanted) const;
    // The shortest decimal text that reads back as the same number.
    QByteArray NumberAsText() const;

    Kind kind = Null;
    bool flag = false;
    double number = 0;
    QString text;
    QVector<QByteArray> keys; // of an object, beside its items
    QVector<std::shared_ptr<Value>> items;

private:
    static constexpr int indexedFrom = 16; // below, looking through the keys is as fast as a hash
    QHash<QByteArray, int> places;         // empty as long as the members are few
};
