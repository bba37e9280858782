#pragma once
#include <string>
#include <vector>

#include <platform/prompt.h>
#include <platform/replaceable.h>

/// While it lives, messages to the user are kept instead of shown and answered with OK.
class RecordedPrompt : public platform::Prompt {
  public:
    platform::Answer ask(unsigned style, const char* text, const char*) override {
        styles.push_back(style);
        texts.emplace_back(text);
        return platform::answerOk;
    }
    std::vector<unsigned> styles;
    std::vector<std::string> texts;

  private:
    platform::Replaced<platform::Prompt> m_inForce{platform::replacePrompt, *this};
};
