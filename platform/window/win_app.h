#pragma once
#include <windows.h>

#include <string>

#include <platform/cstring.h>
#include <platform/export.h>
#include <platform/window/module_state.h>

/// The application object of a module: a program has one and runs on it; a library may have one whose
/// construction, initialisation and exit frame its life.
///
/// What differs from what a reader may expect: the object belongs to the module whose code constructs it
/// (the default argument `state` is evaluated there), so a library's object never takes the place of the
/// program's. A second object of the same module takes the place of the first until it is destroyed; they go
/// in reverse order.
class CWnd;

class DORSEL_API CWinApp {
  public:
    /// `name` is copied; null gives the program's file name without folder and extension.
    explicit CWinApp(const char* name = nullptr, AFX_MODULE_STATE* state = AfxGetStaticModuleState());
    virtual ~CWinApp();
    CWinApp(const CWinApp&) = delete;
    CWinApp& operator=(const CWinApp&) = delete;

    /// Set-up; false ends the program before its message loop. The framework's own does nothing and agrees.
    virtual BOOL InitInstance();
    /// Message loop until WM_QUIT or until the main window is gone; returns `ExitInstance()`.
    virtual int Run();
    /// Clean-up; the framework's own returns the code of the last WM_QUIT (0 when there was none).
    virtual int ExitInstance();
    /// First sight of each message of the loop; true when it is dealt with. The framework's own offers it to
    /// the window objects from the message's window up to its top-level parent.
    virtual BOOL PreTranslateMessage(MSG* message);
    /// Called while no message waits, `count` = 0, 1, ... ; false: not again before the next message.
    virtual BOOL OnIdle(LONG count);

    /// Waits for one message and dispatches it; false when it was WM_QUIT.
    BOOL PumpMessage();
    /// Dispatches what waits, without waiting; false when WM_QUIT was among it.
    BOOL PumpWaiting();

    /// Puts the profile, where the application keeps small things about its user, into the registry:
    /// HKEY_CURRENT_USER, "Software\\company\\application name". Until then, and with an empty name, it is
    /// the file "program.INI" in the system's folder.
    void SetRegistryKey(const char* company);
    /// Whole number of a section of the profile; `missing` when it is not there or is no REG_DWORD.
    int GetProfileInt(const char* section, const char* entry, int missing) const;
    BOOL WriteProfileInt(const char* section, const char* entry, int value);
    /// Removes a section with all that is below it; true when it is gone.
    BOOL DeleteProfileSection(const char* section);

    HINSTANCE m_hInstance;         ///< the module of this object
    CString m_pszAppName;          ///< name of the application
    CString m_pszRegistryKey;      ///< company, see `SetRegistryKey`
    CString m_pszProfileName;      ///< application in the registry, or the profile's file
    CWnd* m_pMainWnd = nullptr;    ///< main window, not owned; its end posts WM_QUIT
    const char* m_lpCmdLine = "";  ///< command line, set by `AfxWinMain`
    int m_nCmdShow = SW_SHOWNORMAL;

  private:
    std::string profilePath(const char* section) const;
    /// False for WM_QUIT, whose code is noted.
    bool dispatch(MSG& message);

    AFX_MODULE_STATE* m_state;
    CWinApp* m_before;
    int m_exitCode = 0;
};

/// Name of the program's application object; without one, of its file without folder and extension.
DORSEL_API CString AfxGetAppName();

/// Body of a program's WinMain: initialises the program's application object, runs it, and returns its exit
/// code; -1 without an object or when the initialisation refuses (its `ExitInstance` is then called).
DORSEL_API int AfxWinMain(HINSTANCE instance, HINSTANCE previous, char* commandLine, int show);
