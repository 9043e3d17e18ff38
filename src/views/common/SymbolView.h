#pragma once

#include "views/common/Theme.h"

#include <QWidget>

namespace vellumry {

/// A symbol in one of the theme's colours.
class SymbolView : public QWidget {
    Q_OBJECT

public:
    /// The theme outlives the view.
    SymbolView(const Theme& theme, const QString& symbol, int size, QColor ColorTokens::*color,
               QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& theme;
    QString symbol;
    QColor ColorTokens::*color;
};

} // namespace vellumry
