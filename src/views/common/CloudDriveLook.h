#pragma once

#include "models/CloudDriveType.h"

#include <QColor>
#include <QString>

namespace vellumry {

/// How a cloud drive is shown, in either scheme.
struct CloudDriveLook {
    QColor color;
    QString symbol;

    [[nodiscard]] static CloudDriveLook of(CloudDriveType type);
};

} // namespace vellumry
