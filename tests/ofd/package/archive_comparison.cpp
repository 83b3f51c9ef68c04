#include "archive_comparison.h"

#include <ofd/package/byte_source.h>

#include <QFile>
#include <QtTest>

#include <zip.h>

using namespace ofd;

QVector<QPair<QString, QByteArray>> RawEntries(const Package& package)
{
    QVector<QPair<QString, QByteArray>> entries;
    for (const ZipEntry& entry : package.GetDirectory().entries)
        entries.append(
            {entry.name, package.GetSource().ReadAt(entry.headerOffset, entry.regionEnd - entry.headerOffset)});
    return entries;
}

void CompareWithReferee(const QString& path, const Package& package)
{
    int code = 0;
    zip_t* archive = zip_open(QFile::encodeName(path).constData(), ZIP_RDONLY | ZIP_CHECKCONS, &code);
    QVERIFY2(archive, qPrintable(QStringLiteral("libzip error %1").arg(code)));
    for (const QString& name : package.GetPartNames()) {
        zip_stat_t facts;
        QCOMPARE(zip_stat(archive, name.toUtf8().constData(), 0, &facts), 0);
        zip_file_t* file = zip_fopen(archive, name.toUtf8().constData(), 0);
        QVERIFY(file);
        QByteArray bytes(int(facts.size), 0);
        QCOMPARE(zip_fread(file, bytes.data(), facts.size), zip_int64_t(facts.size));
        QCOMPARE(zip_fclose(file), 0);
        QCOMPARE(bytes, package.Read(name).bytes);
    }
    zip_discard(archive);
}
