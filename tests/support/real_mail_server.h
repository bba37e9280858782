#pragma once
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include <platform/files.h>
#include <platform/machine.h>

/// The mail server that the tests run beside (tools/with_mail_server.sh), and what it receives from now on.
class RealMailServer {
  public:
    RealMailServer() {
        const std::string port = platform::theMachine().environment("KESTRA_MAIL_PORT");
        m_folder = platform::theMachine().environment("KESTRA_MAIL_FOLDER");
        if (port.empty()) ADD_FAILURE() << "no mail server: run this through tools/with_mail_server.sh";
        if (platform::theMachine().windowsNtVersion() > 0) m_folder = "Z:" + m_folder;
        m_port = static_cast<unsigned>(std::atoi(port.c_str()));
        while (platform::theFiles().kind(file("txt").c_str()) == platform::FileKind::file) ++m_count;
    }
    unsigned port() const { return m_port; }
    /// A file of the next message: "txt", "eml", "0.part", ...
    std::string next(const std::string& kind) const {
        std::string content = "(nothing)";
        platform::readWholeFile(file(kind).c_str(), content);
        return content;
    }

  private:
    std::string file(const std::string& kind) const {
        return m_folder + "/" + std::to_string(m_count + 1) + '.' + kind;
    }
    unsigned m_port = 0;
    int m_count = 0;
    std::string m_folder;
};
