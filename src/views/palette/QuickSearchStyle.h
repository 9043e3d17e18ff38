#pragma once

#include <QColor>
#include <QString>

namespace vellumry {

/// The colours and metrics of the palette. It is dark and neutral in every theme.
struct QuickSearchStyle {
    static const QColor background;
    static const QColor stroke;   ///< the panel's inner line
    static const QColor hairline; ///< between field, list and footer
    static const QColor text;
    static const QColor fieldText;
    static const QColor placeholder;
    static const QColor caret;
    static const QColor textSelection; ///< selected text in the field
    static const QColor subtleTextColor;
    static const QColor faintTextColor;
    static const QColor selectionBackground;
    static const QColor selectionStroke;
    static const QColor hoverBackground;
    static const QColor badgeText;
    static const QColor badgeFill;
    static const QColor textOnSelection; ///< secondary text of the selected row
    static const QColor iconNeutral;
    static const QColor keycapFill;
    static const QColor keycapStroke;
    static const QColor keycapText;
    static const QColor scrollHandle;
    static const QColor scrollHandleHover;

    static constexpr int width = 680;
    static constexpr int height = 480;
    static constexpr int cornerRadius = 12;
    static constexpr int fieldHeight = 60;
    static constexpr int footerHeight = 40;
    static constexpr int headerHeight = 28;
    static constexpr int rowHeight = 40;
    static constexpr int passwordRowHeight = 54;
    static constexpr int calculatorRowHeight = 72;
    static constexpr int rowRadius = 8;
    static constexpr int rowPadding = 12; ///< inside a row, and between its parts
    static constexpr int listMargin = 8;
    static constexpr int listTopMargin = 4;
    static constexpr int listInset = 1; ///< of the list, which leaves the panel's inner line free
    static constexpr int iconSlot = 20;
    static constexpr int badgeHeight = 20;
    static constexpr int keycapSize = 20;

    [[nodiscard]] static QColor iconOrange();
    [[nodiscard]] static QColor iconGreen();
    [[nodiscard]] static QColor iconPink();

    /// RRGGBB or RRGGBBAA, around which white space, and in which any "#", counts for nothing.
    /// `fallback` stands in for any other text.
    [[nodiscard]] static QColor color(const QString& hex, const QColor& fallback);
};

} // namespace vellumry
