#pragma once

#include "core/ColorScheme.h"
#include "views/common/ColorTokens.h"

#include <QFont>
#include <QObject>
#include <QPalette>

#include <array>

namespace vellumry {

/// What a text is, which decides its font and the height of its line.
enum class TextStyle {
    hero,
    title,
    sheetTitle,
    heading,
    body,
    bodyMedium, ///< of buttons and selected rows
    bodyStrong,
    label,
    labelMedium,
    labelStrong,
    caption,
    captionMedium,
    section,
    content,
    contentSmall,
    path,
    paletteField,
    paletteRow,
    palettePassword,
    paletteResult,
};

/// How things look at present: the colours of the scheme, and fonts that follow the size that the
/// person has set for the desktop. Whoever paints reads from it at each painting and repaints on
/// changed(); nothing of it is kept. Main thread only.
class Theme final : public QObject {
    Q_OBJECT

public:
    /// The sizes of the design, as the desktop's font asks for them to be multiplied.
    [[nodiscard]] static qreal systemTextScale();

    explicit Theme(ColorScheme scheme, qreal textScale = systemTextScale(),
                   QObject* parent = nullptr);

    [[nodiscard]] ColorScheme scheme() const { return currentScheme; }
    void setScheme(ColorScheme scheme);
    [[nodiscard]] qreal textScale() const { return currentScale; }
    void setTextScale(qreal scale);

    [[nodiscard]] const ColorTokens& colors() const { return colorTokens(currentScheme); }
    [[nodiscard]] QFont font(TextStyle style) const;
    [[nodiscard]] int lineHeight(TextStyle style) const;

    /// From now on the texts are as large as the desktop's font asks for at the time.
    void followSystemFont();

    /// The height of a row with one line of text: that of the design, or more for larger text.
    [[nodiscard]] int rowHeight(int designed, TextStyle style) const;

    /// For the widgets that paint themselves from a palette.
    [[nodiscard]] QPalette palette() const;

Q_SIGNALS:
    /// Of colours, fonts or sizes.
    void changed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    using SystemFonts = std::array<QFont, 2>; ///< for texts, and of one width

    [[nodiscard]] static SystemFonts systemFonts();
    void takeSystemFont();

    ColorScheme currentScheme;
    qreal currentScale;
    SystemFonts followedFonts;
};

} // namespace vellumry
