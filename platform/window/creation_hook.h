#pragma once
#include <windows.h>

#include <platform/window/wnd.h>

/// Scope token around a call that creates the window of `object` (CreateWindowEx, the dialog functions): the
/// object subclasses the first window that is created on this thread, before that window's first message.
/// Input-method windows, which the system slips in, are passed over.
class CreationHook {
  public:
    explicit CreationHook(CWnd& object);
    ~CreationHook();
    CreationHook(const CreationHook&) = delete;
    CreationHook& operator=(const CreationHook&) = delete;

  private:
    static LRESULT CALLBACK procedure(int code, WPARAM wParam, LPARAM lParam);

    CWnd* m_object;
    CreationHook* m_before;
    HHOOK m_hook;
};
