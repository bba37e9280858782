#pragma once
#include <array>
#include <cstddef>

namespace kestra {

/// A jump written over the first 16 bytes of a function (x86-64): two no-operation bytes, an indirect jump
/// through the next 8 bytes, and there the address of the target. No lock: a thread that runs the function
/// while the bytes change may run either form.
class CodeHook {
  public:
    static constexpr std::size_t size = 16;

    /// Saves the bytes of `entry` and writes the jump; false, and nothing changed, when `entry` is null, the
    /// system refuses, or the hook is in place already.
    bool install(void* entry, const void* target);
    /// Puts the saved bytes back for good.
    void remove();
    bool isInstalled() const { return m_entry != nullptr; }

    /// While it lives, the saved bytes are in place and the function answers for itself.
    class Lifted {
      public:
        explicit Lifted(CodeHook& hook) : m_hook(hook) { m_hook.write(m_hook.m_saved); }
        ~Lifted() { m_hook.write(m_hook.m_jump); }
        Lifted(const Lifted&) = delete;
        Lifted& operator=(const Lifted&) = delete;

      private:
        CodeHook& m_hook;
    };

  private:
    using Bytes = std::array<unsigned char, size>;
    void write(const Bytes& bytes);

    void* m_entry = nullptr;
    Bytes m_saved{};
    Bytes m_jump{};
};

}  // namespace kestra
