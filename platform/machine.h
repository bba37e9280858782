#pragma once
#include <string>

#include <platform/export.h>

/// The computer and its shell: name, documents opened by their program, help viewers. Replaceable for a test.
namespace platform {

class DORSEL_API Machine {
  public:
    virtual ~Machine();
    /// Name of the computer; empty when it cannot be told.
    virtual std::string computerName() = 0;
    /// Above 0 on systems of the Windows NT line (the major version), 0 elsewhere.
    virtual int windowsNtVersion() = 0;
    /// Opens a document, a folder or an address with the program that the shell has for it, shown normally,
    /// and does not wait for it. False when there is none or it could not be started.
    virtual bool openDocument(const char* path) = 0;
    /// Opens a document as above and comes back when the program that shows it has ended; the program's
    /// window belongs to the one in front. Where the end of a program cannot be told it does not wait.
    virtual bool editDocument(const char* path) { return openDocument(path); }
    /// Starts a command line and does not wait for it. False when it could not be started.
    virtual bool run(const char* commandLine) = 0;
    /// Opens a classic help file at a topic (a keyword; none: its contents). False when there is no viewer.
    virtual bool classicHelp(const char* file, const char* topic) = 0;
    /// Opens a compiled HTML help file at a page or keyword. False when there is no viewer.
    virtual bool htmlHelp(const char* file, const char* command) = 0;
    /// Number of the running process; 0 when it cannot be told.
    virtual unsigned long processId() { return 0; }
    /// A line for a debugger's output or, without one, standard error; the text is Windows-1252.
    virtual void debugLine(const char* text) = 0;
    /// Value of an environment variable as Windows-1252 text; empty when it is not set.
    virtual std::string environment(const char* name) = 0;
};

DORSEL_API Machine& theMachine();
/// Puts another machine in force and returns the one before; null puts the system's back. Not owned.
DORSEL_API Machine* replaceMachine(Machine* machine);

}  // namespace platform
