#include "views/common/Label.h"

namespace vellumry {

Label::Label(const Theme& look, TextStyle textStyle, Color textColor, const QString& text,
             QWidget* parent)
    : QLabel(parent), theme(look), style(textStyle), color(textColor)
{
    setTextFormat(Qt::PlainText);
    setText(text);
    connect(&theme, &Theme::changed, this, &Label::applyTheme);
    applyTheme();
}

void Label::applyTheme()
{
    setFont(theme.font(style));
    setMinimumHeight(theme.lineHeight(style));
    QPalette colors = palette();
    colors.setColor(QPalette::WindowText, theme.colors().*color);
    setPalette(colors);
}

} // namespace vellumry
