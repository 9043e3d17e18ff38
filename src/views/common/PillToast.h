#pragma once

#include "views/common/Theme.h"

#include <QVariantAnimation>
#include <QWidget>

namespace vellumry {

/// A line with a symbol at the bottom of its parent that fades in and out. Takes neither the
/// keyboard nor the mouse. How long it stands, its owner says.
class PillToast : public QWidget {
    Q_OBJECT

public:
    /// The theme outlives the toast.
    PillToast(const Theme& theme, QWidget* parent);

    /// `symbol` is "checkmark", or "xmark" for what has failed.
    void present(const QString& symbol, const QString& text);
    void dismiss();

    [[nodiscard]] const QString& text() const { return line; }
    [[nodiscard]] const QString& symbol() const { return symbolName; }
    /// Whether it stands, or is about to.
    [[nodiscard]] bool isPresented() const { return presented; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void place();
    void fade(bool in);

    const Theme& theme;
    QString symbolName;
    QString line;
    bool presented = false;
    QVariantAnimation* opacity;
};

} // namespace vellumry
