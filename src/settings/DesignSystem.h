#pragma once

#include "core/ColorScheme.h"

#include <QColor>

namespace vellumry::DesignSystem {

/// The colours that all parts of the interface share. Safe to use from any thread.
struct Colors {
    QColor windowBackground;
    QColor controlBackground;
    QColor textBackground;
    QColor thinStroke; ///< a hairline, translucent
    QColor accent;     ///< of text, icons and lines that act or are chosen

    [[nodiscard]] static const Colors& of(ColorScheme scheme);
};

} // namespace vellumry::DesignSystem
