#include "views/palette/DarkSearchFieldView.h"

#include "core/Text.h"
#include "views/common/Icon.h"
#include "views/common/Theme.h"
#include "views/palette/KeyHandlingTextField.h"
#include "views/palette/QuickSearchStyle.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace vellumry {

namespace {

constexpr std::chrono::milliseconds focusDelayAfterCreation{100};
constexpr std::chrono::milliseconds focusDelayAfterUpdate{50};

constexpr int symbolSize = 20;
constexpr int symbolX = 20;
constexpr int textX = 52;
constexpr int textMargin = 20;
constexpr int ownMarginOfLineEdit = 2; // QLineEdit's text starts this far inside of it
constexpr int roomForCaret = 2;        // before the placeholder
constexpr int caretOverhang = 4;       // above and below the letters together

QPalette fieldPalette(QPalette palette)
{
    // One set of colours, so that nothing is painted again when the window becomes active.
    palette.setColor(QPalette::Base, Qt::transparent);
    palette.setColor(QPalette::Text, QuickSearchStyle::fieldText);
    palette.setColor(QPalette::PlaceholderText, QuickSearchStyle::placeholder);
    palette.setColor(QPalette::Highlight, QuickSearchStyle::textSelection);
    palette.setColor(QPalette::HighlightedText, QuickSearchStyle::fieldText);
    return palette;
}

} // namespace

DarkSearchFieldView::DarkSearchFieldView(const Theme& look, Scheduler& scheduler,
                                         Callbacks handlers, QWidget* parent)
    : QWidget(parent), theme(look), timing(scheduler), callbacks(std::move(handlers)),
      field(new KeyHandlingTextField(
          QuickSearchStyle::caret, [this](const QKeyEvent& event) { return handleKeyDown(event); },
          this))
{
    field->setPalette(fieldPalette(field->palette()));
    field->setPlaceholderText(QStringLiteral("Search snippets..."));
    field->setAccessibleName(QStringLiteral("Search snippets"));
    field->setTextMargins(roomForCaret, 0, 0, 0);
    setFixedHeight(QuickSearchStyle::fieldHeight);
    setFocusProxy(field);
    connect(&theme, &Theme::changed, this, &DarkSearchFieldView::applyTheme);
    applyTheme();
    connect(field, &QLineEdit::textEdited, this, &DarkSearchFieldView::handleTextEdited);
    takeFocusAfter(focusDelayAfterCreation);
}

void DarkSearchFieldView::applyTheme()
{
    const QFont font = theme.font(TextStyle::paletteField);
    field->setFont(font);
    field->setCaretHeight(font.pixelSize() + caretOverhang);
    const int fieldX = textX - ownMarginOfLineEdit - roomForCaret;
    const int high = theme.lineHeight(TextStyle::paletteField);
    field->setGeometry(fieldX, (QuickSearchStyle::fieldHeight - high) / 2,
                       QuickSearchStyle::width - textMargin - fieldX, high);
}

void DarkSearchFieldView::updateText(const QString& text)
{
    if (field->text() != text)
        field->setText(text);
    takeFocusAfter(focusDelayAfterUpdate);
}

QString DarkSearchFieldView::text() const
{
    return field->text();
}

void DarkSearchFieldView::takeFocusAfter(std::chrono::milliseconds delay)
{
    timing.after(delay, this, [this] {
        if (!field->hasFocus())
            field->setFocus(Qt::OtherFocusReason);
    });
}

bool DarkSearchFieldView::handleKeyDown(const QKeyEvent& event)
{
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        callbacks.onReturn();
        return true;
    case Qt::Key_Escape:
        callbacks.onEscape();
        return true;
    case Qt::Key_Down:
        callbacks.onArrowDown();
        return true;
    case Qt::Key_Up:
        callbacks.onArrowUp();
        return true;
    case Qt::Key_Right:
        if (!field->isCursorAtEnd())
            return false;
        callbacks.onArrowRight();
        return true;
    case Qt::Key_C:
        if (!event.modifiers().testFlag(Qt::ControlModifier) || field->hasSelectedText())
            return false;
        callbacks.onReturn();
        return true;
    default:
        return false;
    }
}

void DarkSearchFieldView::handleTextEdited(const QString& text)
{
    const QString cut = prefixOfCharacters(text, maxCharacters);
    if (cut.size() != text.size())
        field->amendEdit(cut, std::min(field->cursorPosition(), static_cast<int>(cut.size())));
    callbacks.onTextChanged(cut);
}

void DarkSearchFieldView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    Icon(QStringLiteral("magnifyingglass"))
        .paint(painter, {symbolX, (height() - symbolSize) / 2.0}, symbolSize,
               QuickSearchStyle::subtleTextColor);
}

} // namespace vellumry
