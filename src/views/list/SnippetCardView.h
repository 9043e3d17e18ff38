#pragma once

#include "core/Date.h"
#include "models/Snippet.h"
#include "views/common/Theme.h"

#include <QRectF>

class QPainter;

namespace vellumry {

class CollectionColors;

/// Paints one row of the list: a card with a snippet on it.
class SnippetCardView {
public:
    static constexpr int radius = 8;

    /// What a card shows.
    struct Contents {
        Snippet snippet;
        bool isSelected = false;
        bool isUnsaved = false;
        qreal hover = 0;        ///< how far the card under the pointer has taken on its other look
        bool isFocused = false; ///< the list has the keys
        qreal copied = 0;       ///< how much of "Copied" is to be seen over the card
        bool isOpenPlace = false; ///< the card itself is being dragged
    };

    /// All outlive the painter of cards.
    SnippetCardView(const Theme& theme, const CollectionColors& colors, const Clock& clock);

    [[nodiscard]] int height(bool hasSubtitle) const;

    void paint(QPainter& painter, const QRectF& card, const Contents& contents) const;

    /// The card in words, for who cannot see it.
    [[nodiscard]] QString description(const Snippet& snippet, bool isUnsaved) const;

    /// How long ago a date was. Differs on purpose from what the editor says.
    [[nodiscard]] static QString relativeTime(Date date, Date now);

private:
    [[nodiscard]] QString metaLine(const Snippet& snippet) const;
    void paintGround(QPainter& painter, const QRectF& card, const Contents& contents) const;
    void paintTexts(QPainter& painter, const QRectF& card, const Contents& contents) const;
    void paintDogEar(QPainter& painter, const QRectF& card) const;
    void paintCopied(QPainter& painter, const QRectF& card, const Contents& contents) const;

    const Theme& theme;
    const CollectionColors& colors;
    const Clock& clock;
};

} // namespace vellumry
