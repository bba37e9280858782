#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <set>
#include <string>

#include <kestra/variables/variables.h>

namespace {

/// What a variable must hold: type 0, 3 (number), 4 or 5 (text).
struct Model {
    int type = 0;
    double number = 0;
    std::string text;

    double value() const { return type == 3 ? number : std::strtod(text.c_str(), nullptr); }
    std::string shown() const {
        char printed[32];
        std::snprintf(printed, sizeof printed, "%g", number);
        return type == 3 ? printed : text;
    }
    void combine(int operation, const Model& other) {
        if (type == 0) *this = {3, operation == 1 ? 0.0 : 1.0, ""};
        if (type != 3 || other.type == 0) return;
        const double by = other.value();
        number = operation == 1 ? number - by : operation == 2 ? number * by : number / by;
    }
    void add(const Model& other) {
        if (type == 0)
            *this = other;
        else if (type != 3)
            *this = {5, 0, text + other.shown()};
        else if (other.type == 3 || std::string("+-0123456789.").find(other.text[0]) < 13)
            number += other.value();
    }
};

void apply(int operation, CVariable& variable, CVariable& other, Model& model, const Model& by) {
    if (operation == 0) model.add(by);
    if (operation >= 1 && operation <= 3) model.combine(operation, by);
    if (operation == 4) model = by;
    if (operation >= 5) model = {5, 0, model.shown()};
    switch (operation) {
        case 0:
            variable.fAjoute(&other);
            break;
        case 1:
            variable.fSubstract(&other);
            break;
        case 2:
            variable.fMultiplie(&other);
            break;
        case 3:
            variable.fDivise(&other);
            break;
        case 4:
            variable.fSetValFrom(&other);
            break;
        default:
            variable.ToCstring();
    }
}

void require(bool holds) {
    if (!holds) std::abort();
}

void requireOrder(CVariable& variable, CVariable& other, const Model& model, const Model& by) {
    int order = -2;
    if (model.type == 3 && by.type == 3) order = (model.number > by.number) - (model.number < by.number);
    if (model.type == 4 ? by.type >= 4 : model.type == 5 && by.type == 5)
        order = (model.text > by.text) - (model.text < by.text);
    require(variable.Compare(&other) == order);
}

void requireSame(CVariable& variable, Model& model) {
    require(static_cast<int>(variable.m_type) == model.type);
    if (model.type != 3) return require(model.type == 0 || model.text == variable.lpctstr());
    require(variable.m_value.number == model.number ||
            (std::isnan(variable.m_value.number) && std::isnan(model.number)));
    model.number = variable.m_value.number;  // the sign of not-a-number is the machine's
}

void assign(CVariable& variable, Model& model, const std::string& text) {
    variable.Free();
    model = {text.size() < 8 ? 4 : 5, 0, text};
    variable.m_type = static_cast<CVariable::VType>(model.type);
    if (model.type == 4)
        text.copy(variable.m_value.shortText, 7);
    else
        variable.m_value.text = new CString(text);
}

void changeList(CVariables& list, std::set<std::string>& model, const std::string& name, bool removes) {
    require((list.find(name.c_str()) != nullptr) == model.contains(name));
    require(list.GetPosition() == std::distance(model.begin(), model.lower_bound(name)));
    if (removes) return require(list.del(name.c_str()) == (model.erase(name) == 1));
    list.add(new CVariable(name.c_str()));
    model.insert(name.substr(0, 20));
}

}  // namespace

/// Each byte chooses an operation on two of four variables, whose values are pieces of the input; a list of
/// variables takes the pieces as names.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CVariable variables[4];
    Model models[4];
    CVariables list;
    std::set<std::string> names;
    for (std::size_t i = 0; i < size; ++i) {
        const std::size_t mine = data[i] / 8 % 4, other = data[i] / 32 % 4;
        if (data[i] % 8 == 7) {
            const std::size_t length = std::min<std::size_t>(size - i - 1, data[i] % 30);
            std::string piece = std::string(reinterpret_cast<const char*>(data) + i + 1, length).c_str();
            for (char& letter : piece)
                letter -= letter == 'x' || letter == 'X';  // glibc rounds some hexadecimals wrong
            assign(variables[mine], models[mine], piece);
            changeList(list, names, piece, data[i] >= 128);
        } else if (models[mine].text.size() + models[other].text.size() < 4096) {
            apply(data[i] % 8, variables[mine], variables[other], models[mine], models[other]);
            requireOrder(variables[mine], variables[other], models[mine], models[other]);
        }
        requireSame(variables[mine], models[mine]);
    }
    return 0;
}
