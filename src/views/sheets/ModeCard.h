#pragma once

#include "views/sheets/SelectableButton.h"

#include <functional>

namespace vellumry {

/// One of the two ways to begin, as a card: a symbol on its tile, a title and what it means.
class ModeCard : public SelectableButton {
    Q_OBJECT

public:
    struct Contents {
        QString icon;
        QColor ColorTokens::*iconColor;
        QString title;
        QString description;
    };

    /// The theme outlives the card.
    ModeCard(const Theme& theme, const Contents& contents, std::function<void()> action,
             QWidget* parent);

    [[nodiscard]] const Contents& contents() const { return shown; }
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Contents shown;
};

} // namespace vellumry
