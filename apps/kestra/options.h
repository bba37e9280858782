#pragma once
#include <initializer_list>
#include <map>
#include <string>
#include <vector>

#include "commands.h"

namespace host {

/// The words of a command line: options with a value ("--to ADRESSE"), options without ("--open") and the
/// rest, as Windows-1252 texts. What follows "--" is never an option.
class Options {
  public:
    Options(const Arguments& arguments, std::initializer_list<const char*> withValue,
            std::initializer_list<const char*> withoutValue);

    /// What is wrong; empty when nothing is.
    const std::string& fault() const { return m_fault; }
    bool has(const std::string& option) const { return m_values.contains(option); }
    /// The last value given, null for none.
    const char* value(const std::string& option) const;
    /// All values given, joined by ';'.
    std::string list(const std::string& option) const;
    const std::vector<std::string>& rest() const { return m_rest; }

  private:
    std::map<std::string, std::vector<std::string>> m_values;
    std::vector<std::string> m_rest;
    std::string m_fault;
};

/// Tells a fault and how the command is used; 2, the exit code for it.
int wrongUsage(const std::string& command, const std::string& fault,
               std::initializer_list<const char*> usage);

}  // namespace host
