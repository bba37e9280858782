#include <windows.h>

#include <cstdlib>

#include <platform/window/win_app.h>

#include "demo_run.h"
#include "grid_run.h"
#include "main_window.h"

/// Usage: kestra_demo [FILE.cht] | --demo FILE.cht FOLDER | --demo-grid FILE.cht FOLDER | --demo-again
/// FILE.cht FOLDER
class DemoApp : public CWinApp {
  public:
    BOOL InitInstance() override {
        if (!CWinApp::InitInstance() || !m_window.create()) return FALSE;
        m_pMainWnd = &m_window;
        m_window.ShowWindow(m_nCmdShow);
        m_window.UpdateWindow();
        if (__argc == 4) {
            m_result = runDemo(__argv[1], __argv[2], endedBySeparator(__argv[3]));
            m_window.PostMessage(WM_CLOSE);
        } else if (__argc == 2) {
            m_window.open(__argv[1]);
        }
        return TRUE;
    }

    int ExitInstance() override {
        const int code = CWinApp::ExitInstance();
        return m_result != 0 ? m_result : code;
    }

  private:
    int runDemo(std::string_view part, const char* project, const std::string& folder) {
        if (part == "--demo") return DemoRun(m_window, folder).run(project);
        if (part == "--demo-grid") return GridRun(m_window, folder).run(project);
        return part == "--demo-again" ? GridRun(m_window, folder).again(project) : 1;
    }
    static std::string endedBySeparator(std::string folder) {
        if (!folder.ends_with('\\')) folder += '\\';
        return folder;
    }

    MainWindow m_window;
    int m_result = 0;
};

namespace {

DemoApp theApp;

}  // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE previous, char* commandLine, int show) {
    return AfxWinMain(instance, previous, commandLine, show);
}
