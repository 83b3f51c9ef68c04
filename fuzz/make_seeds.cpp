// make_seeds SAMPLES CORPUS: makes the seeds of every fuzz target below CORPUS from the sample documents below SAMPLES:
// whole files, and their parts unpacked for the targets that read one thing alone. A seed's name is its hash, so that
// equal ones are one.
#include "fuzz_support.h"

#include <ofd/package/package.h>

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QSet>

#include <cstdio>

namespace {

constexpr int LargestSeed = 100'000; // longer ones only slow the targets down
constexpr int LargestXmlSeed = 20'000;
constexpr int MostWords = 2000;
constexpr int MostPages = 4; // of one document; the pages of a long report are all alike

class SeedWriter
{
public:
    explicit SeedWriter(const QString& corpus)
        : corpus(corpus)
    {
    }

    void Add(const char* target, const QByteArray& bytes)
    {
        if (bytes.isEmpty() || bytes.size() > LargestSeed)
            return;
        const QString folder = corpus + QLatin1Char('/') + QLatin1String(target);
        QDir().mkpath(folder);
        const QByteArray name = QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex();
        QFile file(folder + QLatin1Char('/') + QString::fromLatin1(name));
        if (!file.exists() && file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size())
            ++count;
    }

    int GetCount() const { return count; }

    // Names of elements and attributes, and words of values, so that changes are made of what readers look for.
    void AddWords(const QByteArray& xml)
    {
        static const QRegularExpression word(QStringLiteral("[</ \"]((?:ofd:)?[A-Za-z][A-Za-z-]{1,30})[ >=\"/]"));
        QRegularExpressionMatchIterator matches = word.globalMatch(QString::fromUtf8(xml));
        while (words.size() < MostWords && matches.hasNext())
            words.insert(matches.next().captured(1));
    }
    bool WriteWords() const
    {
        QFile file(corpus + QStringLiteral("/words.dict"));
        if (!file.open(QIODevice::WriteOnly))
            return false;
        for (const QString& word : words)
            file.write('"' + word.toUtf8() + "\"\n");
        return true;
    }

private:
    const QString corpus;
    QSet<QString> words;
    int count = 0;
};

bool IsFont(const QByteArray& bytes)
{
    return bytes.startsWith(QByteArray::fromHex("00010000")) || bytes.startsWith("OTTO") || bytes.startsWith("true") ||
           bytes.startsWith("%!") || bytes.startsWith("ttcf") || bytes.startsWith(QByteArray::fromHex("8001")) ||
           bytes.startsWith(QByteArray::fromHex("010004"));
}

// The texts that the expression captures in a part, each a seed.
void AddCaptures(SeedWriter& seeds, const char* target, const QByteArray& xml, const char* expression)
{
    static constexpr int Most = 40;
    QRegularExpressionMatchIterator matches =
        QRegularExpression(QString::fromLatin1(expression)).globalMatch(QString::fromUtf8(xml));
    for (int i = 0; i < Most && matches.hasNext(); ++i)
        seeds.Add(target, matches.next().captured(1).toUtf8());
}

void AddXml(SeedWriter& seeds, const QString& name, const QByteArray& bytes)
{
    if (bytes.size() > LargestXmlSeed)
        return;
    seeds.Add("fuzz_xml", bytes);
    seeds.AddWords(bytes);
    if (bytes.contains(":Page ") || bytes.contains("<Page"))
        seeds.Add("fuzz_page", bytes);
    AddCaptures(seeds, "fuzz_path_data", bytes, "AbbreviatedData>([^<]*)<");
    AddCaptures(seeds, "fuzz_values", bytes, "=\"([^\"]*)\"");
    // The part of the plain document that this one could stand for, by its file name.
    const QStringList& parts = fuzz::PartNames();
    for (int i = 0; i < parts.size(); ++i) {
        if (QFileInfo(parts.at(i)).fileName() == QFileInfo(name).fileName())
            seeds.Add("fuzz_part", QByteArray(1, char(i)) + bytes);
    }
}

void AddPart(SeedWriter& seeds, const QString& name, const QByteArray& bytes)
{
    if (name.endsWith(QLatin1String(".xml"), Qt::CaseInsensitive))
        AddXml(seeds, name, bytes);
    else if (IsFont(bytes))
        seeds.Add("fuzz_font", bytes);
    else if (name.endsWith(QLatin1String(".esl")) || name.endsWith(QLatin1String("SignedValue.dat")))
        seeds.Add("fuzz_seal", bytes);
    else if (name.endsWith(QLatin1String(".icc")))
        seeds.Add("fuzz_profile", bytes);
    else if (bytes.startsWith("\x97\x4a\x42\x32"))
        seeds.Add("fuzz_jbig2", bytes.mid(8));
    else if (bytes.startsWith('\x30')) // a sequence, as seals and signed values are
        seeds.Add("fuzz_seal", bytes);
    else if (bytes.mid(36, 4) == "acsp")
        seeds.Add("fuzz_profile", bytes);
    else
        seeds.Add("fuzz_image", bytes);
}

void AddDocument(SeedWriter& seeds, const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QByteArray bytes = file.readAll();
    seeds.Add("fuzz_package", bytes);
    seeds.Add("fuzz_document", bytes);
    const std::unique_ptr<ofd::Package> package = ofd::Package::OpenBytes(bytes);
    if (!package)
        return;
    int pages = 0;
    for (const QString& name : package->GetPartNames()) {
        if (name.contains(QLatin1String("/Pages/")) && ++pages > MostPages)
            continue;
        AddPart(seeds, name, package->Read(name).bytes);
    }
}

void AddTexts(SeedWriter& seeds)
{
    for (const char* json : {"{\"a\":[1,{\"b\":\"c\"}]}", "[true,false,null,-1.5e3,\"\\u4e2d\\n\"]", "{}"})
        seeds.Add("fuzz_json", json);
    seeds.Add("fuzz_text_form", "page 210 297\nbookmark \"Name\" index=0\n");
    seeds.Add("fuzz_text_form", "attachment a xml 60106 9\n"); // of 60 MB
    seeds.Add("fuzz_path_data", "M 0 0 L 10 10 Q 1 1 2 2 B 1 1 2 2 3 3 A 5 5 0 0 1 8 8 C");
    seeds.Add("fuzz_values", "g 3 1.5 2 g 2 -1");
    seeds.Add("fuzz_values", "../Res/./font.ttf");
}

} // namespace

int main(int argc, char** argv)
{
    fuzz::StartApplication(&argc, argv);
    if (argc != 3) {
        std::fprintf(stderr, "usage: make_seeds SAMPLES CORPUS\n");
        return 2;
    }
    SeedWriter seeds(QString::fromLocal8Bit(argv[2]));
    AddTexts(seeds);
    QDirIterator files(QString::fromLocal8Bit(argv[1]), {QStringLiteral("*.ofd")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext())
        AddDocument(seeds, files.next());
    std::printf("%d new seeds\n", seeds.GetCount());
    return seeds.WriteWords() ? 0 : 1;
}
