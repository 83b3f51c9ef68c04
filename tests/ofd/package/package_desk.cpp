#include "package_desk.h"

#include <QDir>
#include <QFile>

using namespace ofd;

const QString DocumentName = QStringLiteral("Doc_0/Document.xml");
const QString ImageName = QStringLiteral("Doc_0/Res/image.bin");

std::unique_ptr<Package> PackageDesk::OpenZip(const RawZip& zip, const char* name) const
{
    WriteFile(Path(name), zip.Build());
    return Package::Open(Path(name));
}

QStringList PackageDesk::FilesLeft() const
{
    return QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

void WriteFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size())
        qFatal("%s cannot be written", qPrintable(path));
}

QByteArray ReadFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

PackageChanges DocumentChange(const QByteArray& bytes)
{
    PackageChanges changes;
    changes.SetXmlPart(DocumentName, bytes);
    return changes;
}

RawZip OddRawZip()
{
    RawZip zip = SmallRawZip();
    zip.comment = "an archive comment";
    zip.entries[3].hasDescriptor = true;
    zip.entries[3].localFlags = quint16(1 << 11 | 8);
    zip.entries[0].externalAttributes = 0x41ed0010U;
    zip.Add("Doc_0/Res/twice.bin", "first of two");
    RawEntry& times = zip.Add("Doc_0/Res/times.bin", QByteArray(300, 't'));
    times.localExtra = QByteArray::fromHex("0a000400deadbeef");
    times.centralExtra = QByteArray::fromHex("0a000400cafebabe");
    times.comment = "a comment of its own";
    times.externalAttributes = 0x81a40000U;
    zip.Add("Doc_0/Res/zip64.bin", QByteArray(300, 'z')).hasLocalZip64 = true;
    zip.Add("Doc_0/Res/central64.bin", QByteArray(300, 'c')).hasCentralZip64 = true;
    zip.Add("Doc_0/Res/twice.bin", "second of two");
    zip.Add("Doc_0/Empty/", {}).isStored = true;
    zip.Add(QByteArray::fromHex("b8bdbcfe") + ".xml", "<GB18030/>");
    zip.Add("Doc_0/secret.bin", "as good as encrypted").flags = 1;
    return zip;
}
