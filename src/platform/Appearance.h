#pragma once

#include "core/ColorScheme.h"

#include <QObject>

class QPalette;

namespace vellumry {

/// What the desktop wishes programs to look like. Main thread only.
class Appearance : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// The wish of this moment.
    [[nodiscard]] virtual ColorScheme colorScheme() const = 0;

Q_SIGNALS:
    /// The wish is another one than before.
    void colorSchemeChanged();
};

/// What a palette looks like, by whether its text is lighter than what it stands on.
[[nodiscard]] ColorScheme colorSchemeOf(const QPalette& palette);

} // namespace vellumry
