#pragma once

namespace corvane::toolkit {

/// Lengths are in points (device-independent pixels). On the screen, y grows upwards from the bottom edge of
/// the primary screen, and a window's origin is its lower left corner; adapters turn this into their own way.
struct Point {
    double x = 0;
    double y = 0;
    friend bool operator==(const Point&, const Point&) = default;
};
struct Size {
    double width = 0;
    double height = 0;
    friend bool operator==(const Size&, const Size&) = default;
};
struct Rect {
    Point origin;
    Size size;
    friend bool operator==(const Rect&, const Rect&) = default;
};

} // namespace corvane::toolkit
