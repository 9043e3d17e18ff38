#pragma once

#include "library/PickFolder.h"

class QWidget;

namespace vellumry {

/// The platform's dialog for choosing a folder, which may be a new one. It stands over the window
/// of a widget, and goes without an answer when that is destroyed.
class FolderDialog {
public:
    /// The widget outlives the function.
    [[nodiscard]] static PickFolder over(QWidget& widget);
};

} // namespace vellumry
