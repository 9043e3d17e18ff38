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
    /// Higher where its texts take more lines.
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int wide) const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] qreal titleHeight(qreal room) const;

    Contents shown;
};

} // namespace vellumry
