#pragma once
#include <windows.h>

#include <platform/window/wnd.h>

class CDialog;

/// Direction and course of an exchange between a dialog's controls and its members; the DDX functions below
/// do it for one control each. After a control that does not hold what its member needs the rest of the
/// exchange is passed over.
struct DORSEL_API CDataExchange {
    CDataExchange(CDialog& dialog, bool save) : m_pDlgWnd(dialog), m_bSaveAndValidate(save) {}
    /// Notes the failure, tells the user (`text` in a message box) and puts the focus on the control.
    void Fail(int id, const char* text);

    CDialog& m_pDlgWnd;
    bool m_bSaveAndValidate;  ///< from the controls to the members
    bool m_failed = false;
};

DORSEL_API void DDX_Text(CDataExchange* exchange, int id, CString& text);
/// A whole number; anything else fails with "Entrez un nombre entier."
DORSEL_API void DDX_Text(CDataExchange* exchange, int id, int& number);
DORSEL_API void DDX_Check(CDataExchange* exchange, int id, int& checked);
/// Subclasses the control with a member the first time.
DORSEL_API void DDX_Control(CDataExchange* exchange, int id, CWnd& control);

/// A dialog built from a dialog resource, modal (`DoModal`) or not (`Create`).
///
/// What differs from what a reader may expect: the resource is searched when the dialog is shown, in the
/// module in force and then in the extension modules (`AfxFindResourceHandle`); a modeless dialog gets its
/// Tab and Enter keys from the program's loop (`CWinApp::PreTranslateMessage`); a modal one, and its
/// controls, see the messages of its own loop in `PreTranslateMessage` before they become those keys.
class DORSEL_API CDialog : public CWnd {
  public:
    /// A null parent stands for the window that the user works in: the last active one of the program's main
    /// window, else the active window of the thread, or none.
    explicit CDialog(UINT resource, CWnd* parent = nullptr) : m_resource(resource), m_parent(parent) {}
    ~CDialog() override;

    static const CRuntimeClass runtimeClass;
    const CRuntimeClass* GetRuntimeClass() const override { return &runtimeClass; }

    /// Shows the dialog until `EndDialog`; returns its result, -1 when it could not be shown. When its window
    /// was destroyed by somebody else the result is the system's, 0 or -1.
    virtual INT_PTR DoModal();
    /// Creates the dialog window, modeless; false when it could not be created.
    BOOL Create();
    /// Ends a modal dialog, hides a modeless one.
    virtual void EndDialog(int result);
    /// Moves data through `DoDataExchange`: to the members (true) or to the controls; false when a control
    /// does not hold what its member needs.
    BOOL UpdateData(BOOL save = TRUE);

    BOOL PreTranslateMessage(MSG* message) override;

  protected:
    /// Fills the controls (`UpdateData(FALSE)`); false when the focus was set by hand.
    virtual BOOL OnInitDialog();
    /// The OK button, or Enter: reads the controls and ends the dialog when that went well.
    virtual void OnOK();
    /// The cancel button, Escape or the close box.
    virtual void OnCancel();
    virtual void DoDataExchange(CDataExchange* exchange);
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;

    HWND parentWindow() const;

  private:
    static INT_PTR CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    UINT m_resource;
    CWnd* m_parent;
    bool m_modal = false;
};
