#pragma once

#include "models/CloudDriveType.h"
#include "models/DetectedCloudDrive.h"
#include "views/common/Theme.h"
#include "views/sheets/OptionRow.h"

#include <QColor>
#include <QString>

#include <optional>

class QPainter;

namespace vellumry {

/// The colour by which people know a drive, the same in both themes.
[[nodiscard]] QColor driveColor(CloudDriveType type);
/// The name of its symbol.
[[nodiscard]] QString driveSymbol(CloudDriveType type);

/// Paints a symbol on a tile of its own: in the colour of a drive, or a quiet one without.
void paintTile(QPainter& painter, const Theme& theme, const QRectF& tile, const QString& symbol,
               const std::optional<QColor>& color);

/// What a row says of a drive.
[[nodiscard]] OptionRow::Contents driveRowContents(const DetectedCloudDrive& drive,
                                                   const QString& homeFolder);

} // namespace vellumry
