#include "text_source.h"

#include "text_store.h"

#include <ofd/model/document_store.h>

namespace ofd {

OfdTextSource::OfdTextSource(std::shared_ptr<DocumentStore> store)
    : store(std::move(store))
{
}

std::shared_ptr<const IG_ReadText> OfdTextSource::ReadText(int pageIndex, const std::atomic<bool>& isGivenUp)
{
    return isGivenUp ? nullptr : store->GetTexts().GetText(pageIndex, &isGivenUp);
}

bool OfdTextSource::IsTextRead(int pageIndex)
{
    return store->GetTexts().FindText(pageIndex) != nullptr;
}

} // namespace ofd
