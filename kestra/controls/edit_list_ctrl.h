#pragma once
#include <windows.h>

#include <cstdint>
#include <memory>
#include <optional>

#include <kestra/controls/lra_list_ctrl.h>
#include <kestra/controls/record_button.h>
#include <kestra/dialogs/ret_edit.h>
#include <platform/window/controls.h>

namespace controls {
struct GridCell;
struct GridKeyDecision;
struct GridKeyState;
}  // namespace controls

/// The editable grid: a report list with a current cell that the keyboard moves, an editor over that cell,
/// check-box columns, a menu of the right mouse button, deletion after a question, and a record navigator.
///
/// What differs from what a reader may expect:
/// - it is read-only until its owner sets `m_EditFlags` to 1; call `Initialize(0)` once the columns are there
///   (the first click does it otherwise): the text editors exist from then on;
/// - keys are caught by one keyboard hook of the thread that made the first grid, so that arrows, Tab and
///   Enter work while an editor has the focus. Real keys only: posted key messages pass by the hook. Keys
///   with Alt, Ctrl+Tab (it leaves the grid in a dialog), and the keys of an open drop-down list are never
///   taken; Shift+Tab goes back;
/// - while `m_LastFixedCol` is above 0 column 0 is a row header, drawn as a button; columns below
///   `m_LastFixedCol` have no editor. An editor over column 0 is not committed by moving away from it: a
///   grid that edits sets `m_LastFixedCol` to 1 or more;
/// - what is typed reaches the list when the cell is left, and `UpdateEdit(3)` when the owner asks for it: a
///   host does so before it closes;
/// - the parent hears of every move as WM_COMMAND with the control's id and the code `cellMoved`. It, and
///   every virtual operation, may destroy the window or the grid itself; the call that led there then returns
///   0 and touches nothing more.
/// The virtual operations let a derived list give rows another home, such as a database. Rows and columns
/// count from 0, -1 stands for none, results are 1 for done and 0 for refused unless told otherwise.
class KESTRA_API CEditListCtrl : public CLraListCtrl, private RecordTarget {
  public:
    /// Code of WM_COMMAND: another cell may be current.
    static constexpr WORD cellMoved = 1026;
    /// Bits of `m_EditFlags`.
    enum EditFlag : std::int32_t {
        editable = 1,
        rowChanged = 4,    ///< the user changed a cell of the current row
        cellInEditor = 8,  ///< an editor holds the current cell
    };
    /// Bit of `m_GridOptions`: no menu on a right click. Bit of `m_PendingFlags`: a row was added, the rows
    /// are counted anew when the user leaves it.
    enum GridOption : std::int32_t { noMenu = 2 };
    enum PendingFlag : std::int32_t { rowAdded = 2 };
    /// Codes of `UpdateEdit`.
    enum UpdateCode : int { commitCell = 1, commitRow = 2, dropEditor = 4, commitAll = -1 };
    /// `GetSubItemValue` of a cell that cannot be edited.
    static constexpr int noValue = INT32_MIN;

    CEditListCtrl();
    ~CEditListCtrl() override;

    static const CRuntimeClass runtimeClass;
    const CRuntimeClass* GetRuntimeClass() const override { return &runtimeClass; }

    std::int32_t m_GridOptions = 0;
    CRecordButton* m_pRecordButton = nullptr;  ///< see `LinkRecordButton`; not owned
    LraListColum* m_pCurCol = nullptr;         ///< record of the edited cell's column; null without one
    std::int32_t m_EditFlags = 0;
    std::int32_t m_PendingFlags = 0;
    CRetEdit m_LeftEditor;  ///< the grid's editors, for columns without one of their own
    CEdit m_RightEditor;
    CEdit m_CenterEditor;
    CWnd* m_pActiveEditor = nullptr;  ///< the editor in use; not owned

    static HHOOK m_WindowsHook;          ///< the keyboard hook, null without grids
    static std::int32_t m_nWindowsHook;  ///< living grids

    /// The current cell is about to become (row, col); 0 refuses. Here: 1.
    virtual int onSubItemChange(int row, int col);
    /// It was (row, col) before. Here: 0.
    virtual int onSubItemChanged(int row, int col);
    /// Non-zero: there is nothing to edit. Here: 0.
    virtual int DataBaseIsEmpty();
    /// Moves to a row, from column `col`; 0 ends the move. Here: notes the row.
    virtual int UpdateMove(int row, int col);
    /// Text of a cell of the current row, attribute bits as `GetValue`, or `noValue`.
    virtual int GetSubItemValue(int col, CString& out);
    /// Stores a text in a cell of the current row, or of any row; 0 when it cannot be stored.
    virtual int SetSubItemValue(int col, CString value);
    virtual int SetValue(int row, int col, CString value);
    /// Deletes the selected rows after "D'accord pour Effacer %d Enregistrements"; returns how many went.
    virtual int Delete();
    /// The rows have changed under a derived list. Here: 0.
    virtual int UpdateBookmarks();
    /// Drops the changes of the row: 0 or more when that is all there is to do. Here: 0.
    virtual int CancelUpdate();
    /// Adds an empty row at the end and makes it current.
    virtual int AddNew();
    /// Commits by code bits: 1 the edited cell, 4 hides and forgets the editor (2, the row, is for derived
    /// lists). Returns 3 when a cell was stored, 0 when it was refused (the user was told "Problème de
    /// Données sur '%s'"), else 1.
    virtual int UpdateEdit(int code);
    /// As `SetCurrentSubItem` with the column by its position on the screen; rows and positions beyond the
    /// last are the last.
    virtual int SetCurrentSubItemPos(int row, int col, POINT* click = nullptr);
    /// Makes a cell current: commits the cell and, when the row changes, the row left; rows beyond the last
    /// are the last. `click` is a place in the window that the user clicked on: the selection is then the
    /// list's own affair, and a check box there is toggled. Returns 1; 0 when the move was refused; the
    /// current row when a derived list refused the row.
    virtual int SetCurrentSubItem(int row, int col, POINT* click = nullptr);
    /// The cell `step` columns further along the shown columns that can be edited, on to the next row.
    virtual int SetCurrentSubItemOffset(int step);
    /// Selects in the editor and gives it the focus; 0 without one.
    virtual int SetEditSel(int start, int end);
    /// The grid's menu. With `info` (a right click) it is filled: `flags` 1 record entries (editable grid,
    /// column 0), 2 print and copy. `flags` 4 shows it at the cursor, else `command` is the choice already
    /// made. `title` is printed on top of listings. Carries the choice out and returns it, 0 for none.
    virtual int OnRClickMenu(CMenu& menu, int flags, NMITEMACTIVATE* info, const char* title, int command);
    /// Ties a record navigator (null: none) to the grid: it shows the current row and moves it.
    virtual int LinkRecordButton(CRecordButton* button);

    /// Deals with a key pressed while `focus`, the grid or a window in it, has the focus; `info` is the
    /// hook's key information. Returns the key, 0 when it is not the grid's.
    WPARAM KeyboardHook(CWnd* focus, WPARAM key, LPARAM info);
    /// The hook's procedure.
    static LRESULT CALLBACK KeyboardProc(int code, WPARAM key, LPARAM info);

    int Initialize(int reset) override;
    int DeleteColumn(int col) override;
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    /// Draws a row: row header, check boxes, backgrounds by the attribute bits of `GetValue` (2 pink, 4 red,
    /// 8 yellow, 32 green, 64 blue), and cells with bit 16 to the end of the row.
    void DrawItem(DRAWITEMSTRUCT* draw) override;

  protected:
    BOOL OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) override;

  private:
    class Watch;

    void MoveToRecord(int record) override;
    void AddRecord() override;
    bool MayAddRecord() const override { return m_EditFlags != 0; }
    void RecordButtonGone(CRecordButton& button) override;

    // edit_list_move.cpp
    std::optional<int> move(const controls::GridCell& to, const controls::GridCell& from, const POINT* click);
    std::optional<int> leaveRow(const controls::GridCell& to, int formerColumn);
    bool leaveCell();
    void selectRow(int row, int former, const POINT* click);
    bool allowsEditor(const controls::GridCell& cell);
    void announce(const controls::GridCell& former);
    void clearRowStates();

    // edit_list_editor.cpp
    void createEditors();
    CWnd* activeEditor();
    LraListColum* currentRecord();
    void useEditor(int row, int col);
    CWnd* editorFor(int col, const LraListColum& record);
    void prepareEditor(CWnd& editor, const LraListColum& record);
    void fillEditor(int col);
    void placeEditor();
    void hideEditor();
    void forgetEditor();
    int storeEdited();
    bool toggleCheck();
    void toggleByClick(const POINT& click);
    CRect cellRect(int row, int col) const;
    void scrollToColumn(int row, int col);
    void focusEditor(CWnd& editor);

    // edit_list_keys.cpp
    controls::GridKeyState keyState(HWND focus, LPARAM info);
    void carryOut(const controls::GridKeyDecision& decision);
    void restoreCell();

    // edit_list_mouse.cpp
    void onClick(NMITEMACTIVATE& info);
    void onRightClick(NMITEMACTIVATE& info);
    void runCommand(int command, const char* title);

    // edit_list_draw.cpp
    void beforePainting();
    void drawGridCell(HDC dc, int row, int col, const RECT& cell, int bits, const CString& text,
                      bool selected);
    void drawRowHeader(HDC dc, int row, const RECT& cell, bool selected);

    std::shared_ptr<bool> m_life = std::make_shared<bool>(true);  // expires with the grid
    HWND m_editorWindow = nullptr;                                // of m_pActiveEditor
    bool m_focusOnItsWay = false;
};
