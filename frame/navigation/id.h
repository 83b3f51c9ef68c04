#pragma once

#include <frame/base/export.h>

#include <QByteArray>
#include <QHash>
#include <QString>

namespace Core {

// A name that compares fast enough to be a key. A value type; empty when default-constructed.
class FRAME_EXPORT Id
{
public:
    Id() = default;
    Id(const char* name)
        : name(name)
    {
    } // NOLINT(google-explicit-constructor): ids are written as literals
    bool IsValid() const { return !name.isEmpty(); }
    QString ToString() const { return QString::fromUtf8(name); }
    static Id FromString(const QString& text); // as ToString gives it
    friend bool operator==(const Id& a, const Id& b) { return a.name == b.name; }
    friend bool operator!=(const Id& a, const Id& b) { return a.name != b.name; }
    friend uint qHash(const Id& id, uint seed = 0) { return ::qHash(id.name, seed); }

private:
    QByteArray name;
};

} // namespace Core
