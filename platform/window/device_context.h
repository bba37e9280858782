#pragma once
#include <windows.h>

#include <string_view>

#include <platform/export.h>
#include <platform/window/geometry.h>
#include <platform/window/handles.h>

/// Device contexts: what one draws on. Coordinates are pixels, texts Windows-1252.
///
/// `CDC` itself only refers to a context that somebody else owns; the forms below own theirs and give them
/// back. Objects that are selected stay their maker's.
class DORSEL_API CDC {
  public:
    CDC() = default;
    explicit CDC(HDC dc) : m_hDC(dc) {}
    CDC(const CDC&) = delete;
    CDC& operator=(const CDC&) = delete;

    HDC m_hDC = nullptr;
    operator HDC() const { return m_hDC; }
    HDC GetSafeHdc() const { return m_hDC; }

    /// Selects and returns what was selected before.
    HGDIOBJ SelectObject(HGDIOBJ object) { return ::SelectObject(m_hDC, object); }
    COLORREF SetTextColor(COLORREF color) { return ::SetTextColor(m_hDC, color); }
    COLORREF SetBkColor(COLORREF color) { return ::SetBkColor(m_hDC, color); }
    int SetBkMode(int mode) { return ::SetBkMode(m_hDC, mode); }
    void MoveTo(LONG x, LONG y) { ::MoveToEx(m_hDC, x, y, nullptr); }
    /// Up to but not including the end point.
    void LineTo(LONG x, LONG y) { ::LineTo(m_hDC, x, y); }
    COLORREF GetPixel(LONG x, LONG y) const { return ::GetPixel(m_hDC, x, y); }
    void FillSolidRect(const RECT& rect, COLORREF color);
    void DrawFrameControl(const RECT& rect, UINT type, UINT state);
    /// DrawText of the system: height of the text in pixels.
    int DrawText(std::string_view text, const RECT& rect, UINT format);
    CSize GetTextExtent(std::string_view text) const;
    TEXTMETRICA GetTextMetrics() const;
};

/// Client area of a window (null: the screen) for a short drawing or measuring outside WM_PAINT.
class DORSEL_API CClientDC : public CDC {
  public:
    explicit CClientDC(HWND window);

  private:
    platform::WindowDc m_owned;
};

/// Drawing of WM_PAINT: from BeginPaint to EndPaint.
class DORSEL_API CPaintDC : public CDC {
  public:
    explicit CPaintDC(HWND window);
    ~CPaintDC();
    PAINTSTRUCT m_ps = {};

  private:
    HWND m_window;
};

/// A picture in memory of the screen's colours; black until it is drawn on.
class DORSEL_API CMemoryDC : public CDC {
  public:
    explicit CMemoryDC(CSize size);
    ~CMemoryDC();
    HBITMAP bitmap() const { return m_bitmap.get(); }

  private:
    platform::UniqueGdi<HBITMAP> m_bitmap;
    platform::UniqueMemoryDc m_owned;
    HGDIOBJ m_before = nullptr;
};
