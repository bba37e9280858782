#include <windows.h>

#include <algorithm>
#include <cstring>

#include <platform/process_hooks.h>

namespace platform {
namespace {

constexpr std::uintptr_t pageSize = 4096;

template <class Function>
Function castFunction(FARPROC function) {
    return reinterpret_cast<Function>(reinterpret_cast<void (*)()>(function));
}

}  // namespace

void* systemFunction(const char* library, const char* name) {
    const HMODULE module = ::GetModuleHandleA(library);
    return module != nullptr ? reinterpret_cast<void*>(::GetProcAddress(module, name)) : nullptr;
}

bool makeCodeWritable(void* code, std::size_t size) {
    DWORD before = 0;
    return ::VirtualProtect(code, size, PAGE_EXECUTE_READWRITE, &before) != 0;
}

void codeWritten(void* code, std::size_t size) {
    ::FlushInstructionCache(::GetCurrentProcess(), code, size);
}

bool readTextAt(std::uintptr_t address, char* out, std::size_t size) {
    out[0] = '\0';
    for (std::size_t done = 0; done + 1 < size;) {
        const std::size_t wanted = std::min(size - 1 - done, pageSize - (address + done) % pageSize);
        SIZE_T got = 0;
        if (!::ReadProcessMemory(::GetCurrentProcess(), reinterpret_cast<const void*>(address + done),
                                 out + done, wanted, &got) ||
            got != wanted) {
            out[0] = '\0';
            return false;
        }
        if (std::memchr(out + done, '\0', got) != nullptr) return true;
        done += got;
        out[done] = '\0';
    }
    return true;
}

int classicHelp(HWND__* window, const char* file, unsigned command, std::uint32_t data) {
    return ::WinHelpA(window, file, command, data);
}

void letWindowsComeToFront() {
    ::AllowSetForegroundWindow(ASFW_ANY);
    DWORD timeOut = 0;
    if (::SystemParametersInfoA(SPI_GETFOREGROUNDLOCKTIMEOUT, 0, &timeOut, 0) && timeOut != 0)
        ::SystemParametersInfoA(SPI_SETFOREGROUNDLOCKTIMEOUT, 0, nullptr,
                                SPIF_UPDATEINIFILE | SPIF_SENDCHANGE);
}

std::uintptr_t loadLibrary(const char* file) {
    return file != nullptr ? reinterpret_cast<std::uintptr_t>(::LoadLibraryA(file)) : 0;
}

PlainFunction libraryFunction(std::uintptr_t library, const char* name) {
    return castFunction<PlainFunction>(::GetProcAddress(reinterpret_cast<HMODULE>(library), name));
}

}  // namespace platform
