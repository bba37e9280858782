#include "app.h"

#include <dorsel/globals.h>
#include <dorsel/paths.h>
#include <dorsel/strings.h>
#include <kestra/frame/help_dispatch.h>
#include <kestra/frame/start_up.h>
#include <platform/process_hooks.h>

CKestraApp::CKestraApp() {
    g_Version = kestra::familyVersion;
    STR::Init_tables_car();
    kestra::installHelpHook();
    kestra::readStartUpSettings();
}

CKestraApp::~CKestraApp() {
    kestra::removeHelpHook();
}

int CKestraApp::InitInstance() {
    const int result = CWinApp::InitInstance();
    platform::letWindowsComeToFront();
    registerExtension();
    if (m_instances == 0) {
        DOS::CreateDir("c:\\temp", 4);
        kestra::readCompanyName();
    }
    ++m_instances;
    kestra::readProjectionName();
    kestra::checkSharedBlock();
    return result;
}

void CKestraApp::registerExtension() {
    if (m_library == nullptr) {
        AfxInitExtensionModule(m_extension, AfxGetStaticModuleState()->m_hCurrentInstanceHandle);
        m_library = std::make_unique<CDynLinkLibrary>(m_extension);
    }
    AfxEnableControlContainer();
}

int CKestraApp::ExitInstance() {
    if (m_instances-- == 1) kestra::cleanUpAtLastExit();
    return CWinApp::ExitInstance();
}
