#include "edit_kinds.h"
#include "saving_desk.h"

#include <ofd/package/package.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>
#include <tests/ofd/document/sample_files.h>
#include <tests/support/test_main.h>

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QtTest>

namespace {

QString SchemaFolder()
{
    return qEnvironmentVariable("TETO_SCHEMAS");
}

// The schema of a part; empty for parts of a kind that no edit writes.
QString SchemaOf(const QByteArray& bytes)
{
    const struct
    {
        const char* root;
        const char* schema;
    } rows[] = {
        {"OFD", "OFD"},
        {"Document", "Document"},
        {"Annotations", "Annotations"},
        {"PageAnnot", "Annotation"},
        {"Attachments", "Attachments"},
        {"CustomTags", "CustomTags"},
    };
    const auto xml = ofd::XmlPart::Parse(QString(), bytes);
    for (const auto& row : rows) {
        if (xml && ofd::LocalName(xml->GetRoot()) == row.root)
            return SchemaFolder() + QLatin1Char('/') + QLatin1String(row.schema) + QStringLiteral(".xsd");
    }
    return QString();
}

// What documents in the wild write and the schemas do not know: times in dates, numbers as identifiers of attachments,
// and kinds of custom tags.
bool IsUsual(const QString& fault)
{
    static const QRegularExpression usual(
        QStringLiteral("'(LastModDate)': '.*'xs:date'|\\}Attachment', attribute 'ID': '[0-9]+' .*'xs:ID'|'TypeID'"));
    return fault.contains(usual);
}

// What xmllint says is wrong with a part; nothing of a part that has no schema.
QStringList MisfitsOf(const QByteArray& bytes)
{
    const QString schema = SchemaOf(bytes);
    if (schema.isEmpty())
        return {};
    QProcess xmllint;
    xmllint.start(QStringLiteral("xmllint"),
                  {QStringLiteral("--noout"), QStringLiteral("--schema"), schema, QStringLiteral("-")});
    xmllint.write(bytes);
    xmllint.closeWriteChannel();
    constexpr int valid = 0;
    constexpr int invalid = 3;
    if (!xmllint.waitForFinished() || (xmllint.exitCode() != valid && xmllint.exitCode() != invalid))
        return {QStringLiteral("xmllint failed: ") + QString::fromUtf8(xmllint.readAllStandardError())};
    QStringList misfits;
    for (const QString& line : QString::fromUtf8(xmllint.readAllStandardError()).split(QLatin1Char('\n'))) {
        if (line.contains(QStringLiteral(" error : ")) && !IsUsual(line))
            misfits.append(line.section(QLatin1Char(':'), 2)); // without the number of the line, which edits move
    }
    return misfits;
}

} // namespace

// What edits leave is valid where it was. The schemas of the format are not part of this project: who has them names
// their folder in TETO_SCHEMAS.
class TestSaveSchemas : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void aPartThatDoesNotFitIsFound();
    void editedPartsFitTheSchemas_data();
    void editedPartsFitTheSchemas();

private:
    SavingDesk desk;
};

void TestSaveSchemas::initTestCase()
{
    if (!QFile::exists(SchemaFolder() + QStringLiteral("/Document.xsd")))
        QSKIP("TETO_SCHEMAS names no folder with schemas");
    if (QStandardPaths::findExecutable(QStringLiteral("xmllint")).isEmpty())
        QSKIP("xmllint is not installed");
}

void TestSaveSchemas::aPartThatDoesNotFitIsFound()
{
    const QStringList misfits = MisfitsOf(Element("Attachments", "<ofd:Attachment ID=\"a\"/>"));
    QVERIFY(!misfits.isEmpty());
    QVERIFY2(misfits.join('|').contains(QStringLiteral("'Name' is required")), qPrintable(misfits.join('|')));
}

void TestSaveSchemas::editedPartsFitTheSchemas_data()
{
    QTest::addColumn<QString>("original");
    for (const char* name : {"tour", "letter", "invoice"})
        QTest::newRow(name) << SamplePath(QString::fromLatin1(name));
    for (const SampleFile& sample : SamplesOf(QStringLiteral("deviations")))
        QTest::newRow(qPrintable(sample.name)) << sample.path;
}

void TestSaveSchemas::editedPartsFitTheSchemas()
{
    QFETCH(const QString, original);
    const auto before = ofd::Package::Open(original);
    QVERIFY(before);
    int fitted = 0;
    for (const EditKind& kind : EditKinds()) {
        const QString path = desk.Path(QStringLiteral("edited.ofd"));
        QFile::remove(path);
        QVERIFY(QFile::copy(original, path));
        bool done = true;
        const auto document = desk.Open(path);
        kind.apply(*document, done);
        if (!done)
            continue;
        QVERIFY2(document->Save(), kind.name);
        const auto after = ofd::Package::Open(path);
        for (const QString& name : DifferingParts(original, path)) {
            if (!after->HasPart(name))
                continue;
            QStringList misfits = MisfitsOf(after->Read(name).bytes);
            const QStringList known = before->HasPart(name) ? MisfitsOf(before->Read(name).bytes) : QStringList();
            for (const QString& misfit : known)
                misfits.removeOne(misfit);
            QVERIFY2(misfits.isEmpty(),
                     qPrintable(QLatin1String(kind.name) + QStringLiteral(": ") + misfits.join(QLatin1Char('|'))));
            fitted += !SchemaOf(after->Read(name).bytes).isEmpty();
        }
    }
    QVERIFY(fitted >= 4);
}

TETO_TEST_MAIN(TestSaveSchemas)

#include "test_save_schemas.moc"
