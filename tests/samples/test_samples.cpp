#include <samples/block_font.h>
#include <samples/catalogue.h>
#include <samples/digest.h>
#include <samples/pictures.h>
#include <samples/raw_zip.h>
#include <samples/report.h>
#include <tests/support/test_main.h>

#include <QDir>
#include <QMap>
#include <QPainterPath>
#include <QRawFont>
#include <QSet>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QtTest>

#include <zip.h>

namespace {

// The ways of deviating that must be shown. Written out here, so that one that gets lost is noticed.
const char* const kExpected =
    "ofd_xml_not_first directory_entries utf8_name_flag data_descriptors local_flags_differ local_zip64_sizes "
    "non_ascii_part_names archive_comment folder_in_two_cases document_folder_other_name tag_file_empty_prefix "
    "undeclared_prefix byte_order_mark crlf_line_ends cdata_in_page_text uri_without_year uri_mixed "
    "unprefixed_children "
    "absolute_paths missing_public_res missing_annotation_list missing_page_annotations missing_signature_list "
    "media_in_other_folder path_case_differs unreachable_parts stale_document_part res_without_base_loc "
    "dangling_color_space dangling_draw_param dangling_dest_page draw_param_is_font version_1_1 order_in_document "
    "order_in_common_data order_in_doc_info order_in_page order_in_path_object order_in_text_object signature_order "
    "max_unit_id_missing max_unit_id_too_low page_area_missing page_without_area duplicate_unit_ids crop_box "
    "application_box_off_origin template_without_name outlines_flat outlines_empty bookmarks_unprefixed "
    "permissions_unknown_children objects_without_id layers_without_id surplus_deltas too_few_deltas blanks_only_text "
    "text_boundary_empty image_without_resource trans_flag_on_clips hexadecimal_colours cmyk_and_gray_spaces "
    "radial_shading fonts_without_file truetype_named_cff cff_named_ttf truetype_without_cmap image_png_alpha "
    "image_jpeg "
    "image_jbig2 annotation_readable annotation_creator_and_date_missing annotation_date_forms "
    "annotation_appearance_empty attachment_hidden attachment_id_missing attachment_format_missing "
    "attachment_size_missing "
    "attachment_date_missing attachment_size_wrong type_id_for_name_space object_ref_to_zero signed "
    "signed_digest_mismatch";

const char* const kExpectedDamage =
    "truncated empty encrypted no_ofd_xml no_doc_root no_pages doctype bomb cyclic_template dot_dot_names not_a_zip "
    "huge_delta_count";

// The name under which a tolerant reader finds the part.
QString PartName(QString name)
{
    name.replace('\\', '/');
    if (name.startsWith("./"))
        name.remove(0, 1);
    if (name.startsWith('/'))
        name.remove(0, 1);
    return name.compare("OFD.xml", Qt::CaseInsensitive) == 0 ? QStringLiteral("OFD.xml") : name;
}

// The parts of a zip by name; empty when it cannot be read, entries that cannot be inflated are left out.
QMap<QString, QByteArray> ReadZip(const QString& path)
{
    QMap<QString, QByteArray> parts;
    int error = 0;
    zip_t* archive = zip_open(QFile::encodeName(path).constData(), ZIP_RDONLY, &error);
    if (!archive)
        return parts;
    for (zip_int64_t index = 0; index < zip_get_num_entries(archive, 0); ++index) {
        zip_stat_t stat;
        zip_file_t* file = zip_fopen_index(archive, zip_uint64_t(index), 0);
        if (!file || zip_stat_index(archive, zip_uint64_t(index), 0, &stat) != 0)
            continue;
        QByteArray data(int(stat.size), '\0');
        if (zip_fread(file, data.data(), stat.size) == zip_int64_t(stat.size))
            parts.insert(PartName(QString::fromUtf8(stat.name)), data);
        zip_fclose(file);
    }
    zip_discard(archive);
    return parts;
}

// Documents whose names or parts only a reader that forgives much understands.
bool IsForTolerantReaders(const QString& sample)
{
    static const QStringList names = {"doubled_slashes_in_names", "gb18030_called_utf8", "zero_bytes_behind",
                                      "wide_without_mark"};
    return names.contains(QString(sample).remove("deviations/"));
}

bool IsWellFormed(QByteArray xml)
{
    // An empty prefix is a name in plain XML; Qt's reader refuses it even without namespaces. Two samples show it.
    xml.replace("<:", "<").replace("</:", "</").replace("xmlns:=", "xmlns=");
    QXmlStreamReader reader(xml);
    reader.setNamespaceProcessing(false);
    while (!reader.atEnd())
        reader.readNext();
    return !reader.hasError();
}

QStringList NamesIn(const QString& folder)
{
    QStringList names;
    for (const samples::Sample& sample : samples::Samples())
        if (sample.name.startsWith(folder + '/'))
            names.append(sample.name.section('/', -1));
    return names;
}

} // namespace

class TestSamples : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everyDeviationAndDamageIsThere();
    void everyDocumentIsAReadablePackageOfWellFormedParts_data();
    void everyDocumentIsAReadablePackageOfWellFormedParts();
    void strictReadersRefuseWhatIsForTolerantOnes();
    void damagedFilesThatAreNoPackageAreNone();
    void theIndexNamesEveryFileOfItsFolder();
    void writingTwiceGivesTheSameBytes();
    void aReportHasThePagesEntriesBookmarksAndPadAskedFor();
    void theRawZipWriterIsReadByALibrary();
    void theDigestIsThatOfThePublishedExample();
    void digestsMatchInTheSignedSampleAndNotInTheAlteredOne();
    void blockFontsLoadAndMapTheirLetters();

private:
    QString Path(const QString& name) const { return folder.filePath(name + ".ofd"); }

    QTemporaryDir folder;
};

void TestSamples::initTestCase()
{
    QVERIFY(folder.isValid());
    QCOMPARE(samples::WriteSamples(folder.path(), {"tour", "invoice", "letter", "deviations", "features", "damaged"}),
             QString());
}

void TestSamples::everyDeviationAndDamageIsThere()
{
    const QStringList deviations = NamesIn("deviations"), damages = NamesIn("damaged");
    for (const QString& name : QString(kExpected).split(' '))
        QVERIFY2(deviations.contains(name), qPrintable(name));
    for (const QString& name : QString(kExpectedDamage).split(' '))
        QVERIFY2(damages.contains(name), qPrintable(name));
    QCOMPARE(QSet<QString>(deviations.begin(), deviations.end()).size(), deviations.size());
}

void TestSamples::everyDocumentIsAReadablePackageOfWellFormedParts_data()
{
    QTest::addColumn<QString>("name");
    for (const samples::Sample& sample : samples::Samples())
        if (!sample.name.startsWith("damaged/") && sample.name != "report" && !IsForTolerantReaders(sample.name))
            QTest::newRow(qPrintable(sample.name)) << sample.name;
}

void TestSamples::strictReadersRefuseWhatIsForTolerantOnes()
{
    const QMap<QString, QByteArray> doubled = ReadZip(Path("deviations/doubled_slashes_in_names"));
    QVERIFY(!doubled.isEmpty());
    QVERIFY(!doubled.contains("Doc_0/Document.xml"));
    const QMap<QString, QByteArray> chinese = ReadZip(Path("deviations/gb18030_called_utf8"));
    QVERIFY(chinese.contains("Doc_0/Pages/Page_0/Content.xml"));
    QVERIFY(!IsWellFormed(chinese.value("Doc_0/Pages/Page_0/Content.xml")));
    for (const char* name : {"zero_bytes_behind", "wide_without_mark"}) {
        const QMap<QString, QByteArray> parts = ReadZip(Path(QStringLiteral("deviations/") + name));
        QVERIFY2(parts.value("Doc_0/Document.xml").contains('\0'), name);
    }
}

void TestSamples::everyDocumentIsAReadablePackageOfWellFormedParts()
{
    QFETCH(QString, name);
    const QMap<QString, QByteArray> parts = ReadZip(Path(name));
    QVERIFY(parts.size() >= 8);
    const QByteArray entry = parts.value("OFD.xml");
    const int at = entry.indexOf("DocRoot>") + 8;
    QString root = QString::fromUtf8(entry.mid(at, entry.indexOf('<', at) - at));
    if (root.startsWith('/'))
        root.remove(0, 1);
    QVERIFY2(parts.contains(root), qPrintable(root));
    QVERIFY(parts.value(root).contains("Page "));
    for (auto part = parts.cbegin(); part != parts.cend(); ++part)
        if (part.key().endsWith(".xml"))
            QVERIFY2(IsWellFormed(part.value()), qPrintable(part.key()));
}

void TestSamples::damagedFilesThatAreNoPackageAreNone()
{
    for (const char* name : {"truncated", "truncated_tail", "empty", "not_a_zip", "other_format"})
        QVERIFY2(ReadZip(Path(QStringLiteral("damaged/") + name)).isEmpty(), name);
    QVERIFY(!ReadZip(Path("damaged/no_ofd_xml")).contains("OFD.xml"));
    QVERIFY(ReadZip(Path("damaged/dot_dot_names")).contains("../../outside.txt"));
    QVERIFY(ReadZip(Path("damaged/bomb")).value("Doc_0/Pages/Page_1/Content.xml").size() > (64 << 20));
}

void TestSamples::theIndexNamesEveryFileOfItsFolder()
{
    for (const char* name : {"deviations", "damaged"}) {
        QFile file(folder.filePath(QString(name) + "/index.tsv"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QStringList listed;
        for (const QString& line : QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts)) {
            const QStringList columns = line.split('\t');
            QCOMPARE(columns.size(), 4);
            listed.append(columns.first() + ".ofd");
        }
        listed.sort();
        QStringList files = QDir(folder.filePath(name)).entryList({"*.ofd"}, QDir::Files);
        files.sort();
        QCOMPARE(files, listed);
    }
}

void TestSamples::writingTwiceGivesTheSameBytes()
{
    QTemporaryDir again;
    for (const char* name : {"tour", "deviations/data_descriptors", "damaged/bomb"}) {
        QCOMPARE(samples::WriteSamples(again.path(), {name}), QString());
        QFile first(Path(name)), second(again.filePath(QString(name) + ".ofd"));
        QVERIFY(first.open(QIODevice::ReadOnly) && second.open(QIODevice::ReadOnly));
        QVERIFY2(first.readAll() == second.readAll(), name);
    }
    QVERIFY(!samples::WriteSamples(again.path(), {"no such sample"}).isEmpty());
}

void TestSamples::aReportHasThePagesEntriesBookmarksAndPadAskedFor()
{
    samples::ReportSetup setup;
    setup.pages = 12;
    setup.entries = 300;
    setup.bookmarks = 7;
    setup.padBytes = 100000;
    const QString path = folder.filePath("small-report.ofd");
    QVERIFY(samples::MakeReport(setup).Save(path));
    const QMap<QString, QByteArray> parts = ReadZip(path);
    const QByteArray document = parts.value("Doc_0/Document.xml");
    QCOMPARE(document.count("<ofd:Page "), 12);
    QCOMPARE(document.count("<ofd:OutlineElem "), 300);
    QCOMPARE(document.count("<ofd:Bookmark "), 7);
    QCOMPARE(parts.value("Doc_0/Pages/Page_11/Content.xml").count("<ofd:TextObject "), 50);
    QVERIFY(parts.value("Doc_0/Pages/Page_11/Content.xml")
                .contains(">Page 12 line 49 of the report with some words in it<"));
    QCOMPARE(parts.value("Doc_0/Attachs/pad.bin").size(), 100000);
    QVERIFY(QFileInfo(path).size() > 100000);
}

void TestSamples::theRawZipWriterIsReadByALibrary()
{
    samples::Package package;
    package.Add("a.txt", QByteArray("some text ").repeated(100));
    package.Add("b/c.bin", QByteArray::fromHex("00ff00ff"), true);
    const QString path = folder.filePath("raw.zip");
    QVERIFY(samples::WriteFile(path, samples::PackedBytes(package)));
    const QMap<QString, QByteArray> parts = ReadZip(path);
    QCOMPARE(parts.size(), 2);
    QCOMPARE(parts.value("a.txt"), QByteArray("some text ").repeated(100));
    QCOMPARE(parts.value("b/c.bin"), QByteArray::fromHex("00ff00ff"));
}

void TestSamples::theDigestIsThatOfThePublishedExample()
{
    QCOMPARE(samples::Sm3("abc").toHex(),
             QByteArray("66c7f0f462eeedd9d1f2d46bdc10e4e24167c4875cf2f7a2297da02b8f4ba8e0"));
    QCOMPARE(samples::Sm3(QByteArray("abcd").repeated(16)).toHex(),
             QByteArray("debe9ff92275b8a138604889c18e5a4d6fdb70e5387e5765293dcba39c0c5732"));
}

void TestSamples::digestsMatchInTheSignedSampleAndNotInTheAlteredOne()
{
    for (const char* name : {"signed", "signed_digest_mismatch"}) {
        const QMap<QString, QByteArray> parts = ReadZip(Path(QStringLiteral("deviations/") + name));
        QXmlStreamReader reader(parts.value("Doc_0/Signs/Sign_0/Signature.xml"));
        QStringList wrong;
        QString covered;
        int count = 0;
        while (!reader.atEnd()) {
            reader.readNext();
            if (reader.isStartElement() && reader.name() == QLatin1String("Reference"))
                covered = reader.attributes().value("FileRef").mid(1).toString();
            if (!reader.isStartElement() || reader.name() != QLatin1String("CheckValue"))
                continue;
            ++count;
            if (QByteArray::fromBase64(reader.readElementText().toLatin1()) != samples::Sm3(parts.value(covered)))
                wrong.append(covered);
        }
        QCOMPARE(count, parts.size() - 4); // all but the four parts of the signature itself
        QCOMPARE(wrong, qstrcmp(name, "signed") == 0 ? QStringList() : QStringList{"Doc_0/Pages/Page_1/Content.xml"});
    }
}

void TestSamples::blockFontsLoadAndMapTheirLetters()
{
    const QRawFont font(samples::BlockTrueType(), 100);
    QVERIFY(font.isValid());
    const QVector<quint32> glyphs = font.glyphIndexesForString("B2");
    QCOMPARE(int(glyphs[0]), samples::BlockGlyph('B'));
    QCOMPARE(int(glyphs[1]), samples::BlockGlyph('2'));
    QCOMPARE(font.pathForGlyph(glyphs[0]).boundingRect(), QRectF(0, -70, 50, 70));
    const QRawFont compact(samples::BlockCff(), 100);
    QVERIFY(compact.isValid());
    QCOMPARE(compact.pathForGlyph(glyphs[0]).boundingRect(), QRectF(0, -70, 50, 70));
}

TETO_TEST_MAIN(TestSamples)
#include "test_samples.moc"
