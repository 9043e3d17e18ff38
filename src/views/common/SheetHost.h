#pragma once

#include "views/common/Theme.h"

#include <QWidget>

#include <functional>
#include <vector>

namespace vellumry {

/// Shows sheets within a window: a card in the middle over a scrim that covers the window. What is
/// behind takes no input, and what takes the focus there gets it when the sheet goes. Tab stays in
/// the sheet, Escape is its cancel button, Return presses its default button; the focus goes back
/// to where it was when the sheet goes. Sheets may stand upon sheets. Covers its parent, and is
/// hidden while there is nothing to show. Main thread only.
class SheetHost : public QWidget {
    Q_OBJECT

public:
    struct Options {
        /// What Escape does; without it Escape does nothing.
        std::function<void()> onCancel;
        /// What has the focus at first: by default, what Tab reaches first.
        QWidget* firstFocus = nullptr;
    };

    /// The theme outlives the host.
    SheetHost(const Theme& theme, QWidget* parent);
    ~SheetHost() override;

    /// Whether a sheet stands over this widget's window.
    [[nodiscard]] static bool isCovering(const QWidget& widget);

    /// Shows the contents of a sheet, which has the width that it wants and at most the height
    /// that there is. Takes ownership.
    void present(QWidget* contents, const Options& options);
    /// Lets the sheet go, which takes no input from now on, and deletes its contents, later.
    /// Nothing if it is not shown.
    void dismiss(QWidget* contents);

    [[nodiscard]] bool isPresenting() const { return !layers.empty(); }
    /// The uppermost sheet; none while nothing is shown.
    [[nodiscard]] QWidget* presented() const;

Q_SIGNALS:
    void presentingChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    class Layer;

    void keepFocus();
    void layerGone();

    const Theme& theme;
    std::vector<Layer*> layers; ///< those that are there to be used, the uppermost last
    int leaving = 0;
};

} // namespace vellumry
