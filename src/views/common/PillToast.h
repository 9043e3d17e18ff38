#pragma once

#include "core/Scheduler.h"
#include "views/common/Theme.h"

#include <QVariantAnimation>
#include <QWidget>

#include <chrono>

namespace vellumry {

/// A line with a symbol at the bottom of its parent that fades in and out. Takes neither the
/// keyboard nor the mouse. It is announced to screen readers, and goes by itself after a while.
class PillToast : public QWidget {
    Q_OBJECT

public:
    static constexpr std::chrono::seconds holdTime{3};

    /// The theme and the scheduler outlive the toast.
    PillToast(const Theme& theme, Scheduler& scheduler, QWidget* parent);

    /// `symbol` is "checkmark", or "xmark" for what has failed.
    void present(const QString& symbol, const QString& text);
    /// Lets it go before its time.
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
    Debouncer end;
    QVariantAnimation* opacity;
};

} // namespace vellumry
