#include "code_hook.h"

#include <cstdint>
#include <cstring>

#include <platform/process_hooks.h>

namespace kestra {
namespace {

/// 90 90 FF 25 00 00 00 00: no-operation twice, jump through the address behind the instruction.
constexpr std::uint64_t jumpThroughNextWord = 0x25FF9090;

}  // namespace

bool CodeHook::install(void* entry, const void* target) {
    if (isInstalled() || entry == nullptr || !platform::makeCodeWritable(entry, size)) return false;
    std::memcpy(m_saved.data(), entry, size);
    std::memcpy(m_jump.data(), &jumpThroughNextWord, sizeof jumpThroughNextWord);
    std::memcpy(m_jump.data() + sizeof jumpThroughNextWord, &target, sizeof target);
    m_entry = entry;
    write(m_jump);
    return true;
}

void CodeHook::remove() {
    write(m_saved);
    m_entry = nullptr;
}

void CodeHook::write(const Bytes& bytes) {
    if (m_entry == nullptr) return;
    std::memcpy(m_entry, bytes.data(), size);
    platform::codeWritten(m_entry, size);
}

}  // namespace kestra
