#pragma once

#include "views/common/Theme.h"

#include <QList>
#include <QWidget>

#include <optional>

class QBoxLayout;
class QHBoxLayout;
class QVBoxLayout;

namespace vellumry {

/// The rows of a section of the settings, in a box.
class SettingsGroup : public QWidget {
    Q_OBJECT

public:
    enum class Line { none, above };

    /// The theme outlives the group.
    SettingsGroup(const Theme& theme, const QString& name, QWidget* parent = nullptr);

    /// Puts the row below the others, behind a line or not. Takes it over.
    void addRow(QWidget* row, Line line = Line::none);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& theme;
    QVBoxLayout* column;
    QList<const QWidget*> lined;
};

/// A row of the usual height, with the usual margins, for what its layout is given.
[[nodiscard]] QHBoxLayout* makeSettingsRow(QWidget* row);

/// The room for a row where the settings are as narrow as they can be.
inline constexpr int settingsRowWidth = 458;

/// Sets the parts of a row side by side, or, where large text leaves no room for that, one below
/// the other.
void foldSettingsRow(QBoxLayout& row);

/// A title with a description below it, which wraps.
[[nodiscard]] QVBoxLayout* makeSettingsTexts(const Theme& theme, const QString& title,
                                             const QString& description, QWidget* parent);

/// A symbol on a small coloured ground.
class SettingsTile final : public QWidget {
    Q_OBJECT

public:
    /// The theme outlives the tile.
    explicit SettingsTile(const Theme& theme, QWidget* parent = nullptr);

    /// In the one ink, or without an accent.
    void setSymbol(const QString& name, bool isAccented);
    /// In a colour of its own.
    void setSymbol(const QString& name, const QColor& ownColor);
    [[nodiscard]] const QString& symbol() const { return symbolName; }
    /// Nothing without one of its own.
    [[nodiscard]] const std::optional<QColor>& color() const { return own; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& theme;
    QString symbolName;
    bool accented = false;
    std::optional<QColor> own;
};

} // namespace vellumry
