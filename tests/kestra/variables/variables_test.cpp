#include <algorithm>
#include <map>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include <kestra/variables/variables.h>

namespace {

CVariable* number(const std::string& name, double value) {
    auto* variable = new CVariable(value);
    name.copy(variable->m_name, sizeof variable->m_name);
    return variable;
}

}  // namespace

TEST(CVariables, KeptTheResultIsTheAddressOfTheDeletedVariable) {
    CVariables list;
    CVariable* const before = number("A", 1);
    CVariable* const after = number("A", 2);
    std::fill(after->m_name + 2, after->m_name + 20, 'x');  // behind the name's end
    for (int i = 0; i < 2; ++i) EXPECT_EQ(list.add(before), before);
    EXPECT_EQ(list.add(after), before);
    EXPECT_EQ(list.find("A"), after);
    EXPECT_EQ(list.find(std::string(100'000, 'A').c_str()), nullptr);
    EXPECT_EQ(list.GetPosition(), list.GetSize());
    for (const CVariable* none : {list.add(nullptr), list.find(nullptr), list.GetAt(-1), list.GetAt(1)})
        EXPECT_EQ(none, nullptr);
}

TEST(CVariables, StaysAMapThroughRandomChanges) {
    CVariables list;
    list.add(new CVariable("f", CVariable::Function{}));
    std::map<std::string, double> model{{"f", 0}};
    std::mt19937 random(7);
    for (int i = 0; i < 6'000; ++i) {
        std::string name(random() % 24, '$');
        for (char& letter : name) letter = "$A\xE9"[random() % 3];
        const std::string held = name.substr(0, 20);
        if (i % 2'500 == 2'499) {
            const auto isLocal = [](const auto& entry) {
                return entry.first[0] != '$' && entry.first != "f";
            };
            ASSERT_EQ(list.DelVarLoc(), static_cast<int>(std::erase_if(model, isLocal)));
        } else if (random() % 4 == 0) {
            ASSERT_EQ(list.del(name.c_str()), model.erase(name) == 1);
        } else {
            list.add(number(held, model[held] = i));
        }
        const auto place = model.lower_bound(name);
        CVariable* const found = list.find(name.c_str());
        ASSERT_EQ(list.GetPosition(), std::distance(model.begin(), place)) << name;
        ASSERT_EQ(found != nullptr, model.contains(name)) << name;
    }
    ASSERT_EQ(list.GetSize(), static_cast<int>(model.size()));
    int index = 0;
    for (const auto& [name, value] : model) {
        ASSERT_EQ(list.find(name.c_str()), list.GetAt(index));
        ASSERT_EQ(list[index++]->m_value.number, value) << name;
    }
}
