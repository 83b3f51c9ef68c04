#include "signature_parts.h"

#include <ofd/package/locations.h>

namespace ofd {

QString SignaturePart(const Package& package, const QString& reference, const QString& holder,
                      const QString& documentFolder)
{
    if (reference.trimmed().isEmpty())
        return QString();
    LocationContext context;
    context.holderPart = holder;
    context.documentFolder = documentFolder;
    return ResolveLocation(package, reference, context).part;
}

} // namespace ofd
