#include "seal_store.h"

#include "image_decoder.h"

#include <ofd/model/document_store.h>
#include <ofd/model/problem_log.h>
#include <ofd/package/limits.h>
#include <ofd/package/package.h>
#include <ofd/package/xml_part.h>
#include <ofd/parse/document_reader.h>

#include <QCoreApplication>

namespace ofd {

namespace {

constexpr int CachedKilobytes = 128 << 10;
constexpr int DocumentWeight = 8; // a nested document's caches over its packed bytes

std::optional<SealPicture> PictureIn(const Package& package, const QString& part)
{
    if (part.isEmpty())
        return std::nullopt;
    if (package.GetPartSize(part) > limits::MaxSealBytes) {
        ReportProblem(ProblemKind::Limit, part,
                      QCoreApplication::translate("OfdDocument", "The seal is too large to be shown."));
        return std::nullopt;
    }
    const PartData data = package.Read(part);
    return data.error ? std::nullopt : FindSealPicture(data.bytes);
}

} // namespace

SealStore::SealStore(int nesting)
    : nesting(nesting)
    , faces(CachedKilobytes)
{
}

SealStore::~SealStore() = default;

QVector<Stamp> SealStore::GetStamps(const DocumentStore& store, int pageIndex)
{
    const DocumentStructure& structure = store.GetStructure();
    if (nesting >= limits::MaxNestedPackages)
        return {};
    const std::lock_guard<std::mutex> lock(mutex);
    if (!areStampsRead) {
        const ProblemScope scope(store.GetPackage()->GetEntryPoint());
        for (const Stamp& stamp : ReadStamps(*store.GetPackage(), structure.documentFolder)) {
            const int page = structure.pageIndexById.value(stamp.pageId, -1);
            if (page < 0) {
                ReportProblem(ProblemKind::DanglingReference, stamp.part,
                              QCoreApplication::translate(
                                  "OfdDocument", "A seal is to be painted on the page %1, which does not exist.")
                                  .arg(quint32(stamp.pageId)));
                continue;
            }
            QVector<Stamp>& onPage = stampsByPage[page];
            if (onPage.size() < limits::MaxStampsOnPage)
                onPage.append(stamp);
            else
                ReportProblem(ProblemKind::Limit,
                              QCoreApplication::translate("OfdDocument", "More than %1 seals are on one page.")
                                  .arg(onPage.size()));
        }
        areStampsRead = true;
    }
    return stampsByPage.value(pageIndex);
}

SealFace SealStore::GetFace(const DocumentStore& store, const Stamp& stamp)
{
    const QString key = stamp.sealPart + QLatin1Char('\n') + stamp.signedValuePart;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        if (const SealFace* known = faces.object(key))
            return *known;
    }
    const SealFace face = ReadFace(store, stamp);
    qint64 weight = face.image.sizeInBytes() / 1024 + 1;
    if (face.document)
        weight += limits::MaxSealBytes / 1024 / DocumentWeight;
    const std::lock_guard<std::mutex> lock(mutex);
    faces.insert(key, new SealFace(face), int(weight));
    return face;
}

// The seal itself, else the copy of it that the signature's value holds.
SealFace SealStore::ReadFace(const DocumentStore& store, const Stamp& stamp) const
{
    const std::shared_ptr<const Package> package = store.GetPackage();
    for (const QString& part : {stamp.sealPart, stamp.signedValuePart}) {
        const std::optional<SealPicture> picture = PictureIn(*package, part);
        if (!picture)
            continue;
        const SealFace face = FaceOf(*picture);
        if (!face.image.isNull() || face.document)
            return face;
    }
    ReportProblem(ProblemKind::BadImage, stamp.sealPart.isEmpty() ? stamp.signedValuePart : stamp.sealPart,
                  QCoreApplication::translate("OfdDocument", "The seal has no picture that can be read."));
    return SealFace();
}

SealFace SealStore::FaceOf(const SealPicture& picture) const
{
    SealFace face;
    const bool isArchive = picture.bytes.startsWith("PK");
    if (!isArchive) {
        face.image = DecodeImage(picture.bytes);
        return face;
    }
    ProblemLog ofSeal; // its parts are not those of the document that is read
    const ProblemScope scope(ofSeal, QString());
    std::shared_ptr<Package> package = Package::OpenBytes(picture.bytes);
    DocumentParts parts = package ? ReadDocument(*package) : DocumentParts();
    if (parts.document)
        face.document =
            std::make_shared<DocumentStore>(std::move(package), std::move(parts.structure), nullptr, nesting + 1);
    return face;
}

} // namespace ofd
