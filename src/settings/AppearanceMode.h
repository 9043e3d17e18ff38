#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace vellumry {

/// What the user wants the windows to look like; `system` follows the desktop.
enum class AppearanceMode { light, dark, system };

/// In the order in which they are offered.
inline constexpr std::array allAppearanceModes{AppearanceMode::light, AppearanceMode::dark,
                                               AppearanceMode::system};

/// The text that is stored.
[[nodiscard]] QString rawValue(AppearanceMode mode);

/// The mode with that stored text, or nothing.
[[nodiscard]] std::optional<AppearanceMode> appearanceModeFromRawValue(QStringView text);

} // namespace vellumry
