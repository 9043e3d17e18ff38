#include "views/sheets/DriveLook.h"

#include "views/common/Icon.h"
#include "views/common/Strokes.h"

#include <QPainter>

namespace vellumry {

namespace {

constexpr qreal ofColor = 0.13; ///< of a drive's colour over white
constexpr QColor darkTile(0xDD, 0xE3, 0xE3);
constexpr int bigTile = 32;

} // namespace

QColor driveColor(CloudDriveType type)
{
    switch (type) {
    case CloudDriveType::dropbox:
        return {0x00, 0x61, 0xFF};
    case CloudDriveType::iCloudDrive:
        return {0x36, 0x93, 0xF3};
    case CloudDriveType::googleDrive:
        return {0x42, 0x85, 0xF4};
    case CloudDriveType::oneDrive:
        return {0x00, 0x78, 0xD4};
    case CloudDriveType::pCloud:
        return {0x00, 0xAE, 0xEF};
    }
    Q_UNREACHABLE();
}

QString driveSymbol(CloudDriveType type)
{
    switch (type) {
    case CloudDriveType::dropbox:
        return QStringLiteral("shippingbox.fill");
    case CloudDriveType::iCloudDrive:
        return QStringLiteral("icloud.fill");
    case CloudDriveType::googleDrive:
        return QStringLiteral("externaldrive.fill");
    case CloudDriveType::oneDrive:
    case CloudDriveType::pCloud:
        return QStringLiteral("cloud.fill");
    }
    Q_UNREACHABLE();
}

void paintTile(QPainter& painter, const Theme& theme, const QRectF& tile, const QString& symbol,
               const std::optional<QColor>& color)
{
    const ColorTokens& token = theme.colors();
    QColor ground = token.fill;
    if (color)
        ground = theme.scheme() == ColorScheme::dark ? darkTile : mixed(Qt::white, *color, ofColor);
    const bool isBig = tile.width() >= bigTile;
    fillRounded(painter, tile, isBig ? 8 : 6, ground);
    const int size = isBig ? 18 : 15;
    Icon(symbol).paint(painter, tile.center() - QPointF(size, size) / 2, size,
                       color.value_or(token.textSecondary));
}

OptionRow::Contents driveRowContents(const DetectedCloudDrive& drive, const QString& homeFolder)
{
    return {.symbol = driveSymbol(drive.type),
            .tileColor = driveColor(drive.type),
            .isTiled = true,
            .title = rawValue(drive.type),
            .detail = drive.shortPath(homeFolder),
            .isPath = true};
}

} // namespace vellumry
