#pragma once

#include <QtGlobal>

// Every limit on what a hostile or damaged file may ask of us, in one place. Each is far above what real documents
// need; going beyond one gives a named error or a skipped object, never a crash and never an endless wait.
namespace ofd::limits {

// Container.
constexpr qint64 MaxEntries = 1'000'000;
constexpr qint64 MaxDirectoryBytes = qint64(512) << 20;
// An inflated part that is held in memory. Streamed parts (attachments) are exempt.
constexpr qint64 MaxPartBytes = qint64(512) << 20;
// Inflated size over compressed size, looked at once a part has inflated beyond RatioFreeBytes.
constexpr qint64 MaxRatio = 1000;
constexpr qint64 RatioFreeBytes = qint64(1) << 20;
// All inflated parts that the document model may hold at one time.
constexpr qint64 MaxCachedBytes = qint64(2) << 30;
// How far from the end of the file the end record is looked for: its comment, and foreign bytes behind it.
constexpr qint64 MaxTrailingBytes = qint64(1) << 20;

// XML.
constexpr int MaxXmlDepth = 256;
constexpr int MaxXmlElements = 20'000'000;
constexpr double MaxNumber = 1e7; // absolute value of any coordinate or size
constexpr int MaxArrayItems = 10'000'000;

// Following references: parameters over parameters, composites in composites, patterns in patterns.
constexpr int MaxReferenceDepth = 32;
// A seal's picture may be a package of its own; that one's seals are not followed.
constexpr int MaxNestedPackages = 1;

// Pictures, looked at before decoding.
constexpr qint64 MaxImagePixels = 200'000'000;

} // namespace ofd::limits
