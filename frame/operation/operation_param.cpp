#include "operation_param.h"

void G_OperationParam::Add(const QByteArray& key, int value)
{
    values.insert(key, value);
}

void G_OperationParam::Add(const QByteArray& key, float value)
{
    values.insert(key, value);
}

void G_OperationParam::Add(const QByteArray& key, bool value)
{
    values.insert(key, value);
}

void G_OperationParam::Add(const QByteArray& key, const QString& value)
{
    values.insert(key, value);
}

void G_OperationParam::Add(const QByteArray& key, const char* utf8Value)
{
    values.insert(key, QString::fromUtf8(utf8Value));
}

QVariant G_OperationParam::Get(const QByteArray& key) const
{
    return values.value(key);
}

int G_OperationParam::GetInt32(const QByteArray& key, int defaultValue) const
{
    bool converts = false;
    const int value = Get(key).toInt(&converts);
    return converts ? value : defaultValue;
}

float G_OperationParam::GetFloat(const QByteArray& key, float defaultValue) const
{
    bool converts = false;
    const float value = Get(key).toFloat(&converts);
    return converts ? value : defaultValue;
}

int G_OperationParam::GetBool(const QByteArray& key, bool defaultValue) const
{
    const QVariant value = Get(key);
    const bool isTrue = value.canConvert<bool>() ? value.toBool() : defaultValue;
    return isTrue ? 1 : 0;
}

QString G_OperationParam::GetQString(const QByteArray& key) const
{
    return Get(key).toString();
}

bool G_OperationParam::Contains(const QByteArray& key) const
{
    return values.contains(key);
}

int G_OperationParam::Count() const
{
    return values.size();
}

void G_OperationParam::Clear()
{
    values.clear();
}

void G_OperationParam::Merge(const G_OperationParam& other)
{
    if (&other == this)
        return;
    for (auto it = other.values.constBegin(); it != other.values.constEnd(); ++it)
        values.insert(it.key(), it.value());
}
