#pragma once

#include "views/common/Button.h"

#include <QWidget>

#include <functional>
#include <vector>

namespace vellumry {

/// A question with a symbol, as the contents of a sheet. Two answers stand side by side, the last
/// one at the far right; more are stacked in their order.
class AlertCard : public QWidget {
    Q_OBJECT

public:
    struct Answer {
        QString text;
        Button::Kind kind;
        std::function<void()> action;
        bool isFocused = false; ///< has the focus at first, so that Return gives this answer
    };

    struct Question {
        QString symbol;
        QColor ColorTokens::*symbolColor;
        QString title;
        QString message;
        std::vector<Answer> answers;
    };

    /// The theme outlives the card.
    AlertCard(const Theme& theme, const Question& question, QWidget* parent = nullptr);

    /// The button that has the focus at first.
    [[nodiscard]] QWidget* firstFocus() const { return first; }
    [[nodiscard]] Button* button(const QString& text) const;

private:
    QWidget* first = nullptr;
};

} // namespace vellumry
