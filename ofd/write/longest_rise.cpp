#include "longest_rise.h"

#include <algorithm>

namespace ofd {

std::vector<bool> LongestRise(const std::vector<int>& values)
{
    std::vector<int> tails;                       // position of the smallest last value of each length
    std::vector<int> previous(values.size(), -1); // the position before each in its best chain
    for (int i = 0; i < int(values.size()); ++i) {
        if (values[size_t(i)] < 0)
            continue;
        const auto place =
            std::lower_bound(tails.begin(), tails.end(), values[size_t(i)],
                             [&values](int position, int value) { return values[size_t(position)] < value; });
        if (place != tails.begin())
            previous[size_t(i)] = *(place - 1);
        if (place == tails.end())
            tails.push_back(i);
        else
            *place = i;
    }
    std::vector<bool> chosen(values.size(), false);
    for (int at = tails.empty() ? -1 : tails.back(); at >= 0; at = previous[size_t(at)])
        chosen[size_t(at)] = true;
    return chosen;
}

} // namespace ofd
