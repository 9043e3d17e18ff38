#pragma once

#include <QColor>
#include <QString>

#include <optional>

namespace vellumry {

/// Whether the sheet for a colour of one's own is up, and for which collection.
struct CustomColorPickerState {
    bool isPresented = false;
    std::optional<QString> collectionName;
    QColor initialColor;
};

} // namespace vellumry
