#pragma once
#include <windows.h>

#include <memory>

namespace platform {

/// Closes a kernel handle.
struct CloseKernelHandle {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const { ::CloseHandle(handle); }
};
using UniqueHandle = std::unique_ptr<void, CloseKernelHandle>;

}  // namespace platform
