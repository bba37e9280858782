#pragma once
#include <windows.h>

#include <cstdint>
#include <string>

/// What the process holds of the system: GDI objects, windows and handles. Wine's GetGuiResources and
/// GetProcessHandleCount count nothing: GDI objects are counted in the table that the system shares with each
/// process, the others by the place that a new one takes.
class ResourceCounts {
  public:
    ResourceCounts() {
        countGdi();
        m_userPlace = newMenuPlace();
        m_handlePlace = newHandlePlace();
    }
    std::string text() const {
        return "GDI objects " + std::to_string(m_gdi) + ", next free place among windows and menus " +
               std::to_string(m_userPlace) + ", among handles " + std::to_string(m_handlePlace);
    }

  private:
    /// An entry of the table (64-bit systems).
    struct GdiEntry {
        void* object;
        std::uint16_t process;
        std::uint16_t count;
        std::uint16_t generation;
        std::uint8_t type;
        std::uint8_t flags;
        void* user;
    };
    static_assert(sizeof(GdiEntry) == 24);
    static constexpr int tableSize = 65536;

    void countGdi() {
        constexpr std::size_t tableInPeb = 0xF8;
        const auto processBlock = reinterpret_cast<const std::uint8_t* (*)()>(reinterpret_cast<void (*)()>(
            ::GetProcAddress(::GetModuleHandleA("ntdll.dll"), "RtlGetCurrentPeb")));
        const std::uint8_t* const peb = processBlock();
        const auto* const table = *reinterpret_cast<const GdiEntry* const*>(peb + tableInPeb);
        if (table == nullptr) return;
        const auto process = static_cast<std::uint16_t>(::GetCurrentProcessId());
        for (int i = 0; i < tableSize; ++i)
            if (table[i].type != 0 && (table[i].process == 0 || (table[i].process & ~1) == (process & ~1)))
                ++m_gdi;
    }
    /// Places are taken again when they are free: a leak pushes this number up.
    static unsigned newMenuPlace() {
        const HMENU menu = ::CreateMenu();
        const auto index = static_cast<unsigned>(reinterpret_cast<UINT_PTR>(menu) & 0xFFFF);
        ::DestroyMenu(menu);
        return index;
    }
    static unsigned newHandlePlace() {
        const HANDLE event = ::CreateEventA(nullptr, FALSE, FALSE, nullptr);
        const auto place = static_cast<unsigned>(reinterpret_cast<UINT_PTR>(event));
        ::CloseHandle(event);
        return place;
    }

    int m_gdi = 0;
    unsigned m_userPlace = 0;
    unsigned m_handlePlace = 0;
};
