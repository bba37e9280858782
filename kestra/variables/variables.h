#pragma once
#include <string_view>

#include <kestra/variables/variable.h>
#include <kestra/variables/variable_array.h>
#include <platform/export.h>

/// The variables of one evaluation context, sorted by name, unique, owned by the list.
///
/// Names beginning with '$' are global to the context and evaluator functions are permanent; every other
/// variable is local and goes with `DelVarLoc`. Names compare byte by byte as unsigned codes (case matters);
/// a null name counts as the empty name. A variable holds the first 20 characters of its name: a longer name
/// is found by nothing. A variable keeps the place of the name that it was added under.
///
/// Searches cost O(log n); insertions and removals also move some dozen entries (10,000 variables fill a
/// list in any order in milliseconds). Not thread-safe: a search moves the position.
class KESTRA_API CVariables {
  public:
    CVariables() = default;
    /// Releases and deletes every variable, from the last to the first.
    ~CVariables();
    CVariables(const CVariables&) = delete;
    CVariables& operator=(const CVariables&) = delete;

    /// The variable with exactly that name, or null. Sets the position. The variable stays the list's.
    CVariable* find(const char* name);

    /// Takes over a variable made with `new` and inserts it at its place by name; returns it. Sets the
    /// position. A variable of the same name is deleted and replaced, and the result is then the address that
    /// it had: it says that something was replaced and must not be used (`find` gives the new one). A null
    /// variable is not added: null. A variable that is in the list already stays: the result is that
    /// variable.
    CVariable* add(CVariable* variable);

    /// Deletes the variable with that name; false when there is none. Sets the position.
    bool del(const char* name);

    /// Deletes the local variables, from the last to the first; returns how many there were.
    int DelVarLoc();

    int GetSize() const { return m_entries.size(); }
    /// Variables in ascending order of their names, from 0; null outside the list.
    CVariable* GetAt(int index) const;
    CVariable* operator[](int index) const { return GetAt(index); }

    /// After a search: index of the variable found, or the index at which it would be inserted.
    int GetPosition() const { return m_position; }

  private:
    struct Search {
        NameKey key;
        VariableArray::Place place;
        bool found;
    };
    Search locate(std::string_view name);
    void erase(VariableArray::Place place);

    VariableArray m_entries;
    std::int32_t m_position = 0;
};
