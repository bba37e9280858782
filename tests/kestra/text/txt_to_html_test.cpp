#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include <kestra/text/report_page.h>
#include <kestra/text/txt_to_html.h>
#include <platform/faulty_files.h>
#include <platform/files.h>
#include <platform/replaceable.h>

#include <tests/support/recorders.h>
#include <tests/support/temporary_folder.h>

namespace {

std::string bodyOf(std::string_view text) {
    std::string page;
    report::BodyWriter writer([&page](std::string_view piece) { page += piece; });
    writer.write(text);
    writer.finish();
    return page;
}

report::Head headOf(std::string text) {
    return report::readHead(text);
}

std::string lineOf(std::size_t characters) {
    return std::string(characters, 'x') + "\r\n";
}

/// With '~' for the code that begins emphasised text.
std::string withCodes(std::string text) {
    std::replace(text.begin(), text.end(), '~', '\x0E');
    return text;
}

}  // namespace

TEST(TxtToHtml, WholePage) {
    const TemporaryFolder folder;
    const std::string file = folder.write("Liste.txt",
                                          "\f\x0ETitre \xE9t\xE9 2024\r\n"
                                          "StyleNo=color:blue\r\nmepdoc(\"A4\", 1)\r\nStyleEp=color:red\r\n"
                                          "a<b & c\r\n\x0EGros\r\n\fsuite\x03>\r\nperdue");
    const std::string page = TxtToHtml(file.c_str(), 0);
    EXPECT_EQ(page, folder.path("Liste.htm"));
    EXPECT_EQ(
        folder.read("Liste.htm"),
        "<B2c LenLigne=80>\n<HTML>\n<HEAD>\n<title>Titre  t  2024</title>\n</HEAD>\n<BODY>\n"
        "<style>\nspan.No{font-size:10.0pt;font-family:Courier "
        "New;letter-spacing:0;font-weight:normal;margin:0;"
        "color:blue}\nspan.Ep{font-size:11pt;font-family:Times New Roman;letter-spacing:0;font-weight: bold;"
        "margin:0;color:red}\n</style>\n<span>\n"
        "<script>\nvar torelHtml = new ActiveXObject('torel.Html');\ntorelHtml.mepdoc(\"A4\", 1)\n</script>\n"
        "</span>\n<span class='No'>"
        "a&lt;b&nbsp;&amp;&nbsp;c<br>\n</span>\n<span class='Ep'>Gros</span>\n<span class='No'><br>\n"
        "<DIV clear='all' style='page-break-before:always;height:0px;line-height:0px'> </DIV>suite&gt;<br>\n"
        "</BODY>");
}

TEST(TxtToHtml, FontOfEachWidth) {
    const std::array<int, 4> cases[] = {{93, 10, 0, 93},    {99, 9, 0, 99},          {117, 8, 0, 117},
                                        {120, 8, -1, 120},  {133, 8, -1, 133},       {134, 9, 0, -134},
                                        {190, 8, -1, -190}, {100000, 8, -1, -100000}};
    for (const auto& expected : cases) {
        const report::Font font = report::fontFor(expected[0]);
        EXPECT_EQ((std::array{expected[0], font.points, font.spacing, font.width}), expected);
    }
}

TEST(TxtToHtml, HeadLinesDecideWidthAndTitle) {
    EXPECT_EQ(headOf(lineOf(100)).width, 99);
    EXPECT_EQ(headOf(std::string(200, 'x')).width, 80) << "no CR, no line";
    std::string tenLines;
    for (int i = 0; i < 9; ++i) tenLines += "court\r\nStyleNo=x\r\n";
    EXPECT_EQ(headOf(tenLines + lineOf(120) + lineOf(300)).width, 119) << "directives are not counted";

    const std::pair<const char*, const char*> titles[] = {{"~1234\r\n", ""},
                                                          {"abc~12345\r\n", "12345"},
                                                          {"abcd~12345\r\n", ""},
                                                          {"ab~1234\r\n", "1234"},
                                                          {"~un\t\x0F\x80\xE9\r\n", "un    "},
                                                          {"~premier\r\n~second\r\n", "premier"},
                                                          {"\fStyleNo=rien\r\n~titre\r\n", "titre"}};
    for (const auto& [text, title] : titles) EXPECT_EQ(headOf(withCodes(text)).title, title) << text;
}

TEST(TxtToHtml, DirectivesStartTheBodyBehindThem) {
    const std::string lines = "avant\r\nStyleNo=a\r\nStyleNo=b\r\nstyleno=c\r\nMepDoc(1)\r\nMEPDOC(2)\r\n";
    const report::Head head = headOf(lines + "reste\r\n");
    EXPECT_EQ(head.normalStyle, "b");
    EXPECT_EQ(head.bodyStart, lines.size());
    EXPECT_LT(head.scripts.find("torelHtml.MepDoc(1)\n"), head.scripts.find("MEPDOC(2)"));

    std::string text = "\fun\r\n\fdeux\r\n\ftrois\r\n";
    report::readHead(text);
    EXPECT_EQ(text, " un\r\n deux\r\n\ftrois\r\n");
}

TEST(TxtToHtml, KeptCode15LeavesTheMarkSet) {
    EXPECT_EQ(
        bodyOf(withCodes("~a\x0F-\r\nc\r\n")),
        "</span>\n<span class='Ep'>a</span>\n<span class='No'>-</span>\n<span class='No'><br>\nc<br>\n");
}

TEST(TxtToHtml, KeptWhatStandsBehindTheLastCrNeverReachesThePage) {
    const TemporaryFolder folder;
    const std::string long1(300'000, 'a'), long2(700'000, 'b'), end = std::string(10'000, 'z');
    const std::pair<std::string, std::string> cases[] = {
        {end, ""},
        {long1 + "\r\n" + long2 + "\r" + end, long1 + "<br>\n" + long2 + "<br>\n"},
        {"StyleNo=" + long2 + "\r\n" + long1 + "\r\n", long1 + "<br>\n"}};
    for (const auto& [text, body] : cases) {
        TxtToHtml(folder.write("long.txt", text).c_str(), 0);
        const std::string page = folder.read("long.htm");
        EXPECT_EQ(page.substr(page.find("<span class='No'>") + 17), body + "</BODY>");
    }
}

TEST(TxtToHtml, EveryByteAndLongLines) {
    const std::pair<int, const char*> changed[] = {
        {3, ""}, {10, ""}, {' ', "&nbsp;"}, {'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {13, "<br>\n"}};
    for (int code = 0; code < 256; ++code) {
        if (code == 12 || code == 14 || code == 15) continue;
        std::string expected(1, static_cast<char>(code));
        for (const auto& [byte, text] : changed) expected = byte == code ? text : expected;
        EXPECT_EQ(bodyOf(std::string(1, static_cast<char>(code))), expected) << code;
    }
    const std::string pages(100'000, '\f');
    EXPECT_EQ(bodyOf(pages + "\r").size(), pages.size() * 84 + 5);
    EXPECT_EQ(headOf(lineOf(10'000'000)).width, 9'999'999);
}

TEST(TxtToHtml, ShortMissingAndMatchedFiles) {
    const TemporaryFolder folder;
    folder.write("b.lst", "deux\r\n");
    folder.write("A.LST", "un\r\n");
    EXPECT_EQ(TxtToHtml(nullptr, 0), nullptr);
    for (const char* none : {"manque.lst", "*.xyz", ""})
        EXPECT_EQ(TxtToHtml(folder.path(none).c_str(), 0), nullptr);
    EXPECT_EQ(TxtToHtml(folder.path("*.lst").c_str(), 0), folder.path("A.htm"));
    EXPECT_NE(folder.read("A.htm").find("un<br>"), std::string::npos);
    for (const char* content : {"", "\r\n"})
        EXPECT_EQ(TxtToHtml(folder.write("court.txt", content).c_str(), 0), folder.path("A.htm"))
            << "as before";
    EXPECT_EQ(TxtToHtml(folder.write("trois", "a\r\n").c_str(), 0), folder.path("trois.htm"));
    EXPECT_EQ(platform::theFiles().kind(folder.path("court.htm").c_str()), platform::FileKind::missing);
}

TEST(TxtToHtml, OpensThePageAndDeletesTheTextOnlyOnceThePageIsThere) {
    const TemporaryFolder folder;
    RecordingMachine machine;
    const platform::Replaced replaced(platform::replaceMachine, machine);
    const std::string text = folder.write("r.txt", "ligne\r\n");
    TxtToHtml(text.c_str(), 3);
    EXPECT_EQ(machine.calls, std::vector{"open|" + folder.path("r.htm") + '|'});
    EXPECT_EQ(platform::theFiles().kind(text.c_str()), platform::FileKind::missing);
    machine.ntVersion = 10;
    TxtToHtml(folder.write("r.htm", "ligne\r\n").c_str(), 3);
    EXPECT_EQ(machine.calls.back(), "run|explorer \"" + folder.path("r.htm") + "\"|");
    EXPECT_TRUE(folder.read("r.htm").starts_with("<B2c")) << "a report of that name is replaced by its page";

    folder.write("s.txt", "ligne\r\n");
    platform::theFiles().createFolder(folder.path("s.htm").c_str());
    EXPECT_EQ(TxtToHtml(folder.path("s.txt").c_str(), 2), folder.path("s.htm"));
    EXPECT_EQ(folder.read("s.txt"), "ligne\r\n") << "no page, so the report stays";
}

TEST(TxtToHtml, AReportIsDeletedOnlyWhenItsPageIsWhole) {
    const TemporaryFolder folder;
    const std::string content = std::string(400'000, 'a') + "\r\n";
    platform::FaultyFiles faulty(platform::theFiles());
    const platform::Replaced replaced(platform::replaceFiles, faulty);
    for (long failing = 1, calls = failing; failing <= calls; ++failing) {
        const std::string text = folder.write("r.txt", content);
        const long before = faulty.calls();
        faulty.failAtCall(failing);
        TxtToHtml(text.c_str(), 2);
        calls = faulty.calls() - before;
        faulty.failAtCall(0);
        const bool deleted = platform::theFiles().kind(text.c_str()) == platform::FileKind::missing;
        EXPECT_TRUE(!deleted || folder.read("r.htm").ends_with("a<br>\n</BODY>")) << failing;
        platform::theFiles().remove(folder.path("r.htm").c_str());
    }
}
