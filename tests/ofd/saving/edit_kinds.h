#pragma once

#include <ofd/ofd_document.h>

#include <QStringList>

#include <functional>
#include <vector>

// The edits that the panes make, one of each kind, for tests that try them all on many documents.
struct EditKind
{
    const char* name;
    // Makes the edit and gives what undoes it (empty when nothing can); `done` is false when the document has nothing
    // of the kind.
    std::function<std::function<void()>(ofd::OfdDocument& document, bool& done)> apply;
    // The element of the document part that names the list that the edit is about; empty for none.
    const char* list;
};

const std::vector<EditKind>& EditKinds();
