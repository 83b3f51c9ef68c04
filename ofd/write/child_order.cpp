#include "child_order.h"

#include "longest_rise.h"

#include <ofd/package/xml_edit.h>

#include <algorithm>

namespace ofd {

std::vector<bool> ArrangeChildren(XmlEdit& edit, const pugi::xml_node& list,
                                  const std::vector<pugi::xml_node>& elements, const std::vector<int>& matches,
                                  const std::function<QByteArray(int)>& newBytes)
{
    const std::vector<bool> stays = LongestRise(matches);
    std::vector<bool> isKept(elements.size(), false);
    for (size_t i = 0; i < matches.size(); ++i) {
        if (stays[i])
            isKept[size_t(matches[i])] = true;
    }
    for (size_t i = 0; i < elements.size(); ++i) {
        if (!isKept[i])
            edit.Remove(elements[i]);
    }
    const auto firstKept = std::find(isKept.begin(), isKept.end(), true);
    pugi::xml_node before; // the last element that stays
    for (size_t i = 0; i < matches.size(); ++i) {
        if (stays[i])
            before = elements[size_t(matches[i])];
        else if (before)
            edit.InsertAfter(before, newBytes(int(i)));
        else if (firstKept != isKept.end())
            edit.InsertBefore(elements[size_t(firstKept - isKept.begin())], newBytes(int(i)));
        else if (!elements.empty())
            edit.InsertAfter(elements.back(), newBytes(int(i))); // takes the place of what goes
        else
            edit.AppendChild(list, newBytes(int(i)));
    }
    return stays;
}

} // namespace ofd
