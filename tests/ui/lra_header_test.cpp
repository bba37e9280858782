#include <gtest/gtest.h>
#include <platform/window/device_context.h>

#include "ui_support.h"

namespace {

class LraHeader : public testing::Test {
  protected:
    HiddenParent parent;
    TestList list{parent, 3};
    CLraHeaderCtrl& header = list.m_HeaderCtrl;

    int heightOf(int lines) const {
        CClientDC screen(nullptr);
        const platform::Selected font(screen, header.GetFont());
        const TEXTMETRICA metrics = screen.GetTextMetrics();
        return ::GetSystemMetrics(SM_CYBORDER) + lines * (metrics.tmHeight + metrics.tmExternalLeading + 1);
    }
};

TEST_F(LraHeader, HeightGrowsWithTheLinesOfTheCaptions) {
    struct Case {
        std::string caption;
        int lines;
    };
    for (const Case& each :
         {Case{"two\nlines", 2}, {"a\nb\nc\n", 4}, {std::string(100000, 'x') + "\n", 1}, {"", 1}}) {
        header.SetItemText(1, each.caption.c_str());
        EXPECT_EQ(header.CalculHeight(), heightOf(each.lines)) << each.lines;
        EXPECT_EQ(header.m_nLines, each.lines);
    }
}

TEST_F(LraHeader, LayoutAddsTheTopToTheHeightAndComputesItOnce) {
    header.SetItemText(0, "two\nlines");
    header.m_Height = 0;
    RECT room = {5, 7, 105, 200};
    WINDOWPOS place = {};
    HDLAYOUT layout = {&room, &place};
    EXPECT_EQ(header.SendMessage(HDM_LAYOUT, 0, reinterpret_cast<LPARAM>(&layout)), 1);
    const int height = header.m_Height;
    EXPECT_EQ(height, heightOf(2));
    EXPECT_EQ(CRect(place.x, place.y, place.cx, place.cy), CRect(5, 7, 100, 7 + height));
    EXPECT_EQ(place.hwnd, header.m_hWnd);
    EXPECT_EQ(place.flags, UINT{SWP_NOZORDER | SWP_NOACTIVATE});
    EXPECT_EQ(room.top, 7 + height);
    EXPECT_EQ(header.GetStyle() & 0xC6, 0xC6u);
    header.SetItemText(0, "a\nb\nc\nd");
    room = {0, 0, 10, 500};
    EXPECT_EQ(header.GetLayout(0, reinterpret_cast<LPARAM>(&layout)), 1);
    EXPECT_EQ(room.top, height);
}

TEST_F(LraHeader, TheListIsLaidOutBelowATallHeader) {
    EXPECT_EQ(list.GetWindowRect().Height(), 200) << "the header's layout leaves the list alone";
    list.InsertColumn(3, "two\nlines", 0, 50, 0, 0);
    list.addRow({"a"});
    CRect row;
    list.GetItemRect(0, row, LVIR_BOUNDS);
    EXPECT_EQ(header.GetWindowRect().Height(), heightOf(2));
    EXPECT_GE(row.top, heightOf(2));
}

TEST_F(LraHeader, CaptionsOrdersOwnerDrawingAndItem0Stays) {
    char buffer[6];
    EXPECT_EQ(header.SetItemText(1, "Désignation"), 11);
    EXPECT_EQ(header.GetItemText(1, buffer, 6), 6);
    EXPECT_STREQ(buffer, "Désig");
    EXPECT_EQ(header.GetItemText(1, nullptr, 6) + header.SetItemText(1, nullptr), 0);
    EXPECT_EQ(header.GetItemOrder(2), 2);
    EXPECT_EQ(header.GetItemOrder(-1), 0);
    for (const int on : {0, 1}) {
        EXPECT_EQ(header.SetOwnerDraw(on), 3);
        EXPECT_EQ(list.formatOf(0) & HDF_OWNERDRAW, on * HDF_OWNERDRAW);
    }
    EXPECT_EQ(header.DeleteAllItems(), 1);
    EXPECT_EQ(header.GetItemCount(), 1);
}

/// A caption drawn into memory as the platform asks for it: through the list, which is the header's parent.
class DrawnCaption : public CMemoryDC {
  public:
    DrawnCaption(TestList& list, int sortState, LONG width) : CMemoryDC({width, 20}) {
        FillSolidRect({0, 0, width, 20}, RGB(255, 0, 255));
        list.m_HeaderCtrl.m_SortCol = sortState;
        DRAWITEMSTRUCT draw = {};
        draw.CtlType = ODT_HEADER;
        draw.hwndItem = list.m_HeaderCtrl;
        draw.itemID = 1;
        draw.hDC = m_hDC;
        draw.rcItem = {0, 0, width, 20};
        list.SendMessage(WM_DRAWITEM, 0, reinterpret_cast<LPARAM>(&draw));
    }
    bool is(LONG x, LONG y, int color) const { return GetPixel(x, y) == ::GetSysColor(color); }
    bool operator==(const DrawnCaption& other) const {
        bool same = true;
        for (LONG at = 0; at < 60 * 20; ++at)
            same &= GetPixel(at / 20, at % 20) == other.GetPixel(at / 20, at % 20);
        return same;
    }
};

TEST_F(LraHeader, OwnerDrawnCaptionHasAButtonATextAndAnArrow) {
    constexpr LONG width = 60, right = width - 3, top = 1, bottom = 19;
    header.SetItemText(1, "");
    const DrawnCaption plain(list, 0, width);
    EXPECT_EQ(plain.GetPixel(0, 10), RGB(255, 0, 255)) << "the two leftmost pixels are not drawn";
    EXPECT_TRUE(plain.is(30, 10, COLOR_BTNFACE));
    const struct {
        int state;
        LONG darkTop;  // of the left side: the tip is below, then above
    } arrows[] = {{2, top + 4}, {-2, bottom - 6}};
    for (const auto& [state, darkTop] : arrows) {
        const DrawnCaption arrow(list, state, width);
        EXPECT_TRUE(arrow.is(right - 5, bottom - 3, COLOR_3DHILIGHT)) << state;
        EXPECT_TRUE(arrow.is(right - 5, top + 1, COLOR_3DHILIGHT)) << state;
        EXPECT_TRUE(arrow.is(right - 9, darkTop, COLOR_3DDKSHADOW)) << state;
    }
    EXPECT_EQ(DrawnCaption(list, 1, width), plain) << "another column is sorted";
    EXPECT_EQ(DrawnCaption(list, 2, 14), DrawnCaption(list, 0, 14)) << "no room for an arrow";
    header.m_SortCol = 2;
    CMemoryDC whole({180, 30});
    header.SendMessage(WM_PRINTCLIENT, reinterpret_cast<WPARAM>(whole.m_hDC), PRF_CLIENT);
    const CRect caption = header.GetItemRect(1);
    EXPECT_EQ(whole.GetPixel(caption.right - 13, caption.top + 2), ::GetSysColor(COLOR_3DDKSHADOW))
        << "the platform's own painting asks for the caption";
    header.SetItemText(1, "Wide");
    EXPECT_FALSE(DrawnCaption(list, 0, width) == plain);
}

}  // namespace
