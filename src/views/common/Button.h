#pragma once

#include "views/common/HoverFade.h"
#include "views/common/Theme.h"

#include <QAbstractButton>

namespace vellumry {

/// The program's push button. Around what it paints it leaves room for the line that shows the
/// keyboard's focus, so buttons stand side by side without spacing in a layout. A click does not
/// take the focus; Tab does.
class Button : public QAbstractButton {
    Q_OBJECT

public:
    enum class Kind {
        primary,
        secondary,
        bordered,
        danger,
        quietDanger,
        ghost,
        link,
        icon,      ///< a symbol alone
        rest,      ///< a primary one with nothing to do at present
        done,      ///< a primary one that has just succeeded
        confirmed, ///< a bordered one that has just succeeded
    };
    enum class Size { small, regular, alert, large };

    /// The room around the button for the focus line.
    static constexpr int ringRoom = 4;

    /// The theme outlives the button.
    Button(const Theme& theme, Kind kind, const QString& text, QWidget* parent = nullptr,
           Size size = Size::regular);

    /// A button of a symbol alone. `name` is its accessible name and its tool tip.
    [[nodiscard]] static Button* withSymbol(const Theme& theme, const QString& symbol,
                                            const QString& name, QWidget* parent);

    void setKind(Kind newKind);
    void setSymbol(const QString& name, int pixels = 16);
    [[nodiscard]] const QString& symbol() const { return symbolName; }
    /// For a symbol that acts: drawn in the one ink.
    void setAccented(bool accented);
    /// Of a symbol alone: the side of its square.
    void setSide(int pixels);

    /// In place of the height that belongs to the size.
    void setFaceHeight(int pixels);
    /// Paints the button larger or smaller than it is, about its middle; the ring's room is the
    /// most.
    void setFaceScale(qreal scale);

    /// The one that Return presses in its sheet.
    void setDefault(bool isDefault) { defaultButton = isDefault; }
    [[nodiscard]] bool isDefault() const { return defaultButton; }

    [[nodiscard]] bool isRingShown() const { return hasFocus() && ringShown; }
    [[nodiscard]] QSize sizeHint() const override;
    /// Without its padding.
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    /// How far the hover has come, from 0 to 1.
    [[nodiscard]] qreal hoverProgress() const { return hover->progress(); }
    /// The line that shows the keyboard's focus, around a face with that radius.
    void paintRing(QPainter& painter, const QRectF& face, qreal corner) const;

    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    struct Colors {
        QColor fill;
        QColor hover;
        QColor pressed;
        QColor text;
        QColor border;
    };

    [[nodiscard]] Colors colors() const;
    [[nodiscard]] TextStyle textStyle() const;
    [[nodiscard]] int designedHeight() const;
    [[nodiscard]] int padding() const;
    void paintContents(QPainter& painter, const QRectF& face, const QColor& color) const;

    const Theme& theme;
    Kind kind;
    Size size;
    QString symbolName;
    int symbolSize = 16;
    int side = 28;
    int faceHeight = 0; ///< of the size, where it is 0
    qreal faceScale = 1;
    bool accented = false;
    bool defaultButton = false;
    bool ringShown = false;
    HoverFade* hover;
};

} // namespace vellumry
