#include <cstdint>
#include <cstdlib>
#include <string>

#include <kestra/text/report_page.h>

/// A report becomes a page that no byte of the report can break out of: outside the directives and the title
/// no
/// "<" or "&" of the report stands in the page unescaped.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string text(reinterpret_cast<const char*>(data), size);
    const report::Head head = report::readHead(text);
    if (head.bodyStart > size || head.width < 80 || report::pageHead(head).empty()) std::abort();
    std::string page;
    report::BodyWriter writer([&page](std::string_view piece) { page += piece; });
    writer.write(std::string_view(text).substr(head.bodyStart));
    writer.finish();
    for (std::size_t mark = page.find_first_of("<&"); mark != std::string::npos;
         mark = page.find_first_of("<&", mark + 1)) {
        const std::string_view rest = std::string_view(page).substr(mark);
        bool known = false;
        for (const char* markup :
             {"&nbsp;", "&amp;", "&lt;", "&gt;", "<br>\n", "</span>\n", "<span class='", "<DIV ", "</DIV>"})
            known = known || rest.starts_with(markup);
        if (!known) std::abort();
    }
    return 0;
}
