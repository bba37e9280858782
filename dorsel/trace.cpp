#include <dorsel/trace.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <memory>
#include <new>
#include <string>
#include <string_view>

#include <dorsel/globals.h>
#include <platform/files.h>
#include <platform/machine.h>
#include <platform/prompt.h>

#include "guarded.h"

namespace {

constexpr std::string_view generalWarning = "$G$";

TraceOutput traceOutput = nullptr;

/// Other programs of the family may be writing a line at the same moment.
constexpr int patience = 100;

bool appendLine(const std::string& file, const std::string& line) {
    platform::FileSystem& files = platform::theFiles();
    auto trace = files.open(file.c_str(), platform::OpenMode::update);
    if (trace == nullptr) trace = files.open(file.c_str(), platform::OpenMode::createNew);
    if (trace == nullptr) trace = files.open(file.c_str(), platform::OpenMode::update);
    if (trace == nullptr) return false;
    trace->lock(patience);
    const std::int64_t end = trace->size();
    return end >= 0 && trace->writeAt(end, line.data(), line.size());
}

void showLine(std::string_view line) {
    platform::Machine& machine = platform::theMachine();
    const std::string file = machine.environment("KESTRA_TRACE");
    const std::string text(line.substr(std::min(line.find_first_not_of("\r\n"), line.size())));
    if (file.empty() || !appendLine(file, text + '\n')) machine.debugLine(text.c_str());
}

void passOn(char* line, std::size_t length) {
    while (length > 0 && (line[length - 1] == '\r' || line[length - 1] == '\n')) line[--length] = '\0';
    const std::string_view text(line, length);
    const bool shown = DOS::Debug != 0 || text.starts_with(generalWarning);
    if (traceOutput != nullptr)
        traceOutput(line, shown);
    else if (shown)
        showLine(text);
}

/// Forms the line on the stack, or on the heap when it is long; cut where there is no memory for it.
int trace(const char* format, std::va_list values) {
    char shortLine[1024];
    std::va_list again;
    va_copy(again, values);
    const int length = std::vsnprintf(shortLine, sizeof shortLine, format, values);
    const auto wanted = static_cast<std::size_t>(std::max(length, 0));
    std::unique_ptr<char[]> longLine;
    if (wanted >= sizeof shortLine) longLine.reset(new (std::nothrow) char[wanted + 1]);
    if (longLine != nullptr) (void)std::vsnprintf(longLine.get(), wanted + 1, format, again);
    va_end(again);

    if (length < 0) return 0;
    if (longLine != nullptr)
        passOn(longLine.get(), wanted);
    else
        passOn(shortLine, std::min(wanted, sizeof shortLine - 1));
    return length;
}

}  // namespace

int mprintf(const char* format, ...) {
    if (format == nullptr) return 0;
    std::va_list values;
    va_start(values, format);
    const int length = dorsel::guarded(0, [&] { return trace(format, values); });
    va_end(values);
    return length;
}

TraceOutput setTraceOutput(TraceOutput output) {
    const TraceOutput before = traceOutput;
    traceOutput = output;
    return before;
}

int mMessageBox(unsigned style, const char* text, const char* further) {
    return dorsel::guarded<int>(0, [&] {
        std::string message = text != nullptr ? text : "";
        if (text != nullptr && further != nullptr) message += '\n';
        if (further != nullptr) message += further;
        return static_cast<int>(platform::thePrompt().ask(style, message.c_str(), nullptr));
    });
}
