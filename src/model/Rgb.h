#pragma once

// An opaque 8-bit sRGB colour. The core stays free of QtGui; the screens turn it into a QColor.
struct Rgb {
    int red = 0;
    int green = 0;
    int blue = 0;

    friend bool operator==(const Rgb &, const Rgb &) = default;
};

namespace Palette {
inline constexpr Rgb indigo{93, 96, 242};
inline constexpr Rgb charcoal{45, 45, 45};
inline constexpr Rgb green{61, 170, 109};
inline constexpr Rgb amber{229, 161, 0};
inline constexpr Rgb standardGrey{128, 128, 128};
} // namespace Palette
