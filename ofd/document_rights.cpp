// What the document allows, by its own permissions and by what the file is.
#include "document_private.h"

#include <QDate>

namespace ofd {

bool OfdDocument::IsReadOnly()
{
    return d->isReadOnly;
}

bool OfdDocument::CheckRight(bool edit)
{
    return !edit || (MayEdit() && d->Structure().permissions.IsValidOn(QDate::currentDate()));
}

bool OfdDocument::HasPermissions()
{
    return d->Structure().permissions.exist;
}

bool OfdDocument::MayEdit()
{
    return d->Structure().permissions.edit;
}

bool OfdDocument::MayAnnotate()
{
    return d->Structure().permissions.annotate;
}

bool OfdDocument::MayExport()
{
    return d->Structure().permissions.exportContent;
}

bool OfdDocument::MayPrint()
{
    return d->Structure().permissions.print && MostCopies() != 0;
}

int OfdDocument::MostCopies()
{
    return d->Structure().permissions.copies;
}

bool OfdDocument::IsSignProtected()
{
    return d->Structure().isSigned;
}

bool OfdDocument::IsEncrypted()
{
    return d->Structure().isEncrypted;
}

} // namespace ofd
