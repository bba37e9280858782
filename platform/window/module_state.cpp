#include <platform/window/module_state.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace {

thread_local AFX_MODULE_STATE* stateInForce = nullptr;
bool controlContainer = false;

std::vector<CDynLinkLibrary*>& chain() {
    static std::vector<CDynLinkLibrary*> libraries;
    return libraries;
}

bool holds(HMODULE module, const char* name, const char* type) {
    return ::FindResourceA(module, name, type) != nullptr;
}

/// Text of a string resource of one module, in place; empty when it has none.
std::wstring_view stringResource(HMODULE module, unsigned id) {
    const wchar_t* text = nullptr;
    const int length = ::LoadStringW(module, id, reinterpret_cast<LPWSTR>(&text), 0);
    return length > 0 ? std::wstring_view(text, static_cast<std::size_t>(length)) : std::wstring_view();
}

std::string cp1252FromWide(std::wstring_view text) {
    const int length = static_cast<int>(text.size());
    std::string result(text.size(), '\0');
    ::WideCharToMultiByte(1252, 0, text.data(), length, result.data(), length, nullptr, nullptr);
    return result;
}

}  // namespace

AFX_MODULE_STATE* AfxGetModuleState() {
    return stateInForce != nullptr ? stateInForce : AfxGetAppModuleState();
}

AFX_MODULE_STATE* AfxSetModuleState(AFX_MODULE_STATE* state) {
    return std::exchange(stateInForce, state);
}

CWinApp* AfxGetApp() {
    return AfxGetModuleState()->m_pCurrentWinApp;
}

HINSTANCE AfxGetInstanceHandle() {
    return AfxGetModuleState()->m_hCurrentInstanceHandle;
}

HINSTANCE AfxGetResourceHandle() {
    return AfxGetModuleState()->m_hCurrentResourceHandle;
}

void AfxSetResourceHandle(HINSTANCE resources) {
    AfxGetModuleState()->m_hCurrentResourceHandle = resources;
}

bool AfxInitExtensionModule(AFX_EXTENSION_MODULE& extension, HMODULE module, HMODULE resources) {
    extension = {true, module, resources != nullptr ? resources : module};
    return true;
}

void AfxTermExtensionModule(AFX_EXTENSION_MODULE& extension) {
    std::erase_if(chain(),
                  [&](const CDynLinkLibrary* library) { return library->m_hModule == extension.hModule; });
    extension = {};
}

CDynLinkLibrary::CDynLinkLibrary(AFX_EXTENSION_MODULE& extension)
    : m_hModule(extension.hModule), m_hResource(extension.hResource) {
    chain().push_back(this);
}

CDynLinkLibrary::~CDynLinkLibrary() {
    std::erase(chain(), this);
}

HINSTANCE AfxFindResourceHandle(const char* name, const char* type) {
    const HINSTANCE inForce = AfxGetResourceHandle();
    if (holds(inForce, name, type)) return inForce;
    const auto found = std::find_if(chain().begin(), chain().end(), [&](const CDynLinkLibrary* library) {
        return holds(library->m_hResource, name, type);
    });
    return found != chain().end() ? (*found)->m_hResource : inForce;
}

bool AfxLoadString(unsigned id, CString& text) {
    std::wstring_view found = stringResource(AfxGetResourceHandle(), id);
    for (const CDynLinkLibrary* library : chain()) {
        if (!found.empty()) break;
        found = stringResource(library->m_hResource, id);
    }
    if (found.empty()) return false;
    text = std::string_view(cp1252FromWide(found));
    return true;
}

void AfxEnableControlContainer() {
    controlContainer = true;
}

bool AfxControlContainerEnabled() {
    return controlContainer;
}
