#include "output/picture.h"

#include "common/failure.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tool {

namespace {

constexpr double decadesOfLogarithm = 2;
constexpr double margin = 0.03; ///< of an axis, at each of its ends
constexpr double marginOfOneNumber = 0.05; ///< of the number

/// The least and the most of the numbers that are met.
class Extent {
public:
    void meet(double number)
    {
        if (std::isfinite(number)) {
            range_ = { std::min(range_.least, number), std::max(range_.most, number) };
        }
    }
    bool isEmpty() const { return range_.least > range_.most; }
    const Range& range() const { return range_; }

private:
    Range range_ { std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity() };
};

bool isWithin(double number, const std::optional<Range>& range)
{
    return !range || (number >= range->least && number <= range->most);
}

bool isDrawable(const Curve::Dot& dot)
{
    return std::isfinite(dot.x) && std::isfinite(dot.y);
}

Extent extentOfX(const Picture& picture)
{
    Extent extent;
    for (const Curve& curve : picture.curves) {
        for (const Curve::Dot& dot : curve.dots) {
            if (!curve.isLevel && isDrawable(dot)) {
                extent.meet(dot.x);
            }
        }
    }
    return extent;
}

Extent extentOfY(const Picture& picture, const std::optional<Range>& x)
{
    Extent extent;
    for (const Curve& curve : picture.curves) {
        for (const Curve::Dot& dot : curve.dots) {
            if (curve.isLevel || (isDrawable(dot) && isWithin(dot.x, x))) {
                extent.meet(dot.y);
            }
        }
    }
    return extent;
}

bool wantsLogarithm(const AxisWish& wish, const Range& range)
{
    return wish.scale == Scale::Logarithmic
        || (wish.scale == Scale::Fitting && range.least > 0
            && std::log10(range.most / range.least) > decadesOfLogarithm);
}

Range widened(const Range& range, bool isLogarithmic)
{
    if (range.least == range.most) {
        const double room = range.least == 0 ? 1 : std::abs(range.least) * marginOfOneNumber;
        return { range.least - room, range.most + room };
    }
    if (isLogarithmic) {
        const double room = std::pow(range.most / range.least, margin);
        return { range.least / room, range.most * room };
    }
    const double room = (range.most - range.least) * margin;
    return { range.least - room, range.most + room };
}

void fitAxis(Axis& axis, const AxisWish& wish, const Range& numbers)
{
    const Range& shown = wish.range ? *wish.range : numbers;
    if (wish.scale == Scale::Logarithmic && shown.least <= 0) {
        throw Failure("the axis of \"{}\" cannot be logarithmic: it begins at {}; give it a --range above 0",
            axis.label, shown.least);
    }
    axis.isLogarithmic = wantsLogarithm(wish, shown);
    axis.range = wish.range ? shown : widened(shown, axis.isLogarithmic);
}

} // namespace

void fitAxes(Picture& picture, const AxisWish& x, const AxisWish& y)
{
    fitAxis(picture.x, x, extentOfX(picture).range());
    const Extent numbers = extentOfY(picture, x.range);
    if (numbers.isEmpty()) {
        throw Failure(
            "no point lies between {} and {}: there is nothing to draw", x.range->least, x.range->most);
    }
    fitAxis(picture.y, y, numbers.range());
    for (Curve& curve : picture.curves) {
        if (curve.isLevel) {
            const double level = curve.dots.front().y;
            curve.dots = { { picture.x.range.least, level }, { picture.x.range.most, level } };
        }
    }
}

} // namespace tool
