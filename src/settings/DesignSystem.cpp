#include "settings/DesignSystem.h"

namespace vellumry::DesignSystem {

const Colors& Colors::of(ColorScheme scheme)
{
    static const Colors light{.windowBackground = QColor(0xf4, 0xf4, 0xf0),
                              .controlBackground = QColor(0xfc, 0xfc, 0xfa),
                              .textBackground = QColor(0xff, 0xff, 0xff),
                              .thinStroke = QColor(0x1c, 0x24, 0x22, 0x14),
                              .accent = QColor(0x0b, 0x67, 0x78)};
    static const Colors dark{.windowBackground = QColor(0x1a, 0x1c, 0x1c),
                             .controlBackground = QColor(0x22, 0x25, 0x25),
                             .textBackground = QColor(0x17, 0x19, 0x19),
                             .thinStroke = QColor(0xff, 0xff, 0xff, 0x17),
                             .accent = QColor(0x62, 0xc6, 0xd5)};
    return scheme == ColorScheme::dark ? dark : light;
}

} // namespace vellumry::DesignSystem
