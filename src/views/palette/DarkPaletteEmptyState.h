#pragma once

#include <QWidget>

namespace vellumry {

class Theme;

/// What stands in the list's place when a query finds nothing.
class DarkPaletteEmptyState : public QWidget {
    Q_OBJECT

public:
    /// The theme outlives the view.
    explicit DarkPaletteEmptyState(const Theme& theme, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& theme;
};

} // namespace vellumry
