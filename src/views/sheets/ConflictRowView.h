#pragma once

#include "library/ImportConflicts.h"
#include "views/common/Theme.h"

#include <QRectF>
#include <QString>

class QPainter;

namespace vellumry {

/// Paints one conflict of an import: its type, its name, which side is newer, and what the chosen
/// mode will do about it.
class ConflictRowView {
public:
    struct Contents {
        ImportConflict conflict;
        ConflictResolutionMode selectedMode = ConflictResolutionMode::smartUpdate;
        bool isCurrent = false;     ///< of the keyboard
        bool isDetailShown = false; ///< the pointer is over the mark, or the detail is open
    };

    /// The theme outlives the painter of rows.
    explicit ConflictRowView(const Theme& look) : theme(look) {}

    [[nodiscard]] int height() const;
    [[nodiscard]] int headingHeight() const;
    void paintHeading(QPainter& painter, const QRectF& row) const;
    void paint(QPainter& painter, const QRectF& row, const Contents& contents) const;
    /// The place of the mark that opens the detail.
    [[nodiscard]] static QRectF infoRect(const QRectF& row);

    /// The row in words, for who cannot see it.
    [[nodiscard]] static QString description(const ImportConflict& conflict,
                                             ConflictResolutionMode mode);

private:
    const Theme& theme;
};

} // namespace vellumry
