#pragma once
#include <windows.h>

#include <platform/window/wnd.h>

/// The system's small controls. Each operation sends the message of its name; on a missing window it returns
/// 0. Texts are Windows-1252, indices count from 0, -1 stands for none.

class DORSEL_API CButton : public CWnd {
  public:
    BOOL Create(const char* text, DWORD style, const RECT& rect, const CWnd* parent, UINT id);
    int GetCheck() const { return static_cast<int>(SendMessage(BM_GETCHECK)); }
    void SetCheck(int check) { SendMessage(BM_SETCHECK, static_cast<WPARAM>(check)); }
};

class DORSEL_API CEdit : public CWnd {
  public:
    BOOL Create(DWORD style, const RECT& rect, const CWnd* parent, UINT id);
    /// Selection as character positions; the second is where it ends.
    void GetSel(int& start, int& end) const;
    void SetSel(int start, int end);
    void ReplaceSel(const char* text, BOOL canUndo = FALSE);
    void LimitText(int characters) { SendMessage(EM_LIMITTEXT, static_cast<WPARAM>(characters)); }
    void SetReadOnly(BOOL readOnly = TRUE) { SendMessage(EM_SETREADONLY, static_cast<WPARAM>(readOnly)); }
};

class DORSEL_API CListBox : public CWnd {
  public:
    BOOL Create(DWORD style, const RECT& rect, const CWnd* parent, UINT id);
    /// Index of the new text; negative on failure.
    int AddString(const char* text);
    int DeleteString(int index) { return ask(LB_DELETESTRING, index); }
    void ResetContent() { SendMessage(LB_RESETCONTENT); }
    int GetCount() const { return ask(LB_GETCOUNT, 0); }
    int GetCurSel() const { return ask(LB_GETCURSEL, 0); }
    int SetCurSel(int index) { return ask(LB_SETCURSEL, index); }
    /// Length of the text; `text` is untouched and the result negative when there is no such entry.
    int GetText(int index, CString& text) const;
    DWORD_PTR GetItemData(int index) const;
    int SetItemData(int index, DWORD_PTR data);

  private:
    int ask(UINT message, int index) const {
        return static_cast<int>(SendMessage(message, static_cast<WPARAM>(index)));
    }
};

class DORSEL_API CComboBox : public CWnd {
  public:
    BOOL Create(DWORD style, const RECT& rect, const CWnd* parent, UINT id);
    int AddString(const char* text);
    int DeleteString(int index) { return ask(CB_DELETESTRING, index); }
    void ResetContent() { SendMessage(CB_RESETCONTENT); }
    int GetCount() const { return ask(CB_GETCOUNT, 0); }
    int GetCurSel() const { return ask(CB_GETCURSEL, 0); }
    int SetCurSel(int index) { return ask(CB_SETCURSEL, index); }
    int GetLBText(int index, CString& text) const;
    DWORD_PTR GetItemData(int index) const;
    int SetItemData(int index, DWORD_PTR data);
    /// Entry that equals `text` without regard to case, searched behind `after`; -1 for none.
    int FindStringExact(int after, const char* text) const;
    int GetDroppedWidth() const { return ask(CB_GETDROPPEDWIDTH, 0); }
    int SetDroppedWidth(int width) { return ask(CB_SETDROPPEDWIDTH, width); }
    void ShowDropDown(BOOL show = TRUE) { SendMessage(CB_SHOWDROPDOWN, static_cast<WPARAM>(show)); }

  private:
    int ask(UINT message, int index) const {
        return static_cast<int>(SendMessage(message, static_cast<WPARAM>(index)));
    }
};
