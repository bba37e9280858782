#pragma once
#include <string>

#include <apps/kestra/command.h>

/// Keeps what a command of the command-line host writes.
class KeptTerminal : public Terminal {
  public:
    void output(std::string_view text) override { out += text; }
    void error(std::string_view text) override { err += text; }
    bool errorIsWatched() const override { return true; }
    std::string out, err;
};
