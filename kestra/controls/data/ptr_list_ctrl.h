#pragma once
#include <windows.h>

#include <kestra/controls/lra_list_ctrl.h>

/// A report list whose rows are objects of the caller: the row's item data is the object's address, its texts
/// are asked for when they are shown (`GetPtrValue`).
///
/// The objects are not owned and must live as long as their rows. An object may stand in several rows; a null
/// one cannot be added. The row's texts are never stored, so that a changed object needs only a repaint.
class KESTRA_API CPtrListCtrl : public CLraListCtrl {
  public:
    static const CRuntimeClass runtimeClass;
    const CRuntimeClass* GetRuntimeClass() const override { return &runtimeClass; }

    /// Adds an object in front of row `row`, behind the last by default; returns its row, -1 on failure.
    int AddPtr(void* object, int row = INT_MAX);
    /// Object of a row, null outside the list.
    void* GetPtr(int row);
    /// First row of an object behind `after`, -1 for none.
    int FindPtr(const void* object, int after = -1);
    /// Takes an object's rows out; returns how many there were.
    int DeletePtr(const void* object);

    /// Text of an object in a column; attribute bits as `GetValue`. Here: 0, no text.
    virtual int GetPtrValue(void* object, int col, CString& out);

    int GetValue(int row, int col, CString& out) override;

  protected:
    BOOL OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) override;
};
