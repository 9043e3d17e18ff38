#pragma once

#include "views/common/Theme.h"

#include <QVariantAnimation>
#include <QWidget>

#include <functional>

namespace vellumry {

class Button;

/// The welcome screen of an empty library.
class EmptyStateView : public QWidget {
    Q_OBJECT

public:
    /// The theme outlives the view.
    EmptyStateView(const Theme& theme, std::function<void()> onCreateFirst,
                   QWidget* parent = nullptr);

    /// The size of the symbol, from 0.8 to 1 as the view appears.
    [[nodiscard]] qreal iconScale() const { return scaling->currentValue().toReal(); }
    [[nodiscard]] Button* createButton() const { return create; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    class Art;
    class Lines;

    const Theme& theme;
    QVariantAnimation* scaling;
    Button* create;
};

} // namespace vellumry
