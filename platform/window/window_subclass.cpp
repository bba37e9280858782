#include <platform/window/window_subclass.h>

#include <unordered_map>

#include <platform/window/handles.h>

namespace platform {

namespace {

/// What stands before a window's own procedure. `owner` is null once it was released under another subclass.
struct Link {
    WindowSubclass* owner;
    WNDPROC previous;
};

using Links = std::unordered_map<HWND, Link>;

/// The links of this thread. Never destroyed: window objects with static storage let go after it would be.
Links& links() {
    static thread_local Links* const all = new Links;
    return *all;
}

Link* linkOf(HWND window) {
    const auto found = links().find(window);
    return found != links().end() ? &found->second : nullptr;
}

bool isOnTop(HWND window, WNDPROC procedure) {
    return reinterpret_cast<WNDPROC>(::GetWindowLongPtrA(window, GWLP_WNDPROC)) == procedure;
}

WNDPROC setProcedure(HWND window, WNDPROC procedure) {
    return reinterpret_cast<WNDPROC>(
        ::SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure)));
}

}  // namespace

WindowSubclass::Target::~Target() = default;

bool WindowSubclass::attach(HWND window) {
    if (m_window != nullptr || ::GetWindowThreadProcessId(window, nullptr) != ::GetCurrentThreadId())
        return false;
    if (Link* const link = linkOf(window)) {
        if (link->owner != nullptr) return false;
        *link = {this, link->previous};
        m_previous = link->previous;
    } else {
        m_previous = setProcedure(window, procedure);
        if (m_previous == nullptr) return false;
        links()[window] = {this, m_previous};
    }
    m_window = window;
    return true;
}

void WindowSubclass::release() {
    if (m_window == nullptr) return;
    const KeepLastError keep;
    if (Link* const link = linkOf(m_window)) {
        link->owner = nullptr;
        if (isOnTop(m_window, procedure)) {
            setProcedure(m_window, m_previous);
            links().erase(m_window);
        }
    }
    m_window = nullptr;
    m_previous = nullptr;
}

LRESULT WindowSubclass::callPrevious(UINT message, WPARAM wParam, LPARAM lParam) const {
    return m_window != nullptr ? ::CallWindowProcA(m_previous, m_window, message, wParam, lParam) : 0;
}

WindowSubclass::Target* WindowSubclass::targetOf(HWND window) {
    const Link* const link = linkOf(window);
    return link != nullptr && link->owner != nullptr ? &link->owner->m_target : nullptr;
}

LRESULT CALLBACK WindowSubclass::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const Link* const link = linkOf(window);
    if (link == nullptr) return ::DefWindowProcA(window, message, wParam, lParam);
    const LRESULT result = link->owner != nullptr
                               ? link->owner->m_target.windowMessage(message, wParam, lParam)
                               : ::CallWindowProcA(link->previous, window, message, wParam, lParam);
    if (message == WM_NCDESTROY) forget(window);
    return result;
}

void WindowSubclass::forget(HWND window) {
    const Link* const link = linkOf(window);
    if (link == nullptr) return;
    WindowSubclass* const owner = link->owner;
    links().erase(window);
    if (owner == nullptr) return;
    owner->m_window = nullptr;
    owner->m_previous = nullptr;
    owner->m_target.windowGone();
}

}  // namespace platform
