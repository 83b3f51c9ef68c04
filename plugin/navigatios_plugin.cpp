#include "navigatios_plugin.h"

#include "registration_table.h"

#include <algorithm>

NavigatiosPlugin::NavigatiosPlugin() = default;

NavigatiosPlugin::~NavigatiosPlugin()
{
    // Not the order of creation reversed: each row says when its object goes.
    const std::vector<Registration>& table = RegistrationTable();
    std::vector<std::size_t> rows(objects.size());
    for (std::size_t row = 0; row < rows.size(); ++row)
        rows[row] = row;
    std::sort(rows.begin(), rows.end(),
              [&table](std::size_t a, std::size_t b) { return table[a].teardown < table[b].teardown; });
    bool isSpareFreed = false;
    for (const std::size_t row : rows) {
        if (!isSpareFreed && table[row].teardown > SpareTeardown) {
            delete spare;
            isSpareFreed = true;
        }
        objects[row].reset();
    }
    if (!isSpareFreed)
        delete spare;
}

bool NavigatiosPlugin::Initialize()
{
    return true;
}

void NavigatiosPlugin::ExtensionsReady()
{
    if (!objects.empty())
        return;
    for (const Registration& row : RegistrationTable())
        objects.emplace_back(row.make(), row.destroy);
}
