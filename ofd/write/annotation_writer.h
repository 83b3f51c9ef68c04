#pragma once

#include <memory>
#include <vector>

namespace ofd {

class OfdAnnot;
class Package;
class PackageChanges;
struct PackageError;

// Writes remarks and dates that changed into the parts of their annotations. False, with the error, when a part cannot
// be edited.
bool WriteAnnotations(const Package& package, const std::vector<OfdAnnot*>& edited, PackageChanges& changes,
                      PackageError& error);

} // namespace ofd
