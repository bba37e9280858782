#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <kestra/text/txt_to_html.h>

#include "side_by_side.h"

namespace {

/// A listing of 40 MB: numbered points with coordinates, an emphasised title a page, form feeds.
std::string report() {
    std::string text;
    char line[200];
    for (int point = 1; text.size() < 40'000'000; ++point) {
        if (point % 60 == 1) text += "\f\x0ELISTING DES POINTS & ALTITUDES\r\n\r\n";
        text.append(line, static_cast<std::size_t>(std::snprintf(
                              line, sizeof line,
                              "%8d  %14.3f  %14.3f  %9.3f  station <%d>  borne OGE        relev\xE9\r\n",
                              point, 1657000.0 + point * 0.731, 7171000.0 + point * 0.377,
                              120 + point % 77 * 0.1, point % 40)));
    }
    return text;
}

/// The usual loop: a text that grows by what each character becomes.
void appendLoop(const std::string& from, const std::string& to) {
    std::ifstream file(from, std::ios::binary);
    std::string text(static_cast<std::size_t>(std::filesystem::file_size(from)), '\0'), page;
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    for (const char c : text) {
        switch (c) {
            case ' ':
                page += "&nbsp;";
                break;
            case '&':
                page += "&amp;";
                break;
            case '<':
                page += "&lt;";
                break;
            case '>':
                page += "&gt;";
                break;
            case '\r':
                page += "<br>\n";
                break;
            case '\f':
                page +=
                    "<DIV clear='all' style='page-break-before:always;height:0px;line-height:0px'> </DIV>";
                break;
            case 14:
                page += "</span>\n<span class='Ep'>";
                break;
            case 15:
                page += "</span>\n<span class='No'>";
                break;
            case '\n':
            case 3:
                break;
            default:
                page += c;
        }
    }
    std::ofstream(to, std::ios::binary).write(page.data(), static_cast<std::streamsize>(page.size()));
}

/// Most memory that the process ever held, in megabytes; 0 where the system does not tell.
double peakMegabytes() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmHWM:")) return std::stod(line.substr(6)) / 1024;
    return 0;
}

}  // namespace

int main() {
    // In memory where there is such a folder, so that no disk is timed.
    const auto folder = (std::filesystem::exists("/dev/shm") ? std::filesystem::path("/dev/shm")
                                                             : std::filesystem::temp_directory_path()) /
                        "kestra_report_bench";
    std::filesystem::create_directories(folder);
    const std::string file = (folder / "report.txt").string(), peerPage = (folder / "peer.htm").string();
    double size = 0;
    {
        const std::string text = report();
        size = static_cast<double>(text.size()) / 1048576;
        std::ofstream(file, std::ios::binary).write(text.data(), static_cast<std::streamsize>(text.size()));
    }
    // A Windows program sees the system's helper there, not itself.
    const bool memoryIsTold = !std::filesystem::exists("C:\\windows");
    if (memoryIsTold && std::ofstream("/proc/self/clear_refs") << 5 << std::flush) {
        const double before = peakMegabytes();
        TxtToHtml(file.c_str(), 0);
        bench::printLine("TxtToHtml, memory beside a 40 MB file", peakMegabytes() - before,
                         "the file and a megabyte", size + 1, "MB", 1);
    }
    bench::sideBySide(
        "TxtToHtml, 40 MB report", 0.25, [&] { TxtToHtml(file.c_str(), 0); }, "std::string += loop",
        [&] { appendLoop(file, peerPage); }, 5);
    std::filesystem::remove_all(folder);
}
