#pragma once
#include <string>
#include <vector>

#include <dorsel/trace.h>
#include <platform/machine.h>
#include <platform/prompt.h>
#include <platform/replaceable.h>

/// A machine that opens nothing and notes what it was asked for.
class RecordingMachine : public platform::Machine {
  public:
    std::string computerName() override { return name; }
    int windowsNtVersion() override { return ntVersion; }
    bool openDocument(const char* path) override { return note("open", path, ""); }
    bool run(const char* commandLine) override { return note("run", commandLine, ""); }
    bool classicHelp(const char* file, const char* topic) override { return note("help", file, topic); }
    bool htmlHelp(const char* file, const char* command) override { return note("html", file, command); }
    void debugLine(const char*) override {}
    std::string environment(const char*) override { return {}; }

    std::string name = "POSTE-7";
    int ntVersion = 0;
    std::vector<std::string> calls;

  private:
    bool note(const char* what, const char* first, const char* second) {
        calls.push_back(std::string(what) + "|" + first + "|" + (second != nullptr ? second : ""));
        return true;
    }
};

/// A prompt that nobody sees: it notes the texts and answers as it would without a screen.
class RecordingPrompt : public platform::Prompt {
  public:
    platform::Answer ask(unsigned style, const char* text, const char*) override {
        styles.push_back(style);
        texts.push_back(text);
        return platform::neutralAnswer(style);
    }
    std::vector<unsigned> styles;
    std::vector<std::string> texts;
};

/// Collects the trace lines while it lives.
class RecordedTraces {
  public:
    RecordedTraces() : m_before(setTraceOutput(&note)) { lines().clear(); }
    ~RecordedTraces() { setTraceOutput(m_before); }
    RecordedTraces(const RecordedTraces&) = delete;
    RecordedTraces& operator=(const RecordedTraces&) = delete;
    static std::vector<std::string>& lines() {
        static std::vector<std::string> all;
        return all;
    }

  private:
    static void note(const char* line, bool) { lines().push_back(line); }
    TraceOutput m_before;
};
