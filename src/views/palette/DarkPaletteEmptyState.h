#pragma once

#include <QWidget>

namespace vellumry {

/// What stands in the list's place when a query finds nothing.
class DarkPaletteEmptyState : public QWidget {
    Q_OBJECT

public:
    explicit DarkPaletteEmptyState(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace vellumry
