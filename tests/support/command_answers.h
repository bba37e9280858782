#pragma once
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "kept_terminal.h"

/// A line of the command-line host and what it must answer.
struct CommandAnswer {
    std::vector<std::string> words;
    int exitCode;
    std::string out, err;  ///< texts that must occur; empty: nothing written
};

/// Runs the lines in turn; with `wholeOutput` all that is written to the output is compared.
inline void expectAnswers(const std::vector<CommandAnswer>& cases, bool wholeOutput = false) {
    for (const auto& c : cases) {
        std::string line;
        for (const std::string& word : c.words) line += word + ' ';
        SCOPED_TRACE(line);
        KeptTerminal terminal;
        EXPECT_EQ(runHost(c.words, terminal), c.exitCode);
        EXPECT_TRUE(!wholeOutput || terminal.out == c.out) << terminal.out;
        EXPECT_NE(terminal.out.find(c.out), std::string::npos) << terminal.out;
        EXPECT_NE(terminal.err.find(c.err), std::string::npos) << terminal.err;
        EXPECT_EQ(terminal.out.empty(), c.out.empty()) << terminal.out;
        EXPECT_EQ(terminal.err.empty(), c.err.empty()) << terminal.err;
    }
}
