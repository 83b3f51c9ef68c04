#pragma once

#include <frame/base/export.h>

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVariant>

// A bag of named values. Typed reads give the default when the key is absent or its value does not convert.
class FRAME_EXPORT G_OperationParam
{
public:
    // An earlier value of the key is replaced. A text literal is stored as text.
    void Add(const QByteArray& key, int value);
    void Add(const QByteArray& key, float value);
    void Add(const QByteArray& key, bool value);
    void Add(const QByteArray& key, const QString& value);
    void Add(const QByteArray& key, const char* utf8Value);
    void Add(const QByteArray& key, double value) = delete;
    void Add(const QByteArray& key, const void* value) = delete;
    template <typename T>
    void Add(const QString& key, T value)
    {
        Add(key.toUtf8(), value);
    }
    template <typename T>
    void Add(const char* key, T value)
    {
        Add(QByteArray(key), value);
    }

    QVariant Get(const QByteArray& key) const; // invalid when absent
    int GetInt32(const QByteArray& key, int defaultValue = 0) const;
    float GetFloat(const QByteArray& key, float defaultValue = 0) const;
    // 0 or 1. A text counts as QVariant says: "0" and "false" are 0.
    int GetBool(const QByteArray& key, bool defaultValue = false) const;
    QString GetQString(const QByteArray& key) const; // empty when absent
    bool Contains(const QByteArray& key) const;
    bool Contains(const QString& key) const { return Contains(key.toUtf8()); }
    bool Contains(const char* key) const { return Contains(QByteArray(key)); }
    int Count() const;
    void Clear();
    // Adds all values of the other bag, replacing those of the same key.
    void Merge(const G_OperationParam& other);

private:
    QHash<QByteArray, QVariant> values;
};
