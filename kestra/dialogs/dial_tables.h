#pragma once
#include <windows.h>

#include <kestra/database/questions.h>
#include <platform/export.h>
#include <platform/prompt.h>
#include <platform/window/controls.h>
#include <platform/window/dialog.h>

/// The window forms of what `Database` asks: the system's file dialog, and the one below. In force from the
/// moment that the module is loaded.
KESTRA_API extern const kestra::DatabaseDialogs windowDialogs;

/// Choice of one text of a list that two check boxes widen and narrow, such as the tables and queries of a
/// database. A double click chooses too; Cancel leaves the question as it stands then.
class KESTRA_API CDialTables : public CDialog {
  public:
    /// The question is not owned; its `selected` follows the list.
    explicit CDialTables(platform::ListQuestion& question, CWnd* parent = nullptr);

    static const CRuntimeClass runtimeClass;
    const CRuntimeClass* GetRuntimeClass() const override { return &runtimeClass; }

  protected:
    BOOL OnInitDialog() override;
    void OnOK() override;
    void DoDataExchange(CDataExchange* exchange) override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;

  private:
    void onBoxClicked();
    void showEntries();

    platform::ListQuestion& m_question;
    CListBox m_list;
};
