#include <dlfcn.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <string>

#include <platform/files.h>
#include <platform/linux/drive_paths.h>
#include <platform/machine.h>
#include <platform/process_hooks.h>

namespace platform {
namespace {

constexpr std::uintptr_t pageSize = 4096;

/// A pipe: the kernel refuses to write bytes into it that cannot be read, where reading them would end the
/// process.
class Probe {
  public:
    Probe() { m_open = ::pipe(m_ends) == 0; }
    ~Probe() {
        if (!m_open) return;
        ::close(m_ends[0]);
        ::close(m_ends[1]);
    }
    Probe(const Probe&) = delete;
    Probe& operator=(const Probe&) = delete;
    /// Copies at most a page.
    bool copy(std::uintptr_t address, char* out, std::size_t size) {
        const auto wanted = static_cast<ssize_t>(size);
        return m_open && ::write(m_ends[1], reinterpret_cast<const void*>(address), size) == wanted &&
               ::read(m_ends[0], out, size) == wanted;
    }

  private:
    int m_ends[2] = {-1, -1};
    bool m_open = false;
};

}  // namespace

void* systemFunction(const char*, const char*) {
    return nullptr;
}

bool makeCodeWritable(void* code, std::size_t size) {
    const auto start = reinterpret_cast<std::uintptr_t>(code) / pageSize * pageSize;
    const std::size_t length = reinterpret_cast<std::uintptr_t>(code) + size - start;
    return ::mprotect(reinterpret_cast<void*>(start), length, PROT_READ | PROT_WRITE | PROT_EXEC) == 0;
}

void codeWritten(void* code, std::size_t size) {
    __builtin___clear_cache(static_cast<char*>(code), static_cast<char*>(code) + size);
}

bool readTextAt(std::uintptr_t address, char* out, std::size_t size) {
    out[0] = '\0';
    Probe probe;
    for (std::size_t done = 0; done + 1 < size;) {
        const std::size_t wanted = std::min(size - 1 - done, pageSize - (address + done) % pageSize);
        if (!probe.copy(address + done, out + done, wanted)) {
            out[0] = '\0';
            return false;
        }
        if (std::memchr(out + done, '\0', wanted) != nullptr) return true;
        done += wanted;
        out[done] = '\0';
    }
    return true;
}

int classicHelp(HWND__*, const char* file, unsigned, std::uint32_t) {
    return file != nullptr && theMachine().classicHelp(file, nullptr) ? 1 : 0;
}

void letWindowsComeToFront() {}

std::uintptr_t loadLibrary(const char* file) {
    if (file == nullptr || *file == '\0') return 0;
    const bool hasFolder = std::any_of(file, file + std::strlen(file), isSeparator);
    const std::string name = hasFolder ? posixPath(file) : file;
    return reinterpret_cast<std::uintptr_t>(::dlopen(name.c_str(), RTLD_NOW | RTLD_NODELETE));
}

PlainFunction libraryFunction(std::uintptr_t library, const char* name) {
    return reinterpret_cast<PlainFunction>(::dlsym(reinterpret_cast<void*>(library), name));
}

}  // namespace platform
