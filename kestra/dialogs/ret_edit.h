#pragma once
#include <windows.h>

#include <platform/export.h>
#include <platform/window/controls.h>

/// A text editor of one line that keeps the Return key: instead of pressing the default button of its dialog
/// it tells its parent, with a command notification of the code `returnPressed`.
///
/// What differs from what a reader may expect:
/// - Ctrl+A selects the whole text, whatever common controls the process has;
/// - Return and Ctrl+A never beep; Tab, Escape and all other keys stay the dialog's or the editor's own;
/// - a parent may destroy the editor, its window and its object, while it is told of the Return.
/// An editor with ES_MULTILINE takes Return as a line end when it has ES_WANTRETURN too; nothing is told
/// then.
class KESTRA_API CRetEdit : public CEdit {
  public:
    /// Code of WM_COMMAND: the user has pressed Return. Kept clear of the system's EN_ codes and of the
    /// notifications of the lists (1026: the current cell has moved).
    static constexpr WORD returnPressed = 1025;

    static const CRuntimeClass runtimeClass;
    const CRuntimeClass* GetRuntimeClass() const override { return &runtimeClass; }

  protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    bool keepsReturn() const;
    void tellReturn();
};
