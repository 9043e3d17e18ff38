#pragma once

#include "core/ColorScheme.h"

#include <QColor>

namespace vellumry {

/// The colours of the interface by their use. Both schemes have the same names.
struct ColorTokens {
    // The three sheets, and what lies on them
    QColor window;
    QColor sidebar;
    QColor list;
    QColor editor;
    QColor sheet;
    QColor menu;
    QColor card;
    QColor cardHover;
    QColor cardSelected;
    QColor field;
    QColor group;

    // Lines
    QColor stroke;
    QColor strokeStrong;
    QColor fieldStroke;

    // Quiet fills
    QColor fill;
    QColor fillHover;
    QColor fillPressed;

    // Text, and marks that stand with it
    QColor textPrimary;
    QColor textSecondary;
    QColor textTertiary;
    QColor textDisabled;
    QColor secondaryMark;
    QColor rowSelected;

    // The one ink: what acts and what is chosen
    QColor accent;
    QColor accentFill;
    QColor accentFillHover;
    QColor accentFillPressed;
    QColor onAccent;
    QColor accentTint;
    QColor accentStroke;

    // Meanings
    QColor danger;
    QColor dangerFill;
    QColor onDanger;
    QColor dangerTint;
    QColor success;
    QColor successFill;
    QColor onSuccess;
    QColor successTint;
    QColor warning;
    QColor warningFill;
    QColor warningTint;

    // Unsaved
    QColor draft;
    QColor draftFold;

    // Focus, scrim and shadow
    QColor focusRing;
    QColor scrim;
    QColor shadow;

    // Matches of a search
    QColor matchCurrent;
    QColor matchOther;
    QColor matchText;

    // Key caps
    QColor keycap;
    QColor keycapStroke;
    QColor keycapText;

    // Scroll handles, tool tips, selected text
    QColor scrollHandle;
    QColor scrollHandleHover;
    QColor tooltip;
    QColor tooltipText;
    QColor selectionText;
};

/// The table of a scheme. It lives as long as the program.
[[nodiscard]] const ColorTokens& colorTokens(ColorScheme scheme);

} // namespace vellumry
