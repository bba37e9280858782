#pragma once
#include <windows.h>

#include <platform/cstring.h>
#include <platform/export.h>

/// Which module's resources (dialogs, texts, menus, icons) are meant: each module of the process has a state
/// of its own, one of them is in force on a thread, and extension modules stand behind it in a chain that is
/// searched when the one in force does not hold what is asked for.
///
/// What differs from what a reader may expect:
/// - `AfxGetStaticModuleState` is compiled into each module that calls it and answers for that very module,
///   while everything else lives once in the process, in the base module;
/// - a state is never owned by the framework: it lives as long as its module is loaded;
/// - the state in force belongs to a thread; the chain belongs to the process and is not locked (it changes
///   when modules are loaded and unloaded, on the user-interface thread).
class CWinApp;

/// State of one module. `m_hCurrentInstanceHandle` is the module itself, `m_hCurrentResourceHandle` the
/// module whose resources stand for it (usually itself), `m_pCurrentWinApp` its application object (null for
/// none; the object puts itself there and takes itself away).
struct AFX_MODULE_STATE {
    HINSTANCE m_hCurrentInstanceHandle = nullptr;
    HINSTANCE m_hCurrentResourceHandle = nullptr;
    CWinApp* m_pCurrentWinApp = nullptr;
};

extern "C" IMAGE_DOS_HEADER __ImageBase;

/// State of the module that this call is compiled into.
inline AFX_MODULE_STATE* AfxGetStaticModuleState() {
    static AFX_MODULE_STATE state{reinterpret_cast<HINSTANCE>(&__ImageBase),
                                  reinterpret_cast<HINSTANCE>(&__ImageBase), nullptr};
    return &state;
}

/// State of the program: that of the application object constructed in the program's own module, else a
/// state that only names the program. Never null.
DORSEL_API AFX_MODULE_STATE* AfxGetAppModuleState();
/// State in force on this thread: the one last set, else the program's. Never null.
DORSEL_API AFX_MODULE_STATE* AfxGetModuleState();
/// Puts a state in force on this thread and returns the one set before; null stands for the program's.
DORSEL_API AFX_MODULE_STATE* AfxSetModuleState(AFX_MODULE_STATE* state);

/// Scope token: `state` is in force on this thread while it lives.
///     AfxManageState resources(KestraModuleState());
class AfxManageState {
  public:
    explicit AfxManageState(AFX_MODULE_STATE* state) : m_before(AfxSetModuleState(state)) {}
    ~AfxManageState() { AfxSetModuleState(m_before); }
    AfxManageState(const AfxManageState&) = delete;
    AfxManageState& operator=(const AfxManageState&) = delete;

  private:
    AFX_MODULE_STATE* m_before;
};

/// Application object of the state in force, null for none.
DORSEL_API CWinApp* AfxGetApp();
/// Module and resource module of the state in force.
DORSEL_API HINSTANCE AfxGetInstanceHandle();
DORSEL_API HINSTANCE AfxGetResourceHandle();
/// Makes another module the resource module of the state in force.
DORSEL_API void AfxSetResourceHandle(HINSTANCE resources);

/// What an extension module tells of itself. Lives in the module, zero until `AfxInitExtensionModule`.
struct AFX_EXTENSION_MODULE {
    bool bInitialized = false;
    HMODULE hModule = nullptr;
    HMODULE hResource = nullptr;
};

/// Fills `extension` for `module` (its resources are its own, or `resources` when given). Always true.
DORSEL_API bool AfxInitExtensionModule(AFX_EXTENSION_MODULE& extension, HMODULE module,
                                       HMODULE resources = nullptr);
/// Takes the module out of the chain, and clears `extension`. The entries that were made with `new` stay
/// their maker's to delete; entries deleted later find themselves gone already.
DORSEL_API void AfxTermExtensionModule(AFX_EXTENSION_MODULE& extension);

/// One entry in the chain of extension modules; it enters at the end when constructed and leaves when
/// destroyed. It copies what `AFX_EXTENSION_MODULE` says, so that one may go first.
class DORSEL_API CDynLinkLibrary {
  public:
    explicit CDynLinkLibrary(AFX_EXTENSION_MODULE& extension);
    ~CDynLinkLibrary();
    CDynLinkLibrary(const CDynLinkLibrary&) = delete;
    CDynLinkLibrary& operator=(const CDynLinkLibrary&) = delete;

    HMODULE m_hModule;
    HMODULE m_hResource;
};

/// Module that holds a resource (`name` and `type` as FindResourceA takes them): the resource module in
/// force, else the first of the chain in the order of registration. When nobody has it the answer is the one
/// in force, so that the caller's load fails in the ordinary way.
DORSEL_API HINSTANCE AfxFindResourceHandle(const char* name, const char* type);

/// Puts string resource `id`, searched as above, into `text` as Windows-1252. False, `text` untouched, when
/// nobody has it; an empty string resource counts as absent.
DORSEL_API bool AfxLoadString(unsigned id, CString& text);

/// Announces that the process may hold control containers. The framework hosts none: this only notes the wish
/// (`AfxControlContainerEnabled`), so that modules written for it start unchanged.
DORSEL_API void AfxEnableControlContainer();
DORSEL_API bool AfxControlContainerEnabled();
