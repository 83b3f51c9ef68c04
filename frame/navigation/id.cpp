#include "id.h"

namespace Core {

Id Id::FromString(const QString& text)
{
    return Id(text.toUtf8().constData());
}

} // namespace Core
