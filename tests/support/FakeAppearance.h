#pragma once

#include "platform/Appearance.h"

namespace vellumry::test {

/// A desktop whose wish a test sets.
class FakeAppearance final : public Appearance {
public:
    [[nodiscard]] ColorScheme colorScheme() const override { return scheme; }

    void setColorScheme(ColorScheme newScheme)
    {
        scheme = newScheme;
        Q_EMIT colorSchemeChanged();
    }

private:
    ColorScheme scheme = ColorScheme::light;
};

} // namespace vellumry::test
