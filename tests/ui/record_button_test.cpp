#include <gtest/gtest.h>
#include <kestra/controls/record_button.h>

#include <memory>

#include "ui_support.h"

namespace {

/// A target of ten records that goes where it is told.
struct Records : RecordTarget {
    CRecordButton* button = nullptr;
    int record = 3, count = 10, gone = 0;
    bool mayAdd = true, obeys = true;
    std::string heard;
    void MoveToRecord(int wanted) override {
        heard += std::to_string(wanted) + " ";
        if (obeys) button->SetRecord(record = wanted, count);
    }
    void AddRecord() override { heard += "new "; }
    bool MayAddRecord() const override { return mayAdd; }
    void RecordButtonGone(CRecordButton&) override { ++gone; }
};

class RecordButton : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(button.Create(WS_CHILD | WS_VISIBLE, {0, 0, 300, 24}, &parent, 12));
        records.button = &button;
        button.Link(&records);
        button.SetRecord(3, 10);
    }
    void press(int part) { ::SendMessageA(button.GetDlgItem(part), BM_CLICK, 0, 0); }
    /// Types into the number, as a person does.
    void type(const char* keys) {
        const HWND edit = button.GetDlgItem(CRecordButton::number);
        ::SendMessageA(edit, EM_SETSEL, 0, -1);
        for (; *keys != '\0'; ++keys) ::SendMessageA(edit, WM_CHAR, static_cast<WPARAM>(*keys), 1);
        ::SendMessageA(edit, WM_KEYDOWN, VK_RETURN, 1);
    }
    /// Number, total, and a letter for each part that is enabled.
    std::string shown() {
        CString number, total;
        button.GetDlgItemText(CRecordButton::number, number);
        button.GetDlgItemText(CRecordButton::total, total);
        std::string enabled;
        for (int part = CRecordButton::first; part <= CRecordButton::added; ++part)
            if (::IsWindowEnabled(button.GetDlgItem(part))) enabled += "?|<#>!+"[part];
        return std::string(number.view()) + " " + std::string(total.view()) + " " + enabled;
    }

    HiddenParent parent;
    Records records;
    CRecordButton button;
};

TEST_F(RecordButton, AsksItsTargetAndShowsWhereItIs) {
    const struct {
        int part;
        const char *heard, *shown;
    } cases[] = {{CRecordButton::next, "4 ", "4 sur 10 |<#>!+"},
                 {CRecordButton::previous, "3 ", "3 sur 10 |<#>!+"},
                 {CRecordButton::first, "1 ", "1 sur 10 #>!+"},
                 {CRecordButton::last, "10 ", "10 sur 10 |<#+"},
                 {CRecordButton::added, "new ", "10 sur 10 |<#+"}};
    for (const auto& each : cases) {
        records.heard.clear();
        press(each.part);
        EXPECT_EQ(records.heard, each.heard);
        EXPECT_EQ(shown(), each.shown);
    }
    records.mayAdd = false;
    button.SetRecord(0, 0);
    EXPECT_EQ(shown(), " sur 0 ");
    button.SetRecord(99, 2);
    EXPECT_EQ(shown(), "2 sur 2 |<#") << "a record beyond the last";
    button.Link(nullptr);
    EXPECT_EQ(shown(), "2 sur 2 ");
}

TEST_F(RecordButton, ATypedNumberIsWithinTheRecordsAndDroppedWhenRefused) {
    const struct {
        const char *typed, *heard, *shown;
    } cases[] = {{"7", "7 ", "7"}, {"0", "1 ", "1"}, {"99999999999999", "10 ", "10"}, {"\b", "", "10"}};
    for (const auto& each : cases) {
        records.heard.clear();
        type(each.typed);
        EXPECT_EQ(records.heard, each.heard);
        EXPECT_EQ(shown().substr(0, shown().find(' ')), each.shown);
    }
    records.obeys = false;
    type("5");
    EXPECT_EQ(shown(), "10 sur 10 |<#+");
}

TEST_F(RecordButton, GoesBeforeOrAfterItsTargetAndItsWindow) {
    parent.DestroyWindow();
    button.SetRecord(5, 10);
    EXPECT_EQ(button.Record(), 5);
    {
        CRecordButton other;
        other.Link(&records);
        other.SetRecord(1, 1);
    }
    EXPECT_EQ(records.gone, 1);
    button.Link(nullptr);
}

TEST(RecordButtonInADialog, TakesThePlaceOfAControl) {
    HiddenParent parent;
    ::CreateWindowExA(0, "STATIC", "", WS_CHILD, 0, 0, 200, 20, parent, reinterpret_cast<HMENU>(5), nullptr,
                      nullptr);
    CRecordButton button;
    ASSERT_TRUE(button.SubclassDlgItem(5, &parent));
    button.SetRecord(2, 3);
    CString name;
    button.GetDlgItemText(CRecordButton::first, name);
    EXPECT_STREQ(name, "Premier");
    CString number;
    button.GetDlgItemText(CRecordButton::number, number);
    EXPECT_STREQ(number, "2");
}

TEST(RetEdit, TellsReturnAndSelectsAll) {
    struct Parent : HiddenParent {
        std::vector<WPARAM> heard;
        std::unique_ptr<CRetEdit>* destroyed = nullptr;
        BOOL OnCommand(WPARAM wParam, LPARAM) override {
            if (HIWORD(wParam) == CRetEdit::returnPressed) {
                heard.push_back(LOWORD(wParam));
                if (destroyed != nullptr) destroyed->reset();
            }
            return TRUE;
        }
    } parent;
    auto edit = std::make_unique<CRetEdit>();
    ASSERT_TRUE(edit->Create(WS_CHILD | ES_AUTOHSCROLL, {0, 0, 90, 20}, &parent, 31));
    edit->SetWindowText("abc");
    MSG key = {edit->m_hWnd, WM_KEYDOWN, VK_RETURN, 1, 0, {}};
    const auto wants = [&] {
        return (edit->SendMessage(WM_GETDLGCODE, key.wParam, reinterpret_cast<LPARAM>(&key)) &
                DLGC_WANTMESSAGE) != 0;
    };
    EXPECT_TRUE(wants());
    key.wParam = VK_TAB;
    EXPECT_FALSE(wants());
    edit->SendMessage(WM_KEYDOWN, VK_RETURN, 1);
    edit->SendMessage(WM_KEYDOWN, VK_RETURN, 1 | (1 << 30));
    edit->SendMessage(WM_CHAR, '\r', 1);
    EXPECT_EQ(parent.heard, std::vector<WPARAM>{31}) << "once, however long the key is held";
    BYTE keys[256] = {};
    keys[VK_CONTROL] = 0x80;
    ::SetKeyboardState(keys);
    edit->SendMessage(WM_KEYDOWN, 'A', 1);
    edit->SendMessage(WM_CHAR, 1, 1);
    keys[VK_CONTROL] = 0;
    ::SetKeyboardState(keys);
    int start = 0, end = 0;
    edit->GetSel(start, end);
    EXPECT_EQ(end - start, 3);
    parent.destroyed = &edit;
    edit->SendMessage(WM_KEYDOWN, VK_RETURN, 1);
    EXPECT_EQ(edit, nullptr);
}

}  // namespace
