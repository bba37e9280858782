#include <platform/window/win_app.h>

#include <string>
#include <utility>

#include <platform/window/wnd.h>

namespace {

/// State of the application object that was constructed in the program's own module.
AFX_MODULE_STATE* programState = nullptr;

CString programName() {
    char path[MAX_PATH] = {};
    ::GetModuleFileNameA(nullptr, path, MAX_PATH - 1);
    const CString file = CString(path).Mid(CString(path).ReverseFind('\\') + 1);
    const int dot = file.ReverseFind('.');
    return dot > 0 ? file.Left(dot) : file;
}

}  // namespace

AFX_MODULE_STATE* AfxGetAppModuleState() {
    static AFX_MODULE_STATE bare{::GetModuleHandleA(nullptr), ::GetModuleHandleA(nullptr), nullptr};
    return programState != nullptr ? programState : &bare;
}

CString AfxGetAppName() {
    const CWinApp* const app = AfxGetAppModuleState()->m_pCurrentWinApp;
    return app != nullptr ? app->m_pszAppName : programName();
}

CWinApp::CWinApp(const char* name, AFX_MODULE_STATE* state)
    : m_hInstance(state->m_hCurrentInstanceHandle),
      m_pszAppName(name != nullptr ? CString(name) : programName()),
      m_pszProfileName(programName() + ".INI"),
      m_state(state),
      m_before(std::exchange(state->m_pCurrentWinApp, this)) {
    if (m_hInstance == ::GetModuleHandleA(nullptr)) programState = state;
}

CWinApp::~CWinApp() {
    if (m_state->m_pCurrentWinApp == this) m_state->m_pCurrentWinApp = m_before;
}

BOOL CWinApp::InitInstance() {
    return TRUE;
}

int CWinApp::ExitInstance() {
    return m_exitCode;
}

int CWinApp::Run() {
    MSG next;
    for (LONG idle = 0;;) {
        while (!::PeekMessageA(&next, nullptr, 0, 0, PM_NOREMOVE) && OnIdle(idle)) ++idle;
        if (!PumpMessage()) return ExitInstance();
        idle = 0;
    }
}

BOOL CWinApp::OnIdle(LONG) {
    return FALSE;
}

BOOL CWinApp::PumpMessage() {
    MSG message;
    const BOOL got = ::GetMessageA(&message, nullptr, 0, 0);
    return got >= 0 && dispatch(message);
}

BOOL CWinApp::PumpWaiting() {
    // Not looked at first and then fetched: a key that a hook swallows would be waited for.
    MSG message;
    while (::PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (!dispatch(message)) return FALSE;
    }
    return TRUE;
}

bool CWinApp::dispatch(MSG& message) {
    if (message.message == WM_QUIT) {
        m_exitCode = static_cast<int>(message.wParam);
        return false;
    }
    if (!PreTranslateMessage(&message)) {
        ::TranslateMessage(&message);
        ::DispatchMessageA(&message);
    }
    return true;
}

BOOL CWinApp::PreTranslateMessage(MSG* message) {
    return CWnd::WalkPreTranslateTree(nullptr, message);
}

void CWinApp::SetRegistryKey(const char* company) {
    m_pszRegistryKey = company;
    m_pszProfileName = m_pszAppName;
}

std::string CWinApp::profilePath(const char* section) const {
    const CString path = CString("Software\\") + m_pszRegistryKey + "\\" + m_pszProfileName + "\\" + section;
    return std::string(path.view());
}

int CWinApp::GetProfileInt(const char* section, const char* entry, int missing) const {
    if (m_pszRegistryKey.IsEmpty()) {
        return static_cast<int>(::GetPrivateProfileIntA(section, entry, missing, m_pszProfileName));
    }
    DWORD value = 0, size = sizeof value;
    const LSTATUS status = ::RegGetValueA(HKEY_CURRENT_USER, profilePath(section).c_str(), entry,
                                          RRF_RT_REG_DWORD, nullptr, &value, &size);
    return status == ERROR_SUCCESS ? static_cast<int>(value) : missing;
}

BOOL CWinApp::WriteProfileInt(const char* section, const char* entry, int value) {
    if (m_pszRegistryKey.IsEmpty()) {
        return ::WritePrivateProfileStringA(section, entry, std::to_string(value).c_str(), m_pszProfileName);
    }
    const auto stored = static_cast<DWORD>(value);
    return ::RegSetKeyValueA(HKEY_CURRENT_USER, profilePath(section).c_str(), entry, REG_DWORD, &stored,
                             sizeof stored) == ERROR_SUCCESS;
}

BOOL CWinApp::DeleteProfileSection(const char* section) {
    if (section == nullptr || *section == '\0') return FALSE;
    if (m_pszRegistryKey.IsEmpty()) {
        return ::WritePrivateProfileStringA(section, nullptr, nullptr, m_pszProfileName);
    }
    const LSTATUS status = ::RegDeleteTreeA(HKEY_CURRENT_USER, profilePath(section).c_str());
    return status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND;
}

int AfxWinMain(HINSTANCE, HINSTANCE, char* commandLine, int show) {
    CWinApp* const app = AfxGetAppModuleState()->m_pCurrentWinApp;
    if (app == nullptr) return -1;
    app->m_lpCmdLine = commandLine;
    app->m_nCmdShow = show;
    if (app->InitInstance()) return app->Run();
    app->ExitInstance();
    return -1;
}
