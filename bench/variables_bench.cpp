#include <algorithm>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <kestra/variables/variables.h>

#include "side_by_side.h"

namespace {

constexpr int count = 10'000;

/// Names as a project has them, in random order: "X00042", "$Altitude_00042".
std::vector<std::string> shuffledNames() {
    std::vector<std::string> names;
    for (int i = 0; i < count; ++i) {
        const std::string digits = std::to_string(100'000 + i).substr(1);
        names.push_back((i % 2 == 0 ? "X" : "$Altitude_") + digits);
    }
    std::shuffle(names.begin(), names.end(), std::mt19937(4));
    return names;
}

std::unique_ptr<CVariables> filledList(const std::vector<std::string>& names) {
    auto list = std::make_unique<CVariables>();
    for (const std::string& name : names)
        list->add(new CVariable(name.c_str(), CVariable::vtNumber, nullptr));
    return list;
}

using Map = std::map<std::string, double>;

std::unique_ptr<Map> filledMap(const std::vector<std::string>& names) {
    auto map = std::make_unique<Map>();
    for (const std::string& name : names) map->emplace(name, 0.0);
    return map;
}

}  // namespace

int main() {
    const auto names = shuffledNames();
    // All are kept: what is timed is the filling alone, not the end of the one before.
    std::vector<std::unique_ptr<CVariables>> lists;
    std::vector<std::unique_ptr<Map>> maps;
    bench::sideBySide(
        "CVariables, insertion of 10,000 in random order", 1.0, [&] { lists.push_back(filledList(names)); },
        "std::map emplace", [&] { maps.push_back(filledMap(names)); }, 41);

    auto asked = names;
    std::shuffle(asked.begin(), asked.end(), std::mt19937(5));
    bench::sideBySide(
        "CVariables, 10,000 lookups among 10,000", 1.2,
        [&] {
            for (const std::string& name : asked) bench::keep(lists[0]->find(name.c_str()));
        },
        "std::map find",
        [&] {
            for (const std::string& name : asked) bench::keep(maps[0]->find(name));
        },
        41);
}
