#pragma once
#include <cstdint>
#include <memory>

#include <platform/application.h>
#include <platform/export.h>

/// The library's application object. The module has one, constructed and initialised when the library is
/// loaded (`module.h`); hosts do not make any.
///
/// Construction publishes the family's version number, builds the character tables, writes the help
/// dispatcher over the process's `WinHelpA` (Windows) and reads the start-up settings. Destruction puts
/// `WinHelpA` back.
class KESTRA_API CKestraApp : public CWinApp {
  public:
    CKestraApp();
    ~CKestraApp() override;

    /// Registers the module with the framework (once), lets the library's windows come to the front (this
    /// sets the user's foreground lock time-out to zero, on purpose), reads the current projection and checks
    /// the shared settings block. The first initialisation also makes the folder "c:\temp" and reads the
    /// company name. Returns what the framework's initialisation returned.
    int InitInstance() override;
    /// The exit that matches the last open initialisation deletes the temporary database and frees the path
    /// lists. Returns the framework's exit code.
    int ExitInstance() override;

  private:
    void registerExtension();

    std::int32_t m_instances = 0;  ///< initialisations that no exit matches yet
    AFX_EXTENSION_MODULE m_extension;
    std::unique_ptr<CDynLinkLibrary> m_library;
};
