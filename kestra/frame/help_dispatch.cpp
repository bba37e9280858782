#include "help_dispatch.h"

#include <cstdint>
#include <cstring>

#include <dorsel/globals.h>
#include <dorsel/paths.h>
#include <dorsel/strings.h>
#include <dorsel/trace.h>
#include <kestra/frame/code_hook.h>
#include <kestra/frame/module.h>
#include <platform/process_hooks.h>

namespace kestra {
namespace {

constexpr unsigned helpCommand = 0x102;
constexpr int helpTraces = 2;

constinit CodeHook hook;

/// The text between the first two double quotes.
std::optional<std::string_view> quoted(std::string_view text) {
    const std::size_t start = text.find('"');
    if (start == text.npos) return {};
    const std::size_t end = text.find('"', start + 1);
    if (end == text.npos) return {};
    return text.substr(start + 1, end - start - 1);
}

std::string withSingleBackslashes(std::string_view text) {
    std::string out;
    for (const char c : text)
        if (c != '\\' || !out.ends_with('\\')) out += c;
    return out;
}

bool helpIsTraced() {
    return (DOS::Debug & helpTraces) != 0;
}

std::uint32_t low32(const void* address) {
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(address));
}

void traceRequest(HWND__* window, const char* file, unsigned command, std::uint32_t data, const char* macro) {
    mprintf("\nMyWinhelp Hwnd = %x uCommand=%d , dwData =%x lpszHelp=%x ", low32(window),
            static_cast<int>(command), data, low32(file));
    if (command == helpCommand) mprintf("\nDwdata = %s ", macro);
    if (file != nullptr) mprintf("\nlpszHelp=%s ", file);
}

int callClassicHelp(HWND__* window, const char* file, unsigned command, std::uint32_t data) {
    if (helpIsTraced()) mprintf(" Traite par Aide classique ");
    const CodeHook::Lifted lifted(hook);
    return platform::classicHelp(window, file, command, data);
}

int openHtmlHelp(const char* file, std::string_view macro) {
    const auto request = parseHelpMacro(file, macro);
    if (!request.has_value()) return 0;
    if (DOS::Debug != 0)
        mprintf("\nLance AideHtml sur fich=%s ; commande=%s ", request->file.c_str(),
                request->command.c_str());
    return DOS::AideHtml(request->file.c_str(), request->command.c_str(), 0);
}

}  // namespace

bool isCompiledHelp(const char* file) {
    char name[helpTextSize] = "";
    if (file != nullptr) std::strncpy(name, file, helpTextSize - 1);
    return std::strstr(STR::Majuscules(name), ".CHM") != nullptr;
}

std::optional<HelpMacro> parseHelpMacro(const char* file, std::string_view macro) {
    const std::size_t comma = macro.find(',');
    if (comma == macro.npos) return {};
    const auto command = quoted(macro.substr(comma));
    const auto ownFile = file != nullptr ? std::optional<std::string_view>(file) : quoted(macro);
    if (!command.has_value() || !ownFile.has_value()) return {};
    return HelpMacro{file != nullptr ? file : withSingleBackslashes(*ownFile), std::string(*command)};
}

void installHelpHook() {
    if (DOS::WinNT() > 0)
        hook.install(platform::systemFunction("user32.dll", "WinHelpA"),
                     reinterpret_cast<const void*>(&MyWinhelp));
}

void removeHelpHook() {
    hook.remove();
}

}  // namespace kestra

int MyWinhelp(HWND__* window, const char* file, unsigned command, std::uintptr_t data) {
    // Kept: only 32 bits of the data count, also where they are the address of a text.
    const auto data32 = static_cast<std::uint32_t>(data);
    char macro[kestra::helpTextSize] = "";
    if (command == kestra::helpCommand) platform::readTextAt(data32, macro, sizeof macro);
    if (kestra::helpIsTraced()) kestra::traceRequest(window, file, command, data32, macro);
    if (!kestra::isCompiledHelp(file)) return kestra::callClassicHelp(window, file, command, data32);
    if (command != kestra::helpCommand) return 1;
    return kestra::openHtmlHelp(file, macro);
}
