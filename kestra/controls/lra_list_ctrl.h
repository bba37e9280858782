#pragma once
#include <windows.h>

#include <cstddef>
#include <cstdint>

#include <kestra/controls/lra_header_ctrl.h>
#include <platform/cstring.h>
#include <platform/export.h>
#include <platform/window/list_control.h>

class CMenu;
class ListSortTable;
namespace controls {
struct LayoutPlan;
}

/// The report list on which every list of the library is built: a record per column, sorting by a click on a
/// caption, a header menu, columns fitted to their cells, Ctrl+A, a row height, export and a saved layout.
///
/// What differs from what a reader may expect:
/// - item data is 64 bits wide and belongs to the caller, but sorting a list whose first row has no data
///   (0) NUMBERS ALL ROWS: see `SortColum`;
/// - `InsertItem`, `SetItemData`, `GetColumnWidth` and others hide those of the base class and are virtual;
/// - the column records hang on the header's items (an item whose application value is below 1000 has none
///   yet) and go with their column, with the window, or with this object;
/// - a window given by `SubclassWindow` or a dialog is completed at the first message that it receives: that
///   is when the header is found and the fields are reset;
/// - after `Initialize(0)` rows are drawn by `DrawItem`, which needs a parent that is a `CWnd`.
///
/// Rows and columns count from 0, sizes are pixels, texts Windows-1252. Every operation on a missing window,
/// header or record returns 0, null or an all-zero rectangle and does nothing, unless it says otherwise.
/// Everything runs on the thread of the window.
class KESTRA_API CLraListCtrl : public CListCtrl {
  public:
    using SortProc = CListCtrl::CompareProc;

    /// What the list knows of one column. Owned by the list.
    struct KESTRA_API LraListColum {
        ~LraListColum();
        CWnd* pEditWnd;          ///< in-place editor, owned; null in a plain list
        std::int32_t ColStyle;   ///< 0 plain text, 2 edited in a combo box, 3 check box
        std::int32_t ReadOnly;   ///< cells may not be edited
        std::int32_t FtypeData;  ///< character code of the data type; 66 ("B") is boolean
        std::int32_t nParam;     ///< longest text of the cell editor, for the types "T" and "N"
        void* pBuffer;           ///< of derived lists; released with `free`
        std::int32_t Width;      ///< as last set; negative: hidden, and how wide to show it again
    };

    CLraListCtrl();
    ~CLraListCtrl() override;

    static const CRuntimeClass runtimeClass;
    const CRuntimeClass* GetRuntimeClass() const override { return &runtimeClass; }

    CLraHeaderCtrl m_HeaderCtrl;
    SortProc m_pSortProc = LraSortCompareProc;  ///< null: the list does not sort
    std::int32_t m_ColSort = 1;                 ///< column + 1, negative for descending, 0 for none
    CString m_RegName;                          ///< name of the saved layout; saved at the end when not empty
    std::int32_t m_Options = 1;                 ///< bit 0: Ctrl+A selects all rows
    std::int32_t m_nColumns = 0;                ///< columns, as `GetMyListHeader` last saw them
    std::int32_t m_nItems = 0;                  ///< rows, as `UpdateItemCount` last saw them
    std::int32_t m_LastFixedCol = 0;            ///< last column that the user may not hide
    std::int32_t m_FocusRow = -1;               ///< row last made current
    std::int32_t m_FocusSubItem = -1;           ///< column last made current (editable grid)
    std::int32_t m_ItemHeight = 0;              ///< row height; 0: the platform's
    std::int32_t m_Initialized = 0;             ///< `Initialize(0)` has run

    /// Consecutive Escape keys of the grids of the process; reset by every new or reset list.
    static std::int32_t m_nEscapes;

    /// Rectangle of a row; a negative `row` means the focused one, else `m_FocusRow` when that is above 0 (a
    /// remembered row 0 counts as none). Rows beyond the last are the last. All zero when there is none.
    virtual CRect GetFocusedPos(int row);
    /// Scrolls a row to where `previous` was on the screen, then wholly into view, and returns its rectangle.
    /// The row is chosen as in `GetFocusedPos`, but a remembered row 0 counts; without one, `previous`.
    virtual CRect SetFocusedPos(RECT previous, int row);
    /// `reset` 1: puts the fields back to their first values (not the layout's name, the comparer and the
    /// fixed columns); returns 1. `reset` 0: once, makes it a report view with owner-drawn, unsorted rows,
    /// hides the in-place editors and measures the row height; returns 1, or 0 when there is no header.
    virtual int Initialize(int reset);
    /// Refreshes `m_nItems`; repaints the list when it changed or is 0. Returns it.
    virtual int UpdateItemCount();
    /// Selects all rows; returns `m_nItems` as it stands.
    virtual int onSelectAll();
    /// Sorts by the signed column `col` (column + 1, negative for descending), which becomes `m_ColSort`;
    /// 65536 or more sorts again as before. When row 0 carries no item data all rows are first numbered from
    /// 1, and afterwards the row that has come to the top gets 0 again. The current row stays current and is
    /// scrolled into view. Returns 1, or 0 when there is no comparer.
    virtual int SortColum(int col);
    /// Sorts with the platform. With `LraSortCompareProc` on this very list each row's data and text are
    /// found once, not at every comparison; the order is the same.
    virtual int SortItems(SortProc compare, LPARAM context);
    /// `SortItems`, then the row that was focused (else the first selected) is made current again, found by
    /// its item data when that is not 0.
    virtual int SortItemsPosit(SortProc compare, LPARAM context);
    virtual int SetItemData(int row, std::uint64_t data);
    virtual std::uint64_t GetItemData(int row);
    /// Index of the new row, -1 when the platform refuses.
    virtual int InsertItem(int row, const char* text);
    virtual int InsertItem(int row, const char* text, int image);
    virtual int DeleteItem(int row);
    /// Header menu for what `hit` tells, shown at `screen`; carries out the choice. Returns 0.
    virtual LRESULT OnNM_RCLICK(LVHITTESTINFO& hit, POINT& screen);
    /// Text of a cell for sorting, fitting and export: attribute bits, bit 0 (1) for "has a text to draw".
    /// 0, and `out` untouched, outside the list; row `m_nItems` itself counts as inside and is empty.
    virtual int GetValue(int row, int col, CString& out);
    /// Saves how the user left the list under the layout name, in the current user's registry: row height,
    /// sort state, and each column's caption, width (hidden ones too) and position. What was saved there
    /// before is deleted first. A `name` that is not empty becomes `m_RegName` first.
    ///
    /// A name without a backslash stands for a key below `g_RegTOREL_32` + "\CLraListCtrl"; one with a
    /// backslash is the key's whole path (one of a single part is refused). `key` null: the key is opened and
    /// closed here. `*key` an open key: that one is written, nothing is deleted. `*key` null: receives the
    /// open key, for the caller to close. Returns the number of columns saved; 0 without a name, or when the
    /// registry refuses.
    virtual int SaveHeadToReg(const char* name, HKEY* key);
    /// Restores what was saved; name and key as above, but a missing key is not created. Flags: 1 each saved
    /// column goes to the column with its caption (without regard to case; else to the one of its index, and
    /// only when the number of columns is the same), 2 every column gets its width (else only hidden ones),
    /// 4 every column gets its position (else only the first one). The sort state becomes `m_ColSort`, the
    /// rows are not sorted. Returns the number of columns restored.
    ///
    /// Damaged values (another type, widths beyond 10,000, more than 10,000 columns) leave what they are
    /// about as it was. A layout that is there but could not be read at all is not replaced by the automatic
    /// save at the end, only by a call of `SaveHeadToReg`.
    virtual int LoadHeadFromReg(const char* name, int flags, HKEY* key);
    /// Sets the row height, 1 to 99 pixels; other heights only measure. Returns `m_ItemHeight`: one less
    /// than the height of row 0 when there is one.
    virtual int SetItemHeight(int height);
    virtual int ItemHeight();
    /// Adds a column; `format` holds LVCFMT_ bits, `width` -1 leaves the width to the platform; a caption
    /// with more lines than those before makes the header higher. Returns its record, null on failure.
    virtual LraListColum* InsertColumn(int col, const char* heading, int format, int width, int typeData,
                                       int param);
    /// Destroys a column's record and the column; returns the platform's answer.
    virtual int DeleteColumn(int col);
    /// Sum of the widths of the columns.
    virtual int GetColumsWidth();
    /// Width of a column; of a hidden one minus the width to restore.
    virtual int GetColumnWidth(int col);
    /// Shows a column at a width (its low 16 bits), or hides it: a negative width says how wide to show it
    /// again, 0 leaves that as it was. Returns the width remembered.
    virtual int SetColumnWidth(int col, int width);
    /// Writes the list as a paged HTML document (`listing.h`) and opens it with the shell.
    /// `fileName` null or empty: a file in "C:\TEMP" named after the layout. `text` is printed under every
    /// page header and comes back as HTML. `flags`: 1 only selected or focused rows, 2 no file: the document
    /// comes back in `text`. Returns the number of rows written.
    virtual int PrintToHtml(const char* fileName, int linesPerPage, CString& text, int flags);
    /// Puts the list on the clipboard as tab-separated text and as HTML. `flags`: 1 only selected or focused
    /// rows. Returns the number of rows; 0, and the clipboard as it was, when there are none.
    virtual int CopyToClipBoard(int flags);

    /// Record of a column, created zeroed when it has none; null outside the header's columns.
    LraListColum* GetMyListHeader(int col);
    CLraHeaderCtrl* GetHeaderCtrl() { return &m_HeaderCtrl; }
    /// Selects and focuses row `keepRow` and, when `keepData` is not 0, the rows with that item data;
    /// deselects all others. The last row kept is scrolled into view. Returns it, -1 for none.
    int UnselectAll(int keepRow, std::uint64_t keepData);
    /// Comparer of two rows by their item data: the texts of column |m_ColSort| - 1 as unsigned bytes, in the
    /// direction of its sign. Of rows with equal data the last one is meant; data of no row means row 0.
    /// `list` is the address of a `CLraListCtrl`; 0 gives 0.
    static int CALLBACK LraSortCompareProc(LPARAM data1, LPARAM data2, LPARAM list);

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    /// Fits a column to the widest of its cells (not to its caption).
    void OnHdnDividerdblclick(NMHDR* header, LRESULT* result);
    /// Draws a row after `Initialize(0)`: its texts, aligned as their columns, check boxes for `ColStyle` 3.
    void DrawItem(DRAWITEMSTRUCT* draw) override;

  private:
    void attachHeader();
    bool onHeaderNotify(NMHEADERA& header, WPARAM wParam, LRESULT& result);
    LRESULT onHeaderClick(NMHEADERA& header, WPARAM wParam);
    LRESULT onHeaderEndDrag(NMHEADERA& header);
    LRESULT onHeaderRightClick();
    void fillHeaderMenu(CMenu& menu) const;
    void runHeaderCommand(int command, const LVHITTESTINFO& hit);
    void showAllColumns();
    int rowOrFocused(int row, int leastRemembered);
    int widestCell(int col);
    bool numberRows();
    void drawCaptionOurselves(int item);
    void makeRoomForCaption(const char* caption);
    void layOutHeader();
    void saveLayoutAtTheEnd();
    int restoreColumns(HKEY layout, int stored, int flags);
    void carryOut(const controls::LayoutPlan& plan);
    void releaseHeightImages();
    void drawCell(HDC dc, int row, int col, const RECT& rect);

    HIMAGELIST m_heightImages = nullptr;         // given to the platform's list, which owns it
    const ListSortTable* m_sortTable = nullptr;  // while the platform sorts
    CString m_unreadLayout;                      // path of a layout that the last load could not read
};

static_assert(sizeof(CLraListCtrl::LraListColum) == 40);
static_assert(offsetof(CLraListCtrl::LraListColum, ColStyle) == 8);
static_assert(offsetof(CLraListCtrl::LraListColum, pBuffer) == 24);
static_assert(offsetof(CLraListCtrl::LraListColum, Width) == 32);
