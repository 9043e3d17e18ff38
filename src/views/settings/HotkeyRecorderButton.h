#pragma once

#include "hotkey/ModifierFlags.h"
#include "models/HotkeyConfig.h"
#include "views/common/Button.h"
#include "views/settings/HotkeyRecorderView.h"

#include <array>

namespace vellumry {

class KeyCapView;
class Label;

/// The button that shows the hot key, and during a recording the modifiers that are held. A click
/// is to start or end a recording; its owner does so.
class HotkeyRecorderButton final : public Button {
    Q_OBJECT

public:
    /// The theme outlives the button.
    HotkeyRecorderButton(const Theme& theme, HotkeyRecorderView::Callbacks callbacks,
                         QWidget* parent = nullptr);

    struct State {
        HotkeyConfig hotkey;
        QString trigger; ///< what the desktop has made of it, in its words; empty where it counts
        bool isRecording = false;
        hotkey::ModifierFlags recordingModifiers;

        friend bool operator==(const State&, const State&) = default;
    };
    void setState(const State& newState);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void focusInEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void showCaps();
    void setRecording(bool isRecording);

    const Theme& theme;
    State state;
    HotkeyRecorderView* recorder;
    std::array<KeyCapView*, 5> caps{}; ///< for four modifiers and a key; hidden where not needed
    Label* prompt;
    bool ringBefore = false; ///< whether the focus showed when the recording began
};

} // namespace vellumry
