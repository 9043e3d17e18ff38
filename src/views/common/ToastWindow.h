#pragma once

#include <QString>
#include <QWidget>

#include <chrono>
#include <functional>

namespace vellumry {

class PanelActivation;

/// A short message in the middle of a place on the screen. Takes neither the keyboard nor the
/// mouse. How long it stands, its owner says. Main thread only.
class ToastWindow : public QWidget {
    Q_OBJECT

public:
    static constexpr int toastWidth = 300;
    static constexpr int toastHeight = 90;
    static constexpr int maxLabelWidth = 268;
    static constexpr std::chrono::milliseconds holdTime{800};
    static constexpr std::chrono::milliseconds fadeTime{500};

    /// `activation` outlives the window.
    explicit ToastWindow(PanelActivation& activation, QWidget* parent = nullptr);

    /// Shows the text in the middle of `place` (in screen coordinates), above all windows.
    void showText(const QString& text, const QRect& place);

    /// Fades the window out over `duration`, hides it and then calls `whenDone`. Where windows
    /// have no opacity it stands until the end of that time; where the person wants no
    /// animations, it goes at the next turn of the event loop.
    void fade(std::chrono::milliseconds duration, std::function<void()> whenDone);

    [[nodiscard]] const QString& text() const { return shownText; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void updateMask();

    PanelActivation& desktop;
    QString shownText;
};

} // namespace vellumry
