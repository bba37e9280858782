#pragma once
#include <optional>
#include <string>
#include <string_view>

/// How a classic help call is routed: to compiled HTML help, to classic help, or nowhere.
namespace kestra {

/// Room for a file name or a help macro, its NUL included; longer ones are cut.
constexpr std::size_t helpTextSize = 1000;

/// Whether a help file is compiled HTML help: ".CHM" stands anywhere in its name, in any case.
bool isCompiledHelp(const char* file);

/// What a help macro such as JI("C:\\aide\\manuel.chm","page") asks for.
struct HelpMacro {
    std::string file;
    std::string command;
};
/// The command is the text between the first two double quotes behind the macro's first comma. The file is
/// `file`, or, when that is null, the text between the macro's first two double quotes with each run of `\`
/// made one. Nothing when one of these marks is missing.
std::optional<HelpMacro> parseHelpMacro(const char* file, std::string_view macro);

/// Writes `MyWinhelp` over the process's `WinHelpA`, where there is one; help calls stay as they are when
/// that fails.
void installHelpHook();
/// Puts `WinHelpA` back as it was.
void removeHelpHook();

}  // namespace kestra
