#include "locations.h"

#include "entry_names.h"
#include "package.h"

#include <ofd/model/problem_log.h>

#include <QCoreApplication>
#include <QStringList>
#include <QUrl>

namespace ofd {

std::optional<QString> NormaliseLocation(const QString& reference, const QString& folder)
{
    QString path = reference.trimmed();
    path.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (path.isEmpty())
        return std::nullopt;
    if (!path.startsWith(QLatin1Char('/')))
        path.prepend(folder);
    QStringList steps;
    const QStringList pieces = path.split(QLatin1Char('/'));
    for (const QString& piece : pieces) {
        if (piece.isEmpty() || piece == QLatin1String("."))
            continue;
        if (piece != QLatin1String("..")) {
            steps.append(piece);
        } else if (steps.isEmpty()) {
            return std::nullopt;
        } else {
            steps.removeLast();
        }
    }
    if (steps.isEmpty())
        return std::nullopt;
    return steps.join(QLatin1Char('/'));
}

namespace {

// The folder, with its '/', that references in the context are relative to; nothing when BaseLoc climbs out.
std::optional<QString> BaseFolder(const LocationContext& context)
{
    const QString folder = FolderOf(context.holderPart);
    if (context.baseLoc.trimmed().isEmpty())
        return folder;
    const QString base = context.baseLoc.trimmed();
    if (base == QLatin1String("/") || base == QLatin1String("\\"))
        return QString();
    // "." and ".." that end at the root are valid folders although they are no valid parts.
    const std::optional<QString> inside = NormaliseLocation(base + QLatin1String("/x"), folder);
    if (!inside)
        return std::nullopt;
    return FolderOf(*inside);
}

QString WithoutLeadingSlashes(const QString& reference)
{
    QString bare = reference.trimmed();
    bare.replace(QLatin1Char('\\'), QLatin1Char('/'));
    int begin = 0;
    while (begin < bare.size() && bare.at(begin) == QLatin1Char('/'))
        ++begin;
    return bare.mid(begin);
}

void TellOfReference(const QString& reference, const ResolvedLocation& found)
{
    if (found.step == LocationStep::Exact)
        return;
    const QString named = reference.trimmed();
    if (!found) {
        ReportProblem(ProblemKind::MissingPart,
                      QCoreApplication::translate("OfdPackage", "\"%1\" leads to no part.").arg(named));
        return;
    }
    // One that is right but for where it begins is told as it should be.
    const QString read = found.part == named ? QLatin1Char('/') + found.part : found.part;
    ReportProblem(
        ProblemKind::MisspeltReference,
        QCoreApplication::translate("OfdPackage", "\"%1\" leads nowhere; \"%2\" was read instead.").arg(named, read));
}

ResolvedLocation FindLocation(const Package& package, const QString& reference, const LocationContext& context)
{
    ResolvedLocation result;
    auto hit = [&result](const QString& part, LocationStep step) {
        result.part = part;
        result.step = step;
        return result;
    };
    const std::optional<QString> base = BaseFolder(context);
    const std::optional<QString> exact = base ? NormaliseLocation(reference, *base) : std::nullopt;
    if (exact) {
        result.exactName = *exact;
        if (package.HasPart(*exact))
            return hit(*exact, LocationStep::Exact);
        const QString folded = package.FindIgnoringCase(*exact);
        if (!folded.isEmpty())
            return hit(folded, LocationStep::IgnoringCase);
    }
    const QString bare = WithoutLeadingSlashes(reference);
    const std::optional<QString> fromRoot = NormaliseLocation(bare, QString());
    if (fromRoot && package.HasPart(*fromRoot))
        return hit(*fromRoot, LocationStep::FromRoot);
    const std::optional<QString> fromDocument = NormaliseLocation(bare, context.documentFolder);
    if (fromDocument && package.HasPart(*fromDocument))
        return hit(*fromDocument, LocationStep::FromDocumentFolder);
    const bool isValid = exact || fromRoot || fromDocument;
    if (context.isMedia && isValid) {
        const QString found = package.FindByFileName(context.documentFolder, FileNameOf(bare));
        if (!found.isEmpty())
            return hit(found, LocationStep::ByFileName);
    }
    return result;
}

} // namespace

ResolvedLocation ResolveLocation(const Package& package, const QString& reference, const LocationContext& context)
{
    ResolvedLocation result = FindLocation(package, reference, context);
    if (!result && reference.contains(QLatin1Char('%'))) {
        const QString plain = QUrl::fromPercentEncoding(reference.toUtf8());
        if (const ResolvedLocation found = FindLocation(package, plain, context)) {
            result.part = found.part;
            result.step = LocationStep::Unescaped;
        }
    }
    TellOfReference(reference, result);
    return result;
}

QString MakeReference(const QString& part, const QString& holderPart, bool isAbsolute)
{
    if (isAbsolute)
        return QLatin1Char('/') + part;
    const QStringList to = part.split(QLatin1Char('/'));
    const QStringList from = holderPart.split(QLatin1Char('/'));
    int common = 0;
    while (common < to.size() - 1 && common < from.size() - 1 && to.at(common) == from.at(common))
        ++common;
    QStringList steps;
    for (int i = common; i < from.size() - 1; ++i)
        steps.append(QStringLiteral(".."));
    steps.append(to.mid(common));
    return steps.join(QLatin1Char('/'));
}

} // namespace ofd
