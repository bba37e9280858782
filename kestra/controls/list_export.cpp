#include <array>
#include <string>
#include <vector>

#include <dorsel/globals.h>
#include <dorsel/paths.h>
#include <kestra/controls/listing.h>
#include <kestra/controls/listing_clipboard.h>
#include <kestra/controls/lra_list_ctrl.h>
#include <kestra/project/chantier.h>
#include <kestra/text/current_date.h>
#include <platform/machine.h>
#include <platform/window/clipboard.h>

// A list on paper and on the clipboard: the control feeds the listing functions and carries out what they
// answer.

namespace {

constexpr int selectedOnly = 1;
constexpr int documentInText = 2;

/// The rows of a list while it is exported.
class ListRows : public listing::Rows {
  public:
    ListRows(CLraListCtrl& list, int flags) : m_list(list), m_selectedOnly((flags & selectedOnly) != 0) {}

    int count() override { return m_list.UpdateItemCount(); }
    listing::RowState state(int row) override {
        if (row >= m_list.GetItemCount()) return listing::RowState::gone;
        if (m_selectedOnly && m_list.GetItemState(row, LVIS_SELECTED | LVIS_FOCUSED) == 0) {
            return listing::RowState::passedOver;
        }
        return listing::RowState::exported;
    }
    listing::Cell cell(int row, int column) override {
        m_text.Empty();
        const int attributes = m_list.GetValue(row, column, m_text);
        return {m_text.view(), attributes};
    }

  private:
    CLraListCtrl& m_list;
    bool m_selectedOnly;
    CString m_text;
};

std::string captionOf(CLraHeaderCtrl& header, int column) {
    std::array<char, listing::captionLimit + 1> caption = {};
    header.GetItemText(column, caption.data(), static_cast<int>(caption.size()));
    return caption.data();
}

int formatOf(const CLraHeaderCtrl& header, int column) {
    HDITEMA item = {};
    item.mask = HDI_FORMAT;
    return header.GetItem(column, item) ? item.fmt : 0;
}

std::vector<listing::Column> exportedColumnsOf(CLraListCtrl& list) {
    CLraHeaderCtrl& header = *list.GetHeaderCtrl();
    const int count = header.GetItemCount();
    std::vector<std::string> captions;
    captions.reserve(static_cast<std::size_t>(count));
    std::vector<listing::HeaderItem> items;
    for (int order = 0; order < count; ++order) {
        const int column = header.OrderToIndex(order);
        captions.push_back(captionOf(header, column));
        items.push_back({column, captions.back(), header.GetItemRect(column).Width(),
                         formatOf(header, column), list.GetMyListHeader(column) != nullptr});
    }
    return listing::exportedColumns(items);
}

listing::PageValues pageValues() {
    listing::PageValues values;
    values.date = GetCurDate().view();
    values.society = vfVar.society;
    values.affair = DOS::GetPName(chtdef.m_cheminCht, "N");
    values.service = chtdef.m_service.view();
    values.computer = platform::theMachine().computerName();
    return values;
}

}  // namespace

int CLraListCtrl::PrintToHtml(const char* fileName, int linesPerPage, CString& text, int flags) {
    if (m_hWnd == nullptr) return 0;
    text = listing::convertedFreeText(text);
    const bool inText = (flags & documentInText) != 0;
    ListRows rows(*this, flags);
    CString html;
    const int written =
        listing::appendDocument(html, exportedColumnsOf(*this), rows, listing::pageHeader(text, pageValues()),
                                linesPerPage, inText ? listing::LineEnds::crlf : listing::LineEnds::lf);
    if (inText) {
        text = std::move(html);
        return written;
    }
    const std::string path =
        listing::documentPath(fileName != nullptr ? fileName : "", m_RegName.view(), ::GetCurrentThreadId());
    if (listing::saveDocument(path, html.view())) platform::theMachine().openDocument(path.c_str());
    return written;
}

int CLraListCtrl::CopyToClipBoard(int flags) {
    if (m_hWnd == nullptr) return 0;
    const platform::OpenedClipboard clipboard(m_hWnd);
    if (!clipboard) return 0;
    ListRows rows(*this, flags);
    CString text;
    const int copied = listing::appendTabbedText(text, exportedColumnsOf(*this), rows);
    if (copied == 0 || !::EmptyClipboard()) return copied;
    clipboard.put(CF_TEXT, text.view());

    CString html;
    if (PrintToHtml(nullptr, 0, html, flags | documentInText) != 0) {
        clipboard.put(::RegisterClipboardFormatA(listing::htmlFormatName),
                      listing::clipboardHtml(html.view()));
    }
    return copied;
}
