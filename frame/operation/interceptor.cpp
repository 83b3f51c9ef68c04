#include "interceptor.h"

#include "operation.h"
#include "registry.h"

#include <cstring>

namespace {

IG_Document* scopeDocument = nullptr; // main thread only

// The piece behind the last slash. With SkipEmptyParts slashes at the end do not count.
struct Piece
{
    const char* begin;
    const char* end;
};

Piece LastPiece(const char* text, Qt::SplitBehavior behavior)
{
    const char* end = text + std::strlen(text);
    if (behavior & Qt::SkipEmptyParts) {
        while (end != text && end[-1] == '/')
            --end;
    }
    const char* begin = end;
    while (begin != text && begin[-1] != '/')
        --begin;
    return {begin, end};
}

enum class Answer { No, Yes, NeedsUnicode };

// Compares the lower-cased piece with the name byte by byte, without allocating: each interceptor asks this for each
// operation that is performed.
Answer MatchAscii(Piece piece, const char* name)
{
    const char* p = piece.begin;
    for (; p != piece.end; ++p, ++name) {
        const unsigned char byte = static_cast<unsigned char>(*p);
        if (byte >= 0x80)
            return Answer::NeedsUnicode;
        const char lower = byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : *p;
        if (lower != *name)
            return static_cast<unsigned char>(*name) >= 0x80 ? Answer::NeedsUnicode : Answer::No;
    }
    return *name == '\0' ? Answer::Yes : Answer::No;
}

} // namespace

G_OperationInterceptor::G_OperationInterceptor()
    : tag(G_InterceptorScope::Current())
{
    G_OperationRegistry::Instance().Enrol(this);
}

G_OperationInterceptor::~G_OperationInterceptor()
{
    G_OperationRegistry::Instance().Leave(this);
}

bool G_OperationInterceptor::PrepareDataHandle(G_Operation*, int)
{
    return true;
}

bool G_OperationInterceptor::BeforeDoActionHandle(G_Operation*)
{
    return true;
}

void G_OperationInterceptor::AfterDoActionHandle(G_Operation*) {}

G_InterceptorScope::G_InterceptorScope(IG_Document* document)
    : outer(scopeDocument)
{
    scopeDocument = document;
}

G_InterceptorScope::~G_InterceptorScope()
{
    scopeDocument = outer;
}

IG_Document* G_InterceptorScope::Current()
{
    return scopeDocument;
}

bool OperationNameMatches(G_Operation* op, const char* name, Qt::SplitBehavior behavior)
{
    const char* const full = op ? op->Name() : nullptr;
    if (!full || !name || !*name)
        return false;
    const Piece piece = LastPiece(full, behavior);
    if (piece.begin == piece.end)
        return false;
    const Answer answer = MatchAscii(piece, name);
    if (answer != Answer::NeedsUnicode)
        return answer == Answer::Yes;
    const int length = static_cast<int>(piece.end - piece.begin);
    return QString::fromUtf8(piece.begin, length).toLower() == QString::fromUtf8(name);
}
