#include "output/legend.h"

#include "common/encodings.h"
#include "output/columns.h"

#include <algorithm>

namespace tool {

namespace {

constexpr unsigned smallestFont = 9;
constexpr double shareOfHeight = 0.25;
constexpr double characterWidth = 0.6; ///< of the font size; titles are mostly lower-case letters
constexpr double lineHeight = 1.35; ///< of the font size
constexpr std::size_t sampleWidth = 6; ///< characters that the piece of the curve beside a title takes
constexpr std::size_t longTitle = 48; ///< longer ones are cut when there is no room
constexpr std::size_t shortTitle = 24;

std::size_t longestTitle(const Picture& picture)
{
    std::size_t longest = 0;
    for (const Curve& curve : picture.curves) {
        longest = std::max(longest, displayWidth(curve.title));
    }
    return longest;
}

/// A list in a font with titles of a length; `shown` tells how many find room.
Legend listOf(const Picture& picture, unsigned fontSize, std::size_t titleLength)
{
    const double entry = static_cast<double>(titleLength + sampleWidth) * characterWidth * fontSize;
    const std::size_t columns = std::clamp(
        static_cast<std::size_t>(picture.size.width / entry), std::size_t(1), picture.curves.size());
    const auto rows = static_cast<std::size_t>(picture.size.height * shareOfHeight / (lineHeight * fontSize));
    return { Legend::Kind::List, fontSize, columns, titleLength,
        std::min(picture.curves.size(), rows * columns) };
}

} // namespace

Legend legendFor(const Picture& picture, unsigned fontSize)
{
    const std::size_t longest = longestTitle(picture);
    if (picture.curves.size() == 1 && longest == 0) {
        return {};
    }
    Legend legend;
    for (const std::size_t length :
        { longest, std::min(longest, longTitle), std::min(longest, shortTitle) }) {
        for (unsigned font = fontSize; font >= std::min(smallestFont, fontSize); --font) {
            legend = listOf(picture, font, length);
            if (legend.shown == picture.curves.size()) {
                return legend;
            }
            if (picture.isFamily) {
                return { Legend::Kind::ColourScale, fontSize, 0, 0, 0 };
            }
        }
    }
    return legend;
}

std::string cutTitle(const std::string& title, std::size_t length)
{
    if (displayWidth(title) <= length) {
        return title;
    }
    return toUtf8(toWide(title).substr(0, length - 1)) + "…";
}

} // namespace tool
