#include "saving_desk.h"

#include <ofd/package/package.h>

const QString DocumentPart = QStringLiteral("Doc_0/Document.xml");

std::unique_ptr<ofd::OfdDocument> SavingDesk::Open(const QString& path) const
{
    ofd::OpenResult result = ofd::OfdDocument::Open(path);
    if (!result)
        qFatal("%s: %s", qPrintable(path), qPrintable(result.error));
    return std::move(result.document);
}

QString SavingDesk::Saved(const OfdFile& file, const Edit& edit) const
{
    const QString path = file.Write(Path(QStringLiteral("edited.ofd")));
    const auto document = Open(path);
    edit(*document);
    const ofd::DocumentSaveResult result = document->Save();
    if (!result)
        qFatal("%s", qPrintable(result.error));
    return path;
}

QByteArray SavingDesk::SavedPart(const OfdFile& file, const QString& part, const Edit& edit) const
{
    return PartOf(Saved(file, edit), part);
}

QStringList DifferingParts(const QString& pathA, const QString& pathB)
{
    const auto a = ofd::Package::Open(pathA);
    const auto b = ofd::Package::Open(pathB);
    if (!a || !b)
        qFatal("not a package: %s or %s", qPrintable(pathA), qPrintable(pathB));
    QStringList names = a->GetPartNames() + b->GetPartNames();
    names.removeDuplicates();
    names.sort();
    QStringList differing;
    for (const QString& name : names) {
        if (!a->HasPart(name) || !b->HasPart(name) || a->Read(name).bytes != b->Read(name).bytes)
            differing.append(name);
    }
    return differing;
}
