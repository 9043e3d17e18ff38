#pragma once

#include "views/common/CaretLineEdit.h"
#include "views/common/Theme.h"

namespace vellumry {

class Button;

/// The program's text field: a frame that shows the focus, a caret in the one ink, and, where asked
/// for, a symbol before the text and a button behind it that clears.
class TextField : public CaretLineEdit {
    Q_OBJECT

public:
    /// The theme outlives the field.
    TextField(const Theme& theme, const QString& placeholder, QWidget* parent = nullptr,
              int height = 32);

    void setSymbol(const QString& name);
    /// `name` tells what the button does. It is shown while there is text, or `always`.
    void addClearButton(const QString& name, bool always = false);
    [[nodiscard]] Button* clearButton() const { return clearer; }
    void setTextStyle(TextStyle style);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// The person pressed the clear button.
    void clearRequested();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void applyTheme();
    void placeText();

    const Theme& theme;
    int designedHeight;
    TextStyle style = TextStyle::body;
    QString symbolName;
    Button* clearer = nullptr;
};

} // namespace vellumry
