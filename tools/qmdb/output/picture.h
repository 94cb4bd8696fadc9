#pragma once

#include "database/interpolation.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace tool {

struct Curve {
    struct Dot {
        double x = 0;
        double y = 0;
    };

    std::string title;
    std::size_t dash = 0; ///< curves that lie upon each other stay visible when they are dashed differently
    bool isLevel = false; ///< a constant, which is drawn across the whole picture; its dots have no x
    double parameter = 0; ///< in a family: the number that the curves differ in
    std::vector<Dot> dots;
};

enum class Scale { Fitting, Linear, Logarithmic };

/// What the user wants of an axis.
struct AxisWish {
    Scale scale = Scale::Fitting;
    std::optional<Range> range;
};

struct Axis {
    std::string label;
    bool isLogarithmic = false;
    Range range;
};

/// In pixels, of which a PDF has 96 to an inch.
struct PictureSize {
    unsigned width = 1200;
    unsigned height = 800;
};

struct Picture {
    std::string title;
    std::string units; ///< of the values
    Axis x;
    Axis y;
    bool isFamily = false; ///< the curves are in an order, which their colours show
    std::string familyLabel; ///< what the curves of a family differ in
    PictureSize size;
    std::vector<Curve> curves;
};

/// Fits the axes to the curves: a little more than the numbers need, so that end points lie inside;
/// logarithmic when the numbers are positive and span more than two decades, unless the user wants something
/// else. Levels become lines from edge to edge. Throws Failure when what the user wants cannot be.
void fitAxes(Picture& picture, const AxisWish& x, const AxisWish& y);

} // namespace tool
