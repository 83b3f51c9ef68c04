#include "catalogue.h"

#include "damaged.h"
#include "deviations.h"
#include "features.h"
#include "hostile.h"
#include "invoice.h"
#include "report.h"
#include "tour.h"

#include <QDir>
#include <QMap>

namespace samples {

namespace {

Sample Ordinary(const QString& name, const QString& shows, Package (*make)())
{
    return {name, "Documents", shows, "open, show, edit and save it",
            [make](const QString& path) { return make().Save(path); }};
}

Sample FromDeviation(const Deviation& deviation, const QString& folder = QStringLiteral("deviations/"))
{
    Sample sample{folder + deviation.name, deviation.group, deviation.shows, deviation.mustDo, {}};
    sample.write = [deviation](const QString& path) {
        Package package = PlainDocument(deviation.name, deviation.shows);
        if (deviation.change)
            deviation.change(package);
        return deviation.pack ? WriteFile(path, deviation.pack(package)) : package.Save(path);
    };
    return sample;
}

Sample FromDamage(const Damage& damage)
{
    Sample sample{QStringLiteral("damaged/") + damage.name, "Damaged", damage.shows, damage.mustDo, {}};
    sample.write = [damage](const QString& path) { return WriteFile(path, damage.make()); };
    return sample;
}

std::vector<Sample> MakeList()
{
    std::vector<Sample> list;
    list.push_back(Ordinary("tour", "nine pages, one feature after another", MakeTour));
    list.push_back(Ordinary("invoice", "an electronic invoice with tags, a hidden data file and a seal", MakeInvoice));
    list.push_back(Ordinary("letter", "an office's notice of two pages", MakeLetter));
    list.push_back(
        Ordinary("report", "1,000 pages of 50 lines and 3,000 outline entries", [] { return MakeReport({}); }));
    for (const auto& group : {ContainerDeviations(), XmlDeviations(), ReferenceDeviations(), DocumentDeviations(),
                              ContentDeviations(), ListDeviations(), SignatureDeviations(), ProducerDeviations()})
        for (const Deviation& deviation : group)
            list.push_back(FromDeviation(deviation));
    for (const auto& group :
         {ImageFeatures(), SealFeatures(), ColourFeatures(), FontFeatures(), PatternFeatures(), ShadingFeatures(),
          ClipFeatures(), TransparencyFeatures(), TextFeatures(), LinkFeatures(), SharingFeatures()})
        for (const Deviation& feature : group)
            list.push_back(FromDeviation(feature, QStringLiteral("features/")));
    for (const Damage& damage : Damages())
        list.push_back(FromDamage(damage));
    for (const Damage& damage : HostileFiles())
        list.push_back(FromDamage(damage));
    return list;
}

bool IsWanted(const Sample& sample, const QStringList& names)
{
    return names.isEmpty() || names.contains(sample.name) || names.contains(sample.name.section('/', 0, 0));
}

QString Line(const Sample& sample)
{
    return QStringList{sample.name.section('/', -1), sample.group, sample.shows, sample.mustDo}.join('\t') + '\n';
}

} // namespace

const std::vector<Sample>& Samples()
{
    static const std::vector<Sample> list = MakeList();
    return list;
}

QString WriteSamples(const QString& folder, const QStringList& names)
{
    QMap<QString, QString> indexes;
    int written = 0;
    for (const Sample& sample : Samples()) {
        if (sample.name.contains('/'))
            indexes[sample.name.section('/', 0, 0)] += Line(sample);
        if (!IsWanted(sample, names))
            continue;
        const QString path = QDir(folder).filePath(sample.name + ".ofd");
        if (!sample.write(path))
            return QStringLiteral("cannot write %1").arg(path);
        ++written;
    }
    for (auto index = indexes.cbegin(); index != indexes.cend(); ++index) {
        const QString path = QDir(folder).filePath(index.key() + "/index.tsv");
        if ((names.isEmpty() || names.contains(index.key())) && !WriteFile(path, index.value().toUtf8()))
            return QStringLiteral("cannot write %1").arg(path);
    }
    return written > 0 ? QString() : QStringLiteral("no sample of that name");
}

} // namespace samples
