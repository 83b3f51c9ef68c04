#pragma once

#include "objects.h"

namespace ofd {

struct PageContent;

// About how many bytes of memory objects take, for the budgets of what is kept. What several of them share counts for
// each.
qint64 WeightOf(const ObjectList& objects);
// With the page's own resources, without the document's.
qint64 WeightOf(const PageContent& page);

} // namespace ofd
