#include "problem_log.h"

#include <QLoggingCategory>

namespace ofd {

namespace {

Q_LOGGING_CATEGORY(problemLog, "tetobaisfla.ofd")

thread_local ProblemScope* innermost = nullptr; // not owned

// One row a kind, in the order of the enumeration.
struct KindRow
{
    ProblemKind kind;
    const char* word;
    ProblemSeverity severity;
};

constexpr KindRow rows[] = {
    {ProblemKind::MissingPart, "missing-part", ProblemSeverity::Problem},
    {ProblemKind::MisspeltReference, "misspelt-reference", ProblemSeverity::Problem},
    {ProblemKind::UnreadablePart, "unreadable-part", ProblemSeverity::Problem},
    {ProblemKind::WrongChecksum, "wrong-checksum", ProblemSeverity::Problem},
    {ProblemKind::BadXml, "bad-xml", ProblemSeverity::Problem},
    {ProblemKind::DanglingReference, "dangling-reference", ProblemSeverity::Problem},
    {ProblemKind::DuplicateIdentifier, "duplicate-identifier", ProblemSeverity::Problem},
    {ProblemKind::BadValue, "bad-value", ProblemSeverity::Problem},
    {ProblemKind::FontSubstituted, "font-substituted", ProblemSeverity::Info},
    {ProblemKind::BadFont, "bad-font", ProblemSeverity::Problem},
    {ProblemKind::BadImage, "bad-image", ProblemSeverity::Problem},
    {ProblemKind::Unsupported, "unsupported", ProblemSeverity::Problem},
    {ProblemKind::Cycle, "cycle", ProblemSeverity::Problem},
    {ProblemKind::Limit, "limit", ProblemSeverity::Problem},
    {ProblemKind::PageFailed, "page-failed", ProblemSeverity::Problem},
    {ProblemKind::VersionShown, "version-shown", ProblemSeverity::Info},
};

const KindRow& RowOf(ProblemKind kind)
{
    return rows[int(kind)];
}

void WriteToProgramLog(const Problem& problem)
{
    const QByteArray where = problem.part.isEmpty() ? QByteArrayLiteral("the file") : problem.part.toUtf8();
    if (SeverityOf(problem.kind) == ProblemSeverity::Info)
        qCInfo(problemLog, "%s: %s", where.constData(), qUtf8Printable(problem.text));
    else
        qCWarning(problemLog, "%s: %s", where.constData(), qUtf8Printable(problem.text));
}

} // namespace

ProblemSeverity SeverityOf(ProblemKind kind)
{
    return RowOf(kind).severity;
}

const char* WordOf(ProblemKind kind)
{
    return RowOf(kind).word;
}

void ProblemLog::Add(const Problem& problem)
{
    bool isFirstOfKind = false;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        Group& group = groups[QString::number(int(problem.kind)) + QLatin1Char(' ') + problem.part];
        const QString identity = QStringLiteral("%1 %2 ").arg(problem.objectId).arg(problem.offset) + problem.text;
        if (group.told.size() >= MaxTold || group.told.contains(identity))
            return;
        group.told.insert(identity);
        if (group.listed < MaxListedPerPart && int(problems.size()) < MaxListed) {
            group.last = int(problems.size());
            ++group.listed;
            problems.push_back(problem);
        } else if (group.last >= 0) {
            ++problems[size_t(group.last)].more;
        }
        isFirstOfKind = !logged.contains(int(problem.kind));
        logged.insert(int(problem.kind));
    }
    if (isFirstOfKind)
        WriteToProgramLog(problem);
}

std::vector<Problem> ProblemLog::GetProblems() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return problems;
}

bool ProblemLog::HasProblems() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    for (const Problem& problem : problems) {
        if (SeverityOf(problem.kind) == ProblemSeverity::Problem)
            return true;
    }
    return false;
}

ProblemScope::ProblemScope(ProblemLog& log, const QString& part)
    : log(&log)
    , part(part)
    , outer(innermost)
{
    innermost = this;
}

ProblemScope::ProblemScope(const QString& part)
    : log(innermost ? innermost->log : nullptr)
    , part(part)
    , outer(innermost)
{
    innermost = this;
}

ProblemScope::~ProblemScope()
{
    innermost = outer;
}

ProblemPlace::ProblemPlace(int objectId, qint64 offset)
    : scope(innermost)
{
    if (!scope)
        return;
    outerId = scope->objectId;
    outerOffset = scope->offset;
    scope->objectId = objectId;
    scope->offset = offset;
}

ProblemPlace::~ProblemPlace()
{
    if (!scope)
        return;
    scope->objectId = outerId;
    scope->offset = outerOffset;
}

void ReportProblem(ProblemKind kind, const QString& text)
{
    if (!innermost || !innermost->log)
        return;
    Problem problem;
    problem.kind = kind;
    problem.text = text;
    problem.part = innermost->part;
    problem.objectId = innermost->objectId;
    problem.offset = innermost->offset;
    innermost->log->Add(problem);
}

void ReportProblem(ProblemKind kind, const QString& part, const QString& text)
{
    if (!innermost || !innermost->log)
        return;
    Problem problem;
    problem.kind = kind;
    problem.part = part;
    problem.text = text;
    innermost->log->Add(problem);
}

} // namespace ofd
