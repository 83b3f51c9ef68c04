#pragma once

#include <QSet>
#include <QString>

namespace ofd {

class Package;

// What the signatures of a package protect.
struct SignedParts
{
    // True when a signature cannot be read far enough to know; anything may break it then.
    bool coversAll = false;
    QSet<QString> parts;

    bool Covers(const QString& part) const { return coversAll || parts.contains(part); }
    bool CoversAny() const { return coversAll || !parts.isEmpty(); }
};

// Reads which parts the signatures refer to, and those that a list for the whole package names. The signatures
// themselves are not checked.
SignedParts ReadSignedParts(const Package& package);

} // namespace ofd
