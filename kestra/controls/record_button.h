#pragma once
#include <windows.h>

#include <cstdint>

#include <kestra/dialogs/ret_edit.h>
#include <platform/export.h>
#include <platform/window/wnd.h>

class CRecordButton;

/// What a record navigator moves about in: the editable grid.
class KESTRA_API RecordTarget {
  public:
    /// The user wants to go to a record, counted from 1 and within the count last given to the navigator.
    /// May refuse; what is then shown is what the next `SetRecord` says. May destroy the navigator's window.
    virtual void MoveToRecord(int record) = 0;
    /// The user wants a new record. Called only while `MayAddRecord` agrees.
    virtual void AddRecord() = 0;
    /// Whether a new record may be added; asked when the navigator is told its record.
    virtual bool MayAddRecord() const { return false; }
    /// The navigator's object goes; the target must not use it any more.
    virtual void RecordButtonGone(CRecordButton& button) = 0;

  protected:
    ~RecordTarget() = default;
};

/// Record navigator of a list: buttons for the first, previous, next, last and new record around the number
/// of the current one, which may be typed over (Return goes there), and the number of records.
///
/// What differs from what a reader may expect:
/// - it moves nothing by itself: it asks its target, which then tells it where it is (`SetRecord`);
/// - its parts are real buttons and a real edit control, reached by Tab, each with a name to read out
///   ("Premier", "Précédent", "Suivant", "Dernier", "Nouveau", "Enregistrement") and a tip;
/// - it may also take the place of a control of a dialog (`SubclassDlgItem` of an empty static control);
/// - target and navigator may be destroyed in any order, see `Link`.
/// Everything runs on the thread of the window.
class KESTRA_API CRecordButton : public CWnd {
  public:
    CRecordButton();
    ~CRecordButton() override;

    static const CRuntimeClass runtimeClass;
    const CRuntimeClass* GetRuntimeClass() const override { return &runtimeClass; }

    /// Creates the navigator; heights from 16 pixels on hold its parts. False when that fails.
    BOOL Create(DWORD style, const RECT& rect, const CWnd* parent, UINT id);

    /// Says who is asked to move; null: nobody, all parts are disabled. The target before hears nothing. A
    /// target that goes calls `Link(nullptr)`.
    void Link(RecordTarget* target);
    RecordTarget* Target() const { return m_target; }

    /// Shows the current record, counted from 1 (0: none), and the number of records. Nothing happens when
    /// both are what is shown; else the parts are enabled accordingly and repainted. Works without a window.
    void SetRecord(int record, int count);
    /// Shows again what `SetRecord` last said: drops what was typed and asks the target whether it may add.
    void Refresh();
    int Record() const { return m_record; }
    int Count() const { return m_count; }

    /// Ids of the parts below this window.
    enum Part : int { first = 1, previous, number, next, last, added, total };

  protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;

  private:
    void createParts();
    void createTips();
    void placeParts();
    void setPartFont(HFONT font);
    void enableParts();
    void showNumbers();
    void press(int part);
    void moveTo(int record);

    RecordTarget* m_target = nullptr;
    std::int32_t m_record = 0;
    std::int32_t m_count = 0;
    CRetEdit m_number;
    CWnd m_tips;
};
