#pragma once

#include "views/common/CaretLineEdit.h"
#include "views/common/Theme.h"

#include <functional>

namespace vellumry {

/// A line of text without a frame, which takes no line breaks and no more characters than it may
/// hold. Where asked for it has a ground and a frame while it has the focus.
class BareTextField : public CaretLineEdit {
    Q_OBJECT

public:
    /// How far the frame lies outside of the text.
    static constexpr int outset = 8;

    /// What keys mean. Where one is empty, the key keeps its own meaning.
    struct Keys {
        std::function<void()> onSubmit{};
        std::function<void()> onEscape{};
        std::function<void()> onTab{};
        std::function<void()> onShiftTab{};
    };

    struct Look {
        TextStyle style;
        QColor ColorTokens::*color = &ColorTokens::textPrimary;
        int height;
        bool hasFocusFrame = false;
    };

    /// The theme outlives the field. Of a limit of 0 there is none.
    BareTextField(const Theme& theme, const Look& look, const QString& placeholder, int limit,
                  QWidget* parent);

    void setKeys(Keys handlers) { keys = std::move(handlers); }
    /// The text of a model; keeps the caret where the text is the same.
    void updateText(const QString& text);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// By the person, with the text as it may be.
    void edited(const QString& text);
    void focusChanged(bool hasFocus);

protected:
    bool event(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void applyTheme();
    void takeEdit(const QString& text);
    [[nodiscard]] QString allowed(QString text) const;
    bool handleKey(const QKeyEvent& event);

    const Theme& theme;
    Look look;
    int limit;
    Keys keys;
};

} // namespace vellumry
