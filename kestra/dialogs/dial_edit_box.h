#pragma once
#include <windows.h>

#include <platform/cstring.h>
#include <platform/export.h>
#include <platform/window/dialog.h>

/// Asks for one line of text: a label, an editor with the text selected, OK and Cancel.
class KESTRA_API CDialEditBox : public CDialog {
  public:
    explicit CDialEditBox(CWnd* parent = nullptr);

    static const CRuntimeClass runtimeClass;
    const CRuntimeClass* GetRuntimeClass() const override { return &runtimeClass; }

    CString m_titre;   ///< window title; empty: "Saisie"
    CString m_texte;   ///< label above the editor; its "&" gives the editor an access key; empty: "&Valeur :"
    CString m_valeur;  ///< the text; changed by OK only
    int m_longueur = 0;  ///< longest text in characters; 0: no limit. A longer one may stay, not grow
    /// Refuses what may not be entered: OK then keeps the dialog open, the editor has the focus. Null accepts
    /// all. It tells the user itself what is wrong.
    bool (*m_accepte)(const CString& value, void* context) = nullptr;
    void* m_contexte = nullptr;  ///< handed to `m_accepte`

    INT_PTR DoModal() override;

  protected:
    BOOL OnInitDialog() override;
    void OnOK() override;
    void DoDataExchange(CDataExchange* exchange) override;

  private:
    bool accepts(const CString& entered) const;
};

/// Lets the user edit `text` under a title and a label (null: those of `CDialEditBox`), at most `longest`
/// characters (0: any). IDOK, or IDCANCEL with `text` untouched.
KESTRA_API int EditStringBox(CString& text, const char* title = nullptr, const char* label = nullptr,
                             int longest = 0, CWnd* parent = nullptr);
