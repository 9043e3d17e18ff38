#include "views/common/AlertCard.h"

#include "views/common/Label.h"
#include "views/common/SymbolView.h"

#include <QVBoxLayout>

namespace vellumry {

namespace {

constexpr int cardWidth = 380;
constexpr int margin = 20;
constexpr int symbolSize = 28;
constexpr int symbolGap = 14;
constexpr int footerGap = 18;
constexpr size_t mostSideBySide = 2;

} // namespace

AlertCard::AlertCard(const Theme& theme, const Question& question, QWidget* parent)
    : QWidget(parent)
{
    setFixedWidth(cardWidth);
    setAccessibleName(question.title);
    setAccessibleDescription(question.message);

    auto* column = new QVBoxLayout(this);
    constexpr int ring = Button::ringRoom;
    column->setContentsMargins(margin, margin, margin - ring, margin - ring);
    column->setSpacing(0);

    auto* top = new QHBoxLayout;
    top->setSpacing(symbolGap);
    top->setContentsMargins(0, 0, ring, 0);
    auto* symbol = new SymbolView(theme, question.symbol, symbolSize, question.symbolColor, this);
    top->addWidget(symbol, 0, Qt::AlignTop);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(4);
    texts->addWidget(
        new Label(theme, TextStyle::heading, &ColorTokens::textPrimary, question.title, this));
    auto* message =
        new Label(theme, TextStyle::body, &ColorTokens::textSecondary, question.message, this);
    message->setWordWrap(true);
    texts->addWidget(message);
    top->addLayout(texts, 1);
    column->addLayout(top);
    column->addSpacing(footerGap - ring);

    const bool isStacked = question.answers.size() > mostSideBySide;
    QBoxLayout* footer = isStacked ? static_cast<QBoxLayout*>(new QVBoxLayout) : new QHBoxLayout;
    footer->setSpacing(0);
    if (isStacked)
        footer->setContentsMargins(-ring, 0, 0, 0);
    else
        footer->addStretch();
    for (const Answer& answer : question.answers) {
        auto* button = new Button(theme, answer.kind, answer.text, this,
                                  isStacked ? Button::Size::alert : Button::Size::regular);
        button->setAccessibleName(answer.text); // or else it would be read without its "&"
        if (isStacked)
            button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        connect(button, &Button::clicked, this, answer.action);
        footer->addWidget(button);
        if (answer.isFocused)
            first = button;
    }
    column->addLayout(footer);
}

Button* AlertCard::button(const QString& text) const
{
    for (Button* each : findChildren<Button*>()) {
        if (each->text() == text)
            return each;
    }
    return nullptr;
}

} // namespace vellumry
