#pragma once

class CWinApp;

/// State of one module; `AfxGetStaticModuleState` answers for the module that it is compiled into.
struct AFX_MODULE_STATE {
    void* m_hCurrentInstanceHandle = nullptr;
    CWinApp* m_pCurrentWinApp = nullptr;
};
inline AFX_MODULE_STATE* AfxGetStaticModuleState() {
    static AFX_MODULE_STATE state;
    return &state;
}

struct AfxManageState {
    explicit AfxManageState(AFX_MODULE_STATE*) {}
    ~AfxManageState() {}
};

/// Application object of a module; see `platform/window/win_app.h`.
class CWinApp {
  public:
    CWinApp() : m_before(AfxGetStaticModuleState()->m_pCurrentWinApp) {
        AfxGetStaticModuleState()->m_pCurrentWinApp = this;
    }
    virtual ~CWinApp() { AfxGetStaticModuleState()->m_pCurrentWinApp = m_before; }
    CWinApp(const CWinApp&) = delete;
    CWinApp& operator=(const CWinApp&) = delete;
    virtual int InitInstance() { return 1; }
    virtual int ExitInstance() { return 0; }

  private:
    CWinApp* m_before;
};

/// There are no resources to be searched for along a chain of modules: registering is remembered, no more.
struct AFX_EXTENSION_MODULE {
    bool bInitialized = false;
};
inline bool AfxInitExtensionModule(AFX_EXTENSION_MODULE& extension, void*) {
    return extension.bInitialized = true;
}
struct CDynLinkLibrary {
    explicit CDynLinkLibrary(AFX_EXTENSION_MODULE&) {}
};
inline void AfxEnableControlContainer() {}
