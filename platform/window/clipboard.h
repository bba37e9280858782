#pragma once
#include <windows.h>

#include <string_view>

namespace platform {

/// The clipboard, open for a window while this lives; another program may hold it, then this is false.
class OpenedClipboard {
  public:
    explicit OpenedClipboard(HWND owner) : m_open(::OpenClipboard(owner) != FALSE) {}
    ~OpenedClipboard() {
        if (m_open) ::CloseClipboard();
    }
    OpenedClipboard(const OpenedClipboard&) = delete;
    OpenedClipboard& operator=(const OpenedClipboard&) = delete;
    explicit operator bool() const { return m_open; }

    /// Hands over a text, ended by NUL. `EmptyClipboard` goes before the first.
    void put(UINT format, std::string_view text) const {
        constexpr SIZE_T slack = 10;
        const HGLOBAL memory = ::GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, text.size() + slack);
        if (memory == nullptr) return;
        text.copy(static_cast<char*>(::GlobalLock(memory)), text.size());
        ::GlobalUnlock(memory);
        if (::SetClipboardData(format, memory) == nullptr) ::GlobalFree(memory);
    }

  private:
    bool m_open;
};

}  // namespace platform
