#pragma once

#include <QByteArray>
#include <QString>

namespace ofd {

// The path of a temporary file in the folder, with a name that nobody has by all likelihood.
QString NewTemporaryName(const QString& folder);

// Deletes what killed processes left in the folder. A file is theirs when nobody of that number runs and nobody holds
// the lock that its writer would hold; the latter protects writers on other machines and in other containers.
void RemoveLeftovers(const QByteArray& folder);

} // namespace ofd
