#include "session_state.h"

namespace ofd {

namespace {

void SetMember(QSet<int>& set, int member, bool isIn)
{
    if (isIn)
        set.insert(member);
    else
        set.remove(member);
}

} // namespace

void SessionState::SetTemplateHidden(int id, bool isHidden)
{
    const std::lock_guard<std::mutex> lock(mutex);
    SetMember(templates, id, isHidden);
    ++textRevision;
}

bool SessionState::IsTemplateHidden(int id) const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return templates.contains(id);
}

void SessionState::SetLayerHidden(int pageIndex, int position, bool isHidden)
{
    const std::lock_guard<std::mutex> lock(mutex);
    SetMember(layers[pageIndex], position, isHidden);
    ++textRevision;
}

bool SessionState::IsLayerHidden(int pageIndex, int position) const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return layers.value(pageIndex).contains(position);
}

void SessionState::SetAnnotationHidden(int pageIndex, int position, bool isHidden)
{
    const std::lock_guard<std::mutex> lock(mutex);
    SetMember(annotations[pageIndex], position, isHidden);
}

int SessionState::GetTextRevision() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return textRevision;
}

SessionState::PageView SessionState::GetPageView(int pageIndex) const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return {templates, layers.value(pageIndex), annotations.value(pageIndex)};
}

} // namespace ofd
