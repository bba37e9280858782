#pragma once
#include <windows.h>

/// Points, sizes and rectangles with the few operations that the library's windows use. Each is its Windows
/// structure, in pixels, right and bottom edges excluded.

struct CPoint : POINT {
    CPoint(LONG left = 0, LONG top = 0) : POINT{left, top} {}
    CPoint(const POINT& point) : POINT(point) {}
    bool operator==(const POINT& other) const { return x == other.x && y == other.y; }
};

struct CSize : SIZE {
    CSize(LONG width = 0, LONG height = 0) : SIZE{width, height} {}
    CSize(const SIZE& size) : SIZE(size) {}
};

struct CRect : RECT {
    CRect() : RECT{0, 0, 0, 0} {}
    CRect(LONG leftEdge, LONG topEdge, LONG rightEdge, LONG bottomEdge)
        : RECT{leftEdge, topEdge, rightEdge, bottomEdge} {}
    CRect(const RECT& rect) : RECT(rect) {}

    LONG Width() const { return right - left; }
    LONG Height() const { return bottom - top; }
    /// Empty when the width or the height is 0 or less; null when all four edges are 0.
    bool IsRectEmpty() const { return Width() <= 0 || Height() <= 0; }
    bool IsRectNull() const { return left == 0 && top == 0 && right == 0 && bottom == 0; }
    bool PtInRect(const POINT& point) const { return ::PtInRect(this, point) != FALSE; }
    /// Moves all edges inwards.
    void DeflateRect(LONG x, LONG y) { ::InflateRect(this, -x, -y); }
    void OffsetRect(LONG x, LONG y) { ::OffsetRect(this, x, y); }
    bool operator==(const RECT& other) const { return ::EqualRect(this, &other) != FALSE; }
};
