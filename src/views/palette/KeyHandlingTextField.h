#pragma once

#include "views/common/CaretLineEdit.h"

#include <functional>

namespace vellumry {

/// The palette's line of text, which offers each key to a handler first. While the field's window
/// is the active one, that holds for keys to any widget of the window.
class KeyHandlingTextField : public CaretLineEdit {
    Q_OBJECT

public:
    /// Answers whether it has handled the key, which then goes no further.
    using KeyHandler = std::function<bool(const QKeyEvent&)>;

    /// The height of the caret is to be set with the font.
    KeyHandlingTextField(const QColor& caretColor, KeyHandler handler, QWidget* parent);

    [[nodiscard]] bool isCursorAtEnd() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    KeyHandler keyHandler;
};

} // namespace vellumry
