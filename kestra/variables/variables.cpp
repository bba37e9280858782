#include <kestra/variables/variables.h>

#include <cstring>
#include <memory>
#include <utility>

namespace {

static_assert(sizeof CVariable::m_name == NameKey::room);

/// As much of a name as tells it from every variable's.
std::string_view bounded(const char* name) {
    return name != nullptr ? std::string_view(name, strnlen(name, NameKey::room + 1)) : std::string_view("");
}

std::string_view nameOf(const CVariable& variable) {
    return {variable.m_name, strnlen(variable.m_name, sizeof variable.m_name)};
}

bool isLocal(const CVariable& variable) {
    return variable.m_name[0] != '$' && variable.m_type != CVariable::vtFunction;
}

}  // namespace

CVariables::~CVariables() {
    for (int i = GetSize(); i-- > 0;) delete GetAt(i);
}

CVariables::Search CVariables::locate(std::string_view name) {
    const NameKey key(name);
    auto place = m_entries.lowerBound(key);
    bool found = m_entries.holds(place, key);
    if (found && name.size() > NameKey::room) {
        // It begins with all that the variable has, and comes behind it.
        ++place.slot;
        found = false;
    }
    m_position = m_entries.index(place);
    return {key, place, found};
}

CVariable* CVariables::find(const char* name) {
    const Search search = locate(bounded(name));
    return search.found ? m_entries.at(search.place) : nullptr;
}

CVariable* CVariables::add(CVariable* variable) {
    if (variable == nullptr) return nullptr;
    const Search search = locate(nameOf(*variable));
    if (!search.found) {
        m_entries.insert(search.place, search.key, variable);
        return variable;
    }
    if (m_entries.at(search.place) == variable) return variable;
    // Kept: the result is the address of the deleted variable; hosts compare it with what they added.
    CVariable* const replaced = std::exchange(m_entries.at(search.place), variable);
    const std::unique_ptr<CVariable> owner(replaced);
    return replaced;
}

bool CVariables::del(const char* name) {
    const Search search = locate(bounded(name));
    if (search.found) erase(search.place);
    return search.found;
}

int CVariables::DelVarLoc() {
    const int before = GetSize();
    for (int i = before; i-- > 0;) {
        const auto place = m_entries.place(i);
        if (isLocal(*m_entries.at(place))) erase(place);
    }
    return before - GetSize();
}

CVariable* CVariables::GetAt(int index) const {
    return index >= 0 && index < GetSize() ? m_entries.at(m_entries.place(index)) : nullptr;
}

void CVariables::erase(VariableArray::Place place) {
    const std::unique_ptr<CVariable> erased(m_entries.at(place));
    m_entries.remove(place);
}
