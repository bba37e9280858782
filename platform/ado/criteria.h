#pragma once
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <platform/ado/variant.h>
#include <platform/export.h>

/// The texts that say which records are wanted and in which order; their forms stand at `_Recordset::Find`,
/// `PutFilter` and `PutSort`. What does not parse throws error 3001.
namespace ado20 {

enum class Comparison { equal, notEqual, less, lessOrEqual, greater, greaterOrEqual, like };

/// One comparison: a field's name, an operator, a value (null, a text, a real, a date or a boolean).
struct Criterion {
    std::string field;
    Comparison comparison = Comparison::equal;
    Variant value;
};

/// A filter: criteria joined by AND and OR. It is kept as a list in which an operator follows its two sides.
struct CriteriaStep {
    enum Kind { criterion, both, either } kind;
    std::size_t index = 0;  ///< of the criterion
};
struct Criteria {
    std::vector<Criterion> list;
    std::vector<CriteriaStep> steps;
    /// Whether the criteria hold, when `meets(i)` says whether criterion i does.
    template <class Meets>
    bool hold(Meets&& meets) const {
        std::vector<bool> stack;
        for (const CriteriaStep& step : steps) {
            if (step.kind == CriteriaStep::criterion) {
                stack.push_back(meets(step.index));
                continue;
            }
            const bool last = stack.back();
            stack.pop_back();
            stack.back() = step.kind == CriteriaStep::both ? stack.back() && last : stack.back() || last;
        }
        return stack.empty() || stack.back();
    }
};

struct SortKey {
    std::string field;
    bool descending = false;
};

DORSEL_API Criterion parseCriterion(std::string_view text);
DORSEL_API Criteria parseCriteria(std::string_view text);
DORSEL_API std::vector<SortKey> parseSort(std::string_view text);

/// Whether a field's value meets a criterion. A number is compared with a number, a date with a date,
/// anything else as texts without regard to case; null meets `= NULL` only.
DORSEL_API bool meets(const Criterion& criterion, const VariantView& value);

/// A text against a pattern in which `*` and `%` stand for any characters, without regard to case.
DORSEL_API bool isLike(std::string_view text, std::string_view pattern);

}  // namespace ado20
