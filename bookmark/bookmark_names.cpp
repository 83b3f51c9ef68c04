#include "bookmark_names.h"

#include "bookmark_node.h"

#include <frame/document/ig_document.h>

#include <vector>

namespace {

QString Candidate(const QString& name, int number)
{
    return number == 0 ? name : name + QStringLiteral("(%1)").arg(number);
}

// The number whose candidate `text` is, given that `text` begins with the name of this length; -1 when it is none, or
// one above `most`. Only the plain decimal form is a candidate: "(01)" and "(+1)" are not.
int CandidateNumber(const QString& text, int nameLength, int most)
{
    if (text.size() == nameLength)
        return 0;
    const int end = text.size() - 1;
    if (end < nameLength + 2 || text.at(nameLength) != QLatin1Char('(') || text.at(end) != QLatin1Char(')') ||
        text.at(nameLength + 1) == QLatin1Char('0'))
        return -1;
    int number = 0;
    for (int i = nameLength + 1; i < end; ++i) {
        const ushort unit = text.at(i).unicode();
        if (unit < '0' || unit > '9')
            return -1;
        number = number * 10 + (unit - '0');
        if (number > most)
            return -1;
    }
    return number;
}

} // namespace

QString FreeBookmarkName(const QString& name, const G_TreeNode* root)
{
    // Which numbers are taken is noted during the one walk, instead of comparing each candidate with all names.
    const int count = root->SubNodeCount();
    std::vector<bool> isTaken(static_cast<size_t>(count) + 1);
    int similar = 0;
    for (int row = 0; row < count; ++row) {
        const QString text = BookmarkName(root->SubNode(row));
        const int at = text.indexOf(name);
        if (at < 0)
            continue;
        ++similar;
        const int number = at == 0 ? CandidateNumber(text, name.size(), count) : -1;
        if (number >= 0)
            isTaken[static_cast<size_t>(number)] = true;
    }
    // The number stops at how many names contain this one, whether the last candidate is free or not.
    int number = 0;
    while (number < similar && isTaken[static_cast<size_t>(number)])
        ++number;
    return similar == 0 ? name : Candidate(name, number);
}

QString UniqueBookmarkName(const QString& name, IG_Document* document)
{
    const G_TreeNode* root = document->GetBookmarkRoot();
    if (!root)
        return document->CreateBookmarkRoot() ? name : QString();
    return FreeBookmarkName(name, root);
}
