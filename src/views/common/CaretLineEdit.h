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
