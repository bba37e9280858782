#include <platform/window/device_context.h>

void CDC::FillSolidRect(const RECT& rect, COLORREF color) {
    const platform::UniqueGdi<HBRUSH> brush(::CreateSolidBrush(color));
    ::FillRect(m_hDC, &rect, brush.get());
}

void CDC::DrawFrameControl(const RECT& rect, UINT type, UINT state) {
    RECT frame = rect;
    ::DrawFrameControl(m_hDC, &frame, type, state);
}

int CDC::DrawText(std::string_view text, const RECT& rect, UINT format) {
    RECT place = rect;
    return ::DrawTextA(m_hDC, text.data(), static_cast<int>(text.size()), &place, format);
}

CSize CDC::GetTextExtent(std::string_view text) const {
    CSize size;
    ::GetTextExtentPoint32A(m_hDC, text.data(), static_cast<int>(text.size()), &size);
    return size;
}

TEXTMETRICA CDC::GetTextMetrics() const {
    TEXTMETRICA metrics = {};
    ::GetTextMetricsA(m_hDC, &metrics);
    return metrics;
}

CClientDC::CClientDC(HWND window) : m_owned(window) {
    m_hDC = m_owned;
}

CPaintDC::CPaintDC(HWND window) : m_window(window) {
    m_hDC = ::BeginPaint(window, &m_ps);
}

CPaintDC::~CPaintDC() {
    const platform::KeepLastError keep;
    ::EndPaint(m_window, &m_ps);
}

CMemoryDC::CMemoryDC(CSize size) {
    const platform::WindowDc screen(nullptr);
    m_bitmap.reset(::CreateCompatibleBitmap(screen, size.cx, size.cy));
    m_owned.reset(::CreateCompatibleDC(screen));
    m_hDC = m_owned.get();
    m_before = ::SelectObject(m_hDC, m_bitmap.get());
}

CMemoryDC::~CMemoryDC() {
    const platform::KeepLastError keep;
    ::SelectObject(m_hDC, m_before);
}
