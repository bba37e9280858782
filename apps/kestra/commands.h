#pragma once
#include <string>
#include <vector>

/// The command-line host: one file a command, one line a command in the table of main.cpp.
namespace host {

/// The words behind the command's name, as the program got them.
using Arguments = std::vector<const char*>;

/// 0 when all went well, 1 when something failed (told on standard error), 2 for a wrong command line.
int html(const Arguments& arguments);
int mail(const Arguments& arguments);
int title(const Arguments& arguments);
int request(const Arguments& arguments);

}  // namespace host
