#pragma once

#include <QStringList>

#include <memory>

namespace ofd {

class Package;
struct Resources;

// Reads resource parts into one set; of equal ids of one kind the first wins, so parts that take precedence stand
// first. Parts that cannot be read are left out. `outer` is searched for what the set does not have; may be null.
std::shared_ptr<const Resources> ReadResources(const Package& package, const QStringList& parts,
                                               const QString& documentFolder, int defaultColorSpace,
                                               const std::shared_ptr<const Resources>& outer);

} // namespace ofd
