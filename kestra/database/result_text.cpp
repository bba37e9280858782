#include <kestra/database/result_text.h>

#include <new>

namespace kestra {

std::string& databaseText() {
    static std::string text;
    return text;
}

const char* keepDatabaseText(std::string_view text) {
    return databaseText().assign(text).c_str();
}

_com_error failureInFlight() noexcept {
    try {
        throw;
    } catch (_com_error& error) {
        return std::move(error);
    } catch (const std::bad_alloc&) {
        return {ado20::hrOutOfMemory, {}};
    } catch (...) {
        return {ado20::hrFail, {}};
    }
}

}  // namespace kestra
