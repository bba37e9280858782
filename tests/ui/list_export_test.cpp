#include <kestra/project/chantier.h>

#include <gtest/gtest.h>
#include <platform/machine.h>
#include <platform/replaceable.h>

#include <fstream>
#include <iterator>

#include "ui_support.h"

namespace {

/// The computer, but for opening documents, which it notes.
struct NotingMachine : platform::Machine {
    std::vector<std::string> opened;
    std::string computerName() override { return "POSTE7"; }
    int windowsNtVersion() override { return 6; }
    bool openDocument(const char* path) override {
        opened.push_back(path);
        return true;
    }
    bool run(const char*) override { return false; }
    bool classicHelp(const char*, const char*) override { return false; }
    bool htmlHelp(const char*, const char*) override { return false; }
    void debugLine(const char*) override {}
    std::string environment(const char*) override { return {}; }
};

std::string clipboardBytes(UINT format) {
    if (!::OpenClipboard(nullptr)) return "closed";
    const HANDLE memory = ::GetClipboardData(format);
    std::string bytes = memory != nullptr ? static_cast<const char*>(::GlobalLock(memory)) : "none";
    if (memory != nullptr) ::GlobalUnlock(memory);
    ::CloseClipboard();
    return bytes;
}

class ListExport : public testing::Test {
  protected:
    HiddenParent parent;
    TestList list{parent, 4};
    NotingMachine machine;
    platform::Replaced<platform::Machine> replaced{platform::replaceMachine, machine};

    void SetUp() override {
        list.SetColumnWidth(2, -50);
        list.m_HeaderCtrl.SetItemText(0, " ");
        list.addRow({"m", "été", "caché", "1"});
        list.addRow({"m", "", "caché", "2"});
        list.addRow({"m", "z", "caché", "3"});
        int order[] = {0, 3, 1, 2};
        list.SendMessage(LVM_SETCOLUMNORDERARRAY, 4, reinterpret_cast<LPARAM>(order));
        list.m_nItems = 0;
    }
};

TEST_F(ListExport, ClipboardHoldsTheVisibleColumnsInDisplayOrder) {
    EXPECT_EQ(list.CopyToClipBoard(0), 3);
    EXPECT_EQ(clipboardBytes(CF_TEXT), "c3\tc1\r\n1\tété\r\n2\t \r\n3\tz\r\n");
    const std::string html = clipboardBytes(::RegisterClipboardFormatA("HTML Format"));
    EXPECT_EQ(html.rfind("Version:1.0\r\nStartHTML:", 0), 0u);
    EXPECT_NE(html.find("\xC3\xA9t\xC3\xA9</td>"), std::string::npos);
    EXPECT_EQ(html.find("cach"), std::string::npos);
    EXPECT_EQ(list.CopyToClipBoard(1), 0) << "nothing is selected";
    EXPECT_EQ(clipboardBytes(CF_TEXT).substr(0, 2), "c3") << "the clipboard is as it was";
    list.SetItemState(1, LVIS_FOCUSED, LVIS_FOCUSED);
    list.SetItemState(2, LVIS_SELECTED, LVIS_SELECTED);
    EXPECT_EQ(list.CopyToClipBoard(1), 2);
    EXPECT_EQ(clipboardBytes(CF_TEXT), "c3\tc1\r\n2\t \r\n3\tz\r\n");
}

TEST_F(ListExport, DocumentInTheCallersText) {
    chtdef.m_cheminCht = "d:\\affaires\\Rue du Puits.cht";
    chtdef.m_service = "TOPO";
    CString text("a  b\n#COMPUTER# #AFFAIRE# #SERVICE#");
    EXPECT_EQ(list.PrintToHtml(nullptr, 8, text, 2), 3);
    chtdef.m_cheminCht = "";
    chtdef.m_service = "";
    EXPECT_GT(text.Find("a &nbsp;b<br>POSTE7 Rue du Puits TOPO</DIV>"), 0);
    EXPECT_GT(text.Find("Page:2"), 0);
    EXPECT_LT(text.Find("Page:3"), 0);
    EXPECT_GT(text.Find("<TD align=center>c3</td>\r\n<TD align=center>c1</td>\r\n"), 0);
    EXPECT_TRUE(machine.opened.empty());
}

TEST_F(ListExport, DocumentIsWrittenAndOpened) {
    CString text;
    list.m_RegName = "Software\\Kestra\\Clients";
    EXPECT_EQ(list.PrintToHtml("", 0, text, 0), 3);
    char name[60];
    std::snprintf(name, sizeof name, "C:\\TEMP\\Clients_%04lx.HTM", ::GetCurrentThreadId());
    ASSERT_EQ(machine.opened, std::vector<std::string>{name});
    std::ifstream file(name, std::ios::binary);
    const std::string written((std::istreambuf_iterator<char>(file)), {});
    EXPECT_NE(written.find("été"), std::string::npos);
    EXPECT_EQ(written.find('\r'), std::string::npos);
    file.close();
    ::DeleteFileA(name);
    list.m_RegName = "";
    EXPECT_EQ(list.PrintToHtml("Q:\\no\\such\\drive.htm", 0, text, 0), 3);
    EXPECT_EQ(machine.opened.size(), 1u) << "a document that could not be written is not opened";
}

}  // namespace
