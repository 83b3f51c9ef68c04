#pragma once

#include <QHash>
#include <QSet>
#include <QString>

#include <memory>
#include <mutex>
#include <vector>

namespace ofd {

// What a file had wrong that reading and painting worked around.
enum class ProblemKind {
    MissingPart,         // something names a part that the package does not have
    MisspeltReference,   // the part was found, but not where the reference says
    UnreadablePart,      // damaged, encrypted, packed in an unknown way
    WrongChecksum,       // readable, but not what was once packed
    BadXml,              // a part that is no XML, or none that is read
    DanglingReference,   // an identifier that nothing of the wanted kind has
    DuplicateIdentifier, // the first one holds
    BadValue,            // a number, colour, transform, path … that cannot be read; a default took its place
    FontSubstituted,     // no problem: the document brings no font, and another one is drawn with
    BadFont,             // an embedded font that cannot be used
    BadImage,            // a picture that cannot be decoded
    Unsupported,         // something that is not painted
    Cycle,               // something that contains itself
    Limit,               // more, deeper or larger than what is read
    PageFailed,          // a page that is shown as an empty sheet
    VersionShown,        // no problem: the file keeps several states of the document, and one of them is open
};

enum class ProblemSeverity { Info, Problem };

ProblemSeverity SeverityOf(ProblemKind kind);
// A stable word for scripts: "missing-part".
const char* WordOf(ProblemKind kind);

// One thing that is wrong, and where.
struct Problem
{
    ProblemKind kind = ProblemKind::BadValue;
    QString part;       // empty when it concerns the package
    qint64 offset = -1; // of the element in the part's bytes; -1 when not known
    int objectId = 0;   // of the graphic object or resource; 0 when not known
    QString text;       // a sentence for people
    int more = 0;       // so many further ones of this kind in this part are not listed
};

// What a document had wrong. A problem is kept once, however often it is met; of one kind in one part only the first
// few are, and the last of them counts the others. The first of a kind in a file goes to the log of the program too.
// Any thread.
class ProblemLog
{
public:
    static constexpr int MaxListedPerPart = 16; // of one kind
    static constexpr int MaxListed = 10'000;    // in all
    static constexpr int MaxTold = 4096;        // of one kind in one part; beyond it they are not even counted

    void Add(const Problem& problem);
    // In the order in which they were met.
    std::vector<Problem> GetProblems() const;
    // Whether there is more than information.
    bool HasProblems() const;

private:
    struct Group
    {
        QSet<QString> told;
        int listed = 0;
        int last = -1; // position in `problems`
    };

    mutable std::mutex mutex;
    std::vector<Problem> problems;
    QHash<QString, Group> groups; // by kind and part
    QSet<int> logged;             // kinds
};

// While it lives, what is reported on its thread goes to that log and concerns that part. Scopes nest.
class ProblemScope
{
public:
    // The log must outlive the scope.
    ProblemScope(ProblemLog& log, const QString& part);
    // Another part, the same log as the scope around it; without one, nothing is kept.
    explicit ProblemScope(const QString& part);
    ~ProblemScope();
    ProblemScope(const ProblemScope&) = delete;
    ProblemScope& operator=(const ProblemScope&) = delete;

private:
    friend class ProblemPlace;
    friend void ReportProblem(ProblemKind kind, const QString& text);
    friend void ReportProblem(ProblemKind kind, const QString& part, const QString& text);

    ProblemLog* log; // not owned; may be null
    const QString part;
    int objectId = 0;
    qint64 offset = -1;
    ProblemScope* outer; // not owned
};

// While it lives, what is reported on its thread concerns that object or element. The scope around it must outlive it.
class ProblemPlace
{
public:
    explicit ProblemPlace(int objectId, qint64 offset = -1);
    ~ProblemPlace();
    ProblemPlace(const ProblemPlace&) = delete;
    ProblemPlace& operator=(const ProblemPlace&) = delete;

private:
    ProblemScope* scope; // not owned; null outside of any
    int outerId = 0;
    qint64 outerOffset = -1;
};

// Reports to the innermost scope of this thread; outside of one nothing happens, since nobody asked for the file.
void ReportProblem(ProblemKind kind, const QString& text);
// The same about another part than the one at hand.
void ReportProblem(ProblemKind kind, const QString& part, const QString& text);

} // namespace ofd
