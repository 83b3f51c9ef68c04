#pragma once

#include "package.h"

namespace samples {

// The parts of a signature that Sign() adds.
extern const QString kSignatureList, kSignature, kSeal, kSignedValue;

// All parts but those of signatures.
std::vector<QString> AllParts(const Package& package);
// Adds one signature over all parts with one stamp of 30 x 30 mm at (140, 150) on page 6; digests are true when it is
// done, so it comes last. `seal` is the content of the seal's part.
void Sign(Package& package, const QByteArray& seal);
// The signed value holds the seal and the digest of the signature part, so it is made anew when that part changes.
void PutSignedValue(Package& package);

} // namespace samples
