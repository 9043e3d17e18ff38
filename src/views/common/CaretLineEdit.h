#pragma once

#include <QLineEdit>
#include <QTimer>

namespace vellumry {

/// A bare line of text with a caret in a colour of its own.
class CaretLineEdit : public QLineEdit {
    Q_OBJECT

public:
    CaretLineEdit(const QColor& caretColor, int caretHeight, QWidget* parent);
    ~CaretLineEdit() override;

    void setCaretColor(const QColor& color);
    void setCaretHeight(int height);
    /// Makes this text of what the person has just typed or pasted, with the caret there. Unlike
    /// with setText, the edit can be undone, and what goes before it; no signal tells of it. To be
    /// called when the edit is announced, by textEdited.
    void amendEdit(const QString& text, int caret);

protected:
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void showCaret();

    QColor caretColor;
    int caretHeight;
    QTimer blinkTimer;
    bool isCaretShown = false;
};

} // namespace vellumry
