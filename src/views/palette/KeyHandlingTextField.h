#pragma once

#include <QLineEdit>
#include <QTimer>

#include <functional>

namespace vellumry {

/// A bare line of text with a caret in a colour of its own, that offers each key to a handler
/// first. While the field's window is the active one, that holds for keys to any widget of the
/// window.
class KeyHandlingTextField : public QLineEdit {
    Q_OBJECT

public:
    /// Answers whether it has handled the key, which then goes no further.
    using KeyHandler = std::function<bool(const QKeyEvent&)>;

    KeyHandlingTextField(const QColor& caretColor, KeyHandler handler, QWidget* parent);
    ~KeyHandlingTextField() override;

    [[nodiscard]] bool isCursorAtEnd() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void showCaret();

    QColor caretColor;
    KeyHandler keyHandler;
    QTimer blinkTimer;
    bool isCaretShown = false;
};

} // namespace vellumry
