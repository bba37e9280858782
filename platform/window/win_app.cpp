#include <platform/window/win_app.h>

#include <utility>

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

CWinApp::CWinApp(const char* name, AFX_MODULE_STATE* state)
    : m_hInstance(state->m_hCurrentInstanceHandle),
      m_pszAppName(name != nullptr ? CString(name) : programName()),
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
    if (got <= 0) {
        if (got == 0) m_exitCode = static_cast<int>(message.wParam);
        return FALSE;
    }
    if (!PreTranslateMessage(&message)) {
        ::TranslateMessage(&message);
        ::DispatchMessageA(&message);
    }
    return TRUE;
}

BOOL CWinApp::PumpWaiting() {
    MSG next;
    while (::PeekMessageA(&next, nullptr, 0, 0, PM_NOREMOVE)) {
        if (!PumpMessage()) return FALSE;
    }
    return TRUE;
}

BOOL CWinApp::PreTranslateMessage(MSG*) {
    return FALSE;
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
