#include "deviations.h"

#include "raw_zip.h"

namespace samples {

namespace {

constexpr quint16 kUtf8Flag = 0x0800;

void EntryLast(Package& package)
{
    package.MoveToEnd(kEntryPart);
}

void NonAsciiNames(Package& package)
{
    package.Rename(kPicture, QString::fromUtf8("Doc_0/Res/图片.png"));
    package.Replace(kDocumentRes, "quadrants.png", QByteArray("图片.png"));
    package.Rename("Doc_0/Attachs/note.txt", QString::fromUtf8("Doc_0/Attachs/说明.txt"));
    package.Replace(kAttachmentList, "note.txt", QByteArray("说明.txt"));
}

void OtherFolder(Package& package)
{
    for (Part& part : package.Parts())
        if (part.name.startsWith("Doc_0/"))
            part.name = "Inhalt/" + part.name.mid(6);
    package.Replace(kEntryPart, "Doc_0/Document.xml", "Inhalt/Document.xml");
}

void FolderInTwoCases(Package& package)
{
    package.Rename(kSecondPage, "Doc_0/PAGES/Page_1/Content.xml");
}

QByteArray WithFolders(const Package& package)
{
    RawZip zip(package);
    std::vector<RawEntry> folders;
    for (const char* name : {"Doc_0/", "Doc_0/Pages/", "Doc_0/Pages/Page_0/", "Doc_0/Pages/Page_1/", "Doc_0/Res/"}) {
        RawEntry folder;
        folder.name = name;
        folder.isStored = true;
        folders.push_back(folder);
    }
    zip.entries.insert(zip.entries.begin(), folders.begin(), folders.end());
    return zip.Bytes();
}

QByteArray WithUtf8Flag(const Package& package)
{
    return WithChangedEntries(package, [](RawEntry& entry) { entry.localFlags = entry.centralFlags = kUtf8Flag; });
}

QByteArray WithUnflaggedNames(const Package& package)
{
    return RawZip(package).Bytes();
}

QByteArray WithDescriptors(const Package& package)
{
    return WithChangedEntries(package, [](RawEntry& entry) { entry.hasDescriptor = true; });
}

QByteArray WithOtherLocalFlags(const Package& package)
{
    return WithChangedEntries(package, [](RawEntry& entry) {
        entry.localFlags = kUtf8Flag | 0x0002; // and a hint of how hard the compressor tried
    });
}

QByteArray WithLocalZip64(const Package& package)
{
    return WithChangedEntries(package, [](RawEntry& entry) { entry.hasLocalZip64 = true; });
}

QByteArray WithComment(const Package& package)
{
    RawZip zip(package);
    zip.comment = "made by a program that leaves its name here";
    return zip.Bytes();
}

QByteArray WithFileTimes(const Package& package)
{
    // Block 0x000A of 32 bytes: four reserved, attribute 1 of 24 bytes, three times.
    const QByteArray times =
        QByteArray::fromHex("0a00200000000000010018000000a1b2c3d4da010000a1b2c3d4da010000a1b2c3d4da01");
    return WithChangedEntries(package, [&](RawEntry& entry) { entry.extra = times; });
}

QByteArray WithStoredParts(const Package& package)
{
    return WithChangedEntries(package, [](RawEntry& entry) { entry.isStored = true; });
}

QByteArray WithBackslashes(const Package& package)
{
    return WithChangedEntries(package, [](RawEntry& entry) { entry.name.replace('/', '\\'); });
}

QByteArray WithLeadingSlashes(const Package& package)
{
    RawZip zip(package);
    for (size_t index = 0; index < zip.entries.size(); ++index)
        zip.entries[index].name.prepend(index % 2 == 0 ? "/" : "./");
    return zip.Bytes();
}

QByteArray WithDuplicateNames(const Package& package)
{
    RawZip zip(package);
    // The older one first: the last entry of a name counts.
    RawEntry older;
    older.name = kSecondPage.toUtf8();
    for (const RawEntry& entry : zip.entries)
        if (entry.name == older.name)
            older.data = QByteArray(entry.data).replace(">Second page<", ">Superseded!<");
    zip.entries.insert(zip.entries.begin(), older);
    return zip.Bytes();
}

QByteArray WithOtherCaseOfEntry(const Package& package)
{
    return WithChangedEntries(package, [](RawEntry& entry) {
        if (entry.name == kEntryPart.toUtf8())
            entry.name = "ofd.XML";
    });
}

constexpr const char* kGroup = "Container";

const Deviation kTable[] = {
    {"ofd_xml_not_first", kGroup, "OFD.xml is the last entry of the package", "find it by name", EntryLast},
    {"directory_entries", kGroup, "the package has entries for folders", "ignore them on load, keep them on save",
     nullptr, WithFolders},
    {"utf8_name_flag", kGroup, "all entries carry the flag for UTF-8 names", "read as usual", nullptr, WithUtf8Flag},
    {"data_descriptors", kGroup, "local headers have no sizes; they follow the data",
     "take sizes from the central directory", nullptr, WithDescriptors},
    {"local_flags_differ", kGroup, "flags of the local headers are not those of the central directory",
     "take flags from the central directory", nullptr, WithOtherLocalFlags},
    {"local_zip64_sizes", kGroup, "local headers have 64-bit sizes in an extra block, the central directory plain ones",
     "take sizes from the central directory", nullptr, WithLocalZip64},
    {"non_ascii_part_names", kGroup, "a picture and an attachment have Chinese part names",
     "decode the names and find the parts", NonAsciiNames},
    {"non_ascii_names_unflagged", kGroup, "Chinese part names in UTF-8 without the flag that says so",
     "try UTF-8 first", NonAsciiNames, WithUnflaggedNames},
    {"archive_comment", kGroup, "the archive ends with a comment", "read as usual, keep it on save", nullptr,
     WithComment},
    {"folder_in_two_cases", kGroup, "one folder is spelled Pages and PAGES", "find the part ignoring case",
     FolderInTwoCases},
    {"document_folder_other_name", kGroup, "the document folder is not called Doc_0", "follow DocRoot", OtherFolder},
    {"extra_file_times", kGroup, "all entries carry an extra block with file times", "read as usual, keep it on save",
     nullptr, WithFileTimes},
    {"stored_parts", kGroup, "no part is compressed", "read as usual", nullptr, WithStoredParts},
    {"names_with_backslashes", kGroup, "entry names use backslashes", "treat them as slashes", nullptr,
     WithBackslashes},
    {"names_with_leading_slash", kGroup, "entry names begin with / or ./", "strip that", nullptr, WithLeadingSlashes},
    {"duplicate_names", kGroup, "two entries have the name of the second page",
     "the last one counts; keep both on save", nullptr, WithDuplicateNames},
    {"entry_part_other_case", kGroup, "OFD.xml is spelled ofd.XML", "accept it when there is one", nullptr,
     WithOtherCaseOfEntry},
};

} // namespace

std::vector<Deviation> ContainerDeviations()
{
    return {std::begin(kTable), std::end(kTable)};
}

} // namespace samples
