#include <cstdint>
#include <cstdlib>
#include <string_view>

#include <platform/ado/criteria.h>
#include <platform/ado/embedded/sql_tokens.h>

/// Criteria, sorts and queries, all from the same text: what parses must be whole, and what is compared must
/// answer.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    if (const auto query = ado20::embedded::simpleQuery(text);
        query && (query->list.empty() || query->alias.empty()))
        std::abort();
    try {
        const ado20::Criteria criteria = ado20::parseCriteria(text);
        for (const ado20::Variant& value :
             {ado20::Variant(1), ado20::Variant(text), ado20::Variant::null(), ado20::Variant::date(45000)})
            criteria.hold([&](std::size_t i) { return ado20::meets(criteria.list.at(i), value.view()); });
    } catch (const _com_error&) {
    }
    try {
        if (ado20::parseSort(text).empty()) std::abort();
    } catch (const _com_error&) {
    }
    return 0;
}
