#include "settings/AppearanceMode.h"

namespace vellumry {

QString rawValue(AppearanceMode mode)
{
    switch (mode) {
    case AppearanceMode::light:
        return QStringLiteral("light");
    case AppearanceMode::dark:
        return QStringLiteral("dark");
    case AppearanceMode::system:
        return QStringLiteral("system");
    }
    Q_UNREACHABLE();
}

std::optional<AppearanceMode> appearanceModeFromRawValue(QStringView text)
{
    for (const AppearanceMode mode : allAppearanceModes) {
        if (rawValue(mode) == text)
            return mode;
    }
    return std::nullopt;
}

} // namespace vellumry
