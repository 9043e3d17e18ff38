#pragma once

#include "views/common/Theme.h"

#include <QWidget>

namespace vellumry {

/// How far the move of the library is: a line of text, the percentage, a bar. A screen reader hears
/// it by the accessible name.
class MigrationProgressView : public QWidget {
    Q_OBJECT

public:
    /// The theme outlives the view.
    MigrationProgressView(const Theme& theme, QWidget* parent);

    /// From 0 to 1.
    void setProgress(double value);
    [[nodiscard]] double progress() const { return shown; }
    [[nodiscard]] QString percentText() const;

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& theme;
    double shown = 0;
};

} // namespace vellumry
