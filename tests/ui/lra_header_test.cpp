#include <array>
#include <cstring>

#include <gtest/gtest.h>
#include <platform/window/device_context.h>

#include "ui_support.h"

namespace {

class LraHeader : public testing::Test {
  protected:
    HiddenParent parent;
    TestList list{parent, 3};
    CLraHeaderCtrl& header = list.m_HeaderCtrl;

    int lineHeight() const {
        CClientDC screen(nullptr);
        const platform::Selected font(screen, header.GetFont());
        const TEXTMETRICA metrics = screen.GetTextMetrics();
        return metrics.tmHeight + metrics.tmExternalLeading + 1;
    }
};

TEST_F(LraHeader, HeightGrowsWithTheLinesOfTheCaptions) {
    const int border = ::GetSystemMetrics(SM_CYBORDER);
    struct Case {
        std::string caption;
        int lines;
    };
    for (const Case& each : {Case{"one", 1},
                             {"two\nlines", 2},
                             {"a\nb\nc\n", 4},
                             {std::string(100000, 'x') + "\n", 1},
                             {std::string(249, '\n'), 250},
                             {"", 1}}) {
        header.SetItemText(1, each.caption.c_str());
        EXPECT_EQ(header.CalculHeight(), border + each.lines * lineHeight()) << each.lines;
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
    EXPECT_EQ(height, ::GetSystemMetrics(SM_CYBORDER) + 2 * lineHeight());
    EXPECT_EQ(place.hwnd, header.m_hWnd);
    EXPECT_EQ(place.x, 5);
    EXPECT_EQ(place.y, 7);
    EXPECT_EQ(place.cx, 100);
    EXPECT_EQ(place.cy, 7 + height);
    EXPECT_EQ(place.flags, UINT{SWP_NOZORDER | SWP_NOACTIVATE});
    EXPECT_EQ(room.top, 7 + height);
    EXPECT_EQ(header.GetStyle() & 0xC6, 0xC6u);

    header.SetItemText(0, "a\nb\nc\nd");
    room = {0, 0, 10, 500};
    EXPECT_EQ(header.GetLayout(0, reinterpret_cast<LPARAM>(&layout)), 1);
    EXPECT_EQ(room.top, height);
    EXPECT_EQ(header.GetLayout(0, 0), 0);
}

TEST_F(LraHeader, TheListIsLaidOutBelowATallHeader) {
    EXPECT_EQ(list.GetWindowRect().Height(), 200) << "the header's layout leaves the list alone";
    EXPECT_EQ(header.GetWindowRect().Height(), header.m_Height);
    header.SetItemText(0, "two\nlines");
    header.CalculHeight();
    list.MoveWindow({0, 0, 400, 180});
    list.addRow({"a"});
    CRect row;
    list.GetItemRect(0, row, LVIR_BOUNDS);
    EXPECT_EQ(header.GetWindowRect().Height(), header.m_Height);
    EXPECT_GE(row.top, header.m_Height);
}

TEST_F(LraHeader, CaptionsOrdersAndOwnerDrawing) {
    std::array<char, 6> buffer;
    EXPECT_EQ(header.SetItemText(1, "Désignation"), 11);
    EXPECT_EQ(header.GetItemText(1, buffer.data(), 6), 6);
    EXPECT_STREQ(buffer.data(), "Désig");
    EXPECT_EQ(header.GetItemText(9, buffer.data(), 6), 6);
    EXPECT_STREQ(buffer.data(), "");
    EXPECT_EQ(header.GetItemText(1, nullptr, 6), 0);
    EXPECT_EQ(header.SetItemText(1, nullptr), 0);
    EXPECT_EQ(header.GetItemOrder(2), 2);
    EXPECT_EQ(header.GetItemOrder(-1), 0);
    const auto drawnByOwner = [&](int item) {
        HDITEMA format = {};
        format.mask = HDI_FORMAT;
        header.GetItem(item, format);
        return (format.fmt & HDF_OWNERDRAW) != 0;
    };
    EXPECT_EQ(header.SetOwnerDraw(0), 3);
    EXPECT_FALSE(drawnByOwner(0) || drawnByOwner(2));
    EXPECT_EQ(header.SetOwnerDraw(1), 3);
    EXPECT_TRUE(drawnByOwner(0) && drawnByOwner(2));
    EXPECT_EQ(header.DeleteAllItems(), 1);
    EXPECT_EQ(header.GetItemCount(), 1) << "column 0 stays";
    EXPECT_EQ(header.DeleteAllItems(), 1);
    EXPECT_EQ(header.GetItemCount(), 1);
}

/// A caption drawn into memory as the platform asks for it: through the list, which is the header's parent.
class DrawnCaption {
  public:
    DrawnCaption(TestList& list, int item, LONG width) : m_picture({width, 20}) {
        m_picture.FillSolidRect({0, 0, width, 20}, RGB(255, 0, 255));
        DRAWITEMSTRUCT draw = {};
        draw.CtlType = ODT_HEADER;
        draw.hwndItem = list.m_HeaderCtrl;
        draw.itemID = static_cast<UINT>(item);
        draw.hDC = m_picture;
        draw.rcItem = {0, 0, width, 20};
        list.SendMessage(WM_DRAWITEM, 0x7777, reinterpret_cast<LPARAM>(&draw));
    }
    bool is(LONG x, LONG y, int color) const { return m_picture.GetPixel(x, y) == ::GetSysColor(color); }
    COLORREF at(LONG x, LONG y) const { return m_picture.GetPixel(x, y); }

  private:
    CMemoryDC m_picture;
};

TEST_F(LraHeader, OwnerDrawnCaptionHasAButtonATextAndAnArrow) {
    constexpr LONG width = 60;
    const LONG right = width - 3, top = 1, bottom = 19;
    header.SetItemText(1, "");
    const DrawnCaption plain(list, 1, width);
    EXPECT_EQ(plain.at(0, 10), RGB(255, 0, 255)) << "the two leftmost pixels are not drawn";
    EXPECT_TRUE(plain.is(30, 10, COLOR_BTNFACE));

    header.m_SortCol = 2;
    const DrawnCaption ascending(list, 1, width);
    EXPECT_TRUE(ascending.is(right - 10, top + 1, COLOR_3DDKSHADOW) ||
                ascending.is(right - 10, top + 1, COLOR_3DHILIGHT));
    EXPECT_TRUE(ascending.is(right - 5, bottom - 3, COLOR_3DHILIGHT)) << "the tip is below";
    EXPECT_TRUE(ascending.is(right - 5, top + 1, COLOR_3DHILIGHT)) << "the base is above";
    EXPECT_TRUE(ascending.is(right - 8, top + 7, COLOR_3DDKSHADOW) ||
                ascending.is(right - 8, top + 6, COLOR_3DDKSHADOW))
        << "the left side is dark";

    header.m_SortCol = -2;
    const DrawnCaption descending(list, 1, width);
    EXPECT_TRUE(descending.is(right - 5, top + 1, COLOR_3DHILIGHT)) << "the tip is above";
    EXPECT_TRUE(descending.is(right - 3, bottom - 3, COLOR_3DHILIGHT)) << "the base is below";

    const auto sameAsPlain = [&](const DrawnCaption& other, LONG columns) {
        for (LONG x = 0; x < columns; ++x) {
            for (LONG y = 0; y < 20; ++y) {
                if (other.at(x, y) != plain.at(x, y)) return false;
            }
        }
        return true;
    };
    header.m_SortCol = 1;
    EXPECT_TRUE(sameAsPlain(DrawnCaption(list, 1, width), width)) << "another column is sorted";
    header.SetItemText(1, "Wide");
    EXPECT_FALSE(sameAsPlain(DrawnCaption(list, 1, width), width));
    header.SetItemText(1, "");
    header.m_SortCol = 0;
    const DrawnCaption narrow(list, 1, 14);
    header.m_SortCol = 2;
    const DrawnCaption narrowSorted(list, 1, 14);
    for (LONG x = 0; x < 14; ++x) EXPECT_EQ(narrow.at(x, 5), narrowSorted.at(x, 5)) << "no room for an arrow";
}

}  // namespace
