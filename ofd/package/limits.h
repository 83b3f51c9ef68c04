#pragma once

#include <QtGlobal>

// Every limit on what a hostile or damaged file may ask of us, in one place. Each is far above what real documents
// need. Beyond one the file is refused, or the part, the object or the rest of a list is left out; that is told by the
// text named with the limit, or quietly where it says so. Never a crash, never an endless wait.
namespace ofd::limits {

// --- The container ---------------------------------------------------------------------------------------------------

// Entries of the directory. "The file has too many entries."
constexpr qint64 MaxEntries = 1'000'000;
// Bytes of the directory. "The file has too many entries."
constexpr qint64 MaxDirectoryBytes = qint64(512) << 20;
// An inflated part that is held in memory; streamed parts (attachments) are exempt. "The part … is too big when
// unpacked."
constexpr qint64 MaxPartBytes = qint64(512) << 20;
// Inflated size over compressed size, looked at for parts that say they are larger than RatioFreeBytes. "The part … is
// too big when unpacked."
constexpr qint64 MaxRatio = 1000;
constexpr qint64 RatioFreeBytes = qint64(1) << 20;
// How far from the end of the file the end record is looked for: its comment, and foreign bytes behind it. "The file is
// incomplete: its end is missing."
constexpr qint64 MaxTrailingBytes = qint64(1) << 20;
// A seal's picture may be a package of its own; that one's seals are not followed. Quietly.
constexpr int MaxNestedPackages = 1;
// Seals: what is read of one, how many elements of its data are looked at (again and again, where their ends are not
// told), how they are nested, and how many a document shows.
constexpr qint64 MaxSealBytes = qint64(32) << 20;
constexpr int MaxSealElements = 100'000;
constexpr int MaxSealDepth = 32;
constexpr int MaxSignatures = 10'000;
constexpr int MaxStamps = 100'000;
constexpr int MaxStampsOnPage = 200;
// A colour profile.
constexpr qint64 MaxProfileBytes = qint64(16) << 20;
constexpr qint64 MaxProfileBytesInAll = qint64(128) << 20; // of one list of resources
// Pixels of a picture whose colours follow the profile that it carries. Quietly: larger ones keep their numbers.
constexpr qint64 MaxProfiledPixels = 64'000'000;

// --- XML -------------------------------------------------------------------------------------------------------------

// The ratio for parts that are parsed, since a tree takes many times its bytes: thrice that of the densest part seen.
// "The part … is too big when unpacked."
constexpr qint64 MaxXmlRatio = 100;
constexpr qint64 XmlRatioFreeBytes = qint64(4) << 20;
// Elements inside each other. "The XML is nested too deep."
constexpr int MaxXmlDepth = 256;
// Elements of a part. "The XML has too many elements."
constexpr int MaxXmlElements = 20'000'000;
// Tags of what becomes a tree (long lists are left out of it); each makes up to two nodes of 64 bytes. "The XML has too
// many elements."
constexpr qint64 MaxTreeTags = 6'000'000;
// Absolute value of any coordinate or size; what is beyond is no number at all. Quietly, as a default.
constexpr double MaxNumber = 1e7;
// Numbers of one list. Quietly, as if the list were not there.
constexpr int MaxArrayItems = 10'000'000;
// Characters of an element's prefix when a page is searched for its head without being parsed.
constexpr int MaxPrefix = 256;
// A page without its content, to learn its size. Quietly: the page gets the document's size.
constexpr int MaxPageHeadBytes = 1 << 20;

// --- References ------------------------------------------------------------------------------------------------------

// Inflated parts that are looked through for identifiers before a new one is given out.
constexpr qint64 MaxIdScanBytes = qint64(512) << 20;

// Following references: parameters over parameters, composites in composites, patterns in patterns, templates in
// templates. Quietly: the innermost are not drawn.
constexpr int MaxReferenceDepth = 32;
// Blocks in blocks; what lies deeper belongs to the innermost block, so nothing is lost.
constexpr int MaxBlockDepth = 32;
// Objects that one page has through composites and patterns, counted as often as they are used: a few hundred bytes can
// ask for more than could ever be painted. "The page repeats its composite objects too often." The rest is not drawn.
constexpr int MaxRepeatedObjects = 100'000;
// As many of them does a pattern inside a pattern count for: it needs a picture of its own.
constexpr int NestedPatternCost = 100;
// The same for templates that use templates. "The page uses too many templates."
constexpr int MaxTemplatesOnPage = 1000;
// Pages that are looked at for the z-order of templates to which the document gives none. Quietly: the background.
constexpr int MaxPagesAskedForTemplates = 100;

// --- Links -----------------------------------------------------------------------------------------------------------

// Actions of one object, each of which may ask the user something. Quietly: the rest is not run.
constexpr int MaxActionsOfObject = 16;
// Links of a page. "The page has too many links." The rest is not clicked.
constexpr int MaxLinksOnPage = 10'000;
// Pieces of the region of an action. Quietly: the rest is left out.
constexpr int MaxRegionPieces = 10'000;
// Points of all regions of a page, since each movement of the mouse looks for what it is on. Quietly: further regions
// are the boxes around them.
constexpr int MaxRegionPointsOnPage = 100'000;

// --- Lists of numbers ------------------------------------------------------------------------------------------------

// Dashes and gaps of a line. Quietly: the line is solid.
constexpr int MaxDashes = 1024;
// Dashes along one outline. Quietly: the line is solid.
constexpr double MaxDashesInLine = 20'000;
// Colours of a shading. Quietly: the rest is not used.
constexpr int MaxShadingStops = 4096;
// Points of a shading made of triangles. Quietly: the rest is not used.
constexpr int MaxShadingPoints = 65'536;
// Values of one colour. Quietly: the rest is not used.
constexpr int MaxChannels = 64;
// Colours of a palette. Quietly: the rest is not used.
constexpr int MaxPaletteEntries = 65'536;
// Points that are told of an annotation's outline. Quietly: the rest is left out.
constexpr int MaxAnnotationPoints = 100'000;
// Curves and lines of the areas of a clip that are united exactly, which takes more than the square of their number
// where all cross. Quietly: the areas of larger ones, and of those that cross very often, are laid over each other.
constexpr int MaxUnitedElements = 400;

// --- Pictures and fonts ----------------------------------------------------------------------------------------------

// Looked at before decoding. Quietly: the picture is not drawn.
constexpr qint64 MaxImagePixels = 200'000'000;
// The decoded picture in memory, looked at before decoding.
constexpr qint64 MaxImageBytes = qint64(768) << 20;
// Larger ones must take at least a byte in the file for so many: blank pictures without end pack into nothing.
constexpr qint64 FreeImageBytes = qint64(320) << 20;
constexpr qint64 MaxImageRatio = 2000;
// Of a picture that is seen through a mask; larger ones get coarser.
constexpr qint64 MaxMaskedPixels = 32'000'000;
// Times that a JPEG file goes over its picture; a dozen is usual. Quietly: the picture is not drawn.
constexpr int MaxJpegScans = 200;
// Pixels of a JPEG file that goes over its picture more than once, which is then kept in memory twice; and the same
// multiplied by how often.
constexpr qint64 MaxScannedPixels = 96'000'000;
constexpr qint64 MaxScannedPixelsInAll = 3'000'000'000;
// Bilevel pictures, whose decoder cannot be interrupted: segments, symbols of all dictionaries, bytes of one symbol,
// bytes that putting symbols into regions copies at the most, cells of halftones. Quietly: the picture is not drawn.
constexpr size_t MaxJbig2Segments = 100'000;
constexpr qint64 MaxJbig2Symbols = 65'536;
constexpr qint64 MaxJbig2SymbolBytes = 256 << 10;
constexpr qint64 MaxJbig2CopiedBytes = qint64(16) << 30;
constexpr qint64 MaxJbig2Cells = 50'000'000;
// An embedded font. Quietly: an installed one stands in.
constexpr qint64 MaxFontBytes = qint64(128) << 20;
constexpr qint64 MaxFontBytesInAll = qint64(512) << 20; // of one document
// Searches for an installed font that a document may cause, each of which takes about a millisecond: fonts by name, and
// fonts for a character. Quietly: after that the fonts found so far must do.
constexpr int MaxFontSearches = 500;
// Pixels a unit of an object's own space. Quietly: the object is not drawn.
constexpr double MaxScale = 1e6;

// Pixels of what is painted apart and then laid on the page, groups and patterns: at one time, and for one page in all.
// "The page has more groups and patterns than can be painted." Groups are then painted object by object; patterns are
// not drawn.
constexpr qint64 MaxLayerPixels = 200'000'000;
constexpr qint64 MaxLayerPixelsOnPage = 4'000'000'000;
// What the objects of one page may ask of the painter, in units of about a nanosecond at 96 dpi: at least, for each
// byte of the file, and at most. "The page asks for more painting than is done; not all of it is shown." A page of text
// takes some millions, a map of 500,000 small shapes 2,000 millions.
constexpr double PageWork = 2.6e9;
constexpr double PageWorkPerByte = 2000;
constexpr double MaxPageWork = 120e9;
// Pixels that a page is counted as at the most, however large it says it is.
constexpr double MaxCountedPagePixels = 16e6;
// Objects that one filling of a pattern paints cell by cell. Quietly: a picture of the cell is repeated beyond.
constexpr int MaxPatternObjects = 20'000;

// Faces of a collection, names of a face, tables of a file that are looked at. Quietly: the rest is not.
constexpr int MaxFontFaces = 256;
constexpr unsigned MaxFontNames = 4096;
constexpr int MaxFontTables = 256;
// Glyphs that an embedded font puts a glyph together from, counted as often as they are used. Quietly: it is empty.
constexpr int MaxGlyphParts = 1000;
// Points of the glyphs that all embedded fonts of a document have beyond so many each, at least, and more for each byte
// of the fonts in the file: a few kilobytes can be sixty thousand glyphs of as many points, but a font that was drawn
// with a brush has thousands honestly. Quietly: the glyphs that come after that are empty.
constexpr int FreeGlyphPoints = 500;
constexpr qint64 MaxHeavyGlyphPoints = 4'000'000;
constexpr int HeavyGlyphPointsPerByte = 2;
// Points that each part of a glyph counts as, and each microsecond that a glyph takes which has no outline in the end,
// or which takes so many: an ordinary one takes a hundredth of that.
constexpr int PointsOfGlyphPart = 4;
constexpr int PointsOfMicrosecond = 20;
constexpr int SlowGlyphMicroseconds = 5000;
// Glyphs of one font that are kept; more are made again whenever they are drawn.
constexpr int MaxCachedGlyphs = 20'000;

// --- Names -----------------------------------------------------------------------------------------------------------

// Characters of an attachment's name. Quietly: the rest is cut off.
constexpr int MaxAttachmentName = 200;

} // namespace ofd::limits
