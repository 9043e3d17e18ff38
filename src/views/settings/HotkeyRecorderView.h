#pragma once

#include "hotkey/ModifierFlags.h"

#include <QString>
#include <QWidget>

#include <functional>
#include <optional>

class QKeyEvent;

namespace vellumry {

/// Told what is pressed during a recording. Main thread only.
class HotkeyRecorderDelegate {
public:
    virtual ~HotkeyRecorderDelegate() = default;

    /// A combination that may become a hot key, by its name as HotkeyConfig has it.
    virtual void hotkeyRecorded(const QString& key, hotkey::ModifierFlags modifiers) = 0;
    virtual void recordingCancelled() = 0;
    /// The modifiers that are held now.
    virtual void modifiersChanged(hotkey::ModifierFlags modifiers) = 0;
};

/// Takes the keys during a recording, all of them, also those of commands. Shows nothing. A click
/// that takes the focus away cancels the recording.
class HotkeyRecorderNSView final : public QWidget {
    Q_OBJECT

public:
    explicit HotkeyRecorderNSView(QWidget* parent = nullptr);

    /// Not owned; none at first.
    void setDelegate(HotkeyRecorderDelegate* newDelegate) { delegate = newDelegate; }
    [[nodiscard]] bool isRecording() const { return recording; }
    void setRecording(bool isRecording) { recording = isRecording; }

    /// The name of the key: of what it types, and where that has no name or comes of Shift or of
    /// another script, of what the key in its place types on a US keyboard. Nothing for a key that
    /// cannot be recorded, such as the grave accent and those of the keypad.
    [[nodiscard]] static std::optional<QString> keyStringFromEvent(const QKeyEvent& event);

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void flagsChanged(const QKeyEvent& event, hotkey::ModifierFlags flag);
    void keyDown(const QKeyEvent& event);

    HotkeyRecorderDelegate* delegate = nullptr;
    bool recording = false;
};

/// A view that takes keys, for a form: has the focus while it records.
class HotkeyRecorderView final : public QWidget, private HotkeyRecorderDelegate {
    Q_OBJECT

public:
    struct Callbacks {
        std::function<void(const QString& key, hotkey::ModifierFlags modifiers)> onHotkeyRecorded;
        std::function<void()> onRecordingCancelled;
        std::function<void(hotkey::ModifierFlags modifiers)> onModifiersChanged; ///< may be empty
    };

    explicit HotkeyRecorderView(Callbacks callbacks, QWidget* parent = nullptr);
    ~HotkeyRecorderView() override;

    [[nodiscard]] bool isRecording() const { return keyView->isRecording(); }
    /// Gives the focus to the view that takes the keys, or takes it away from there.
    void setRecording(bool isRecording);
    /// What a screen reader says of what has the focus.
    void setSpokenText(const QString& text) { keyView->setAccessibleName(text); }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void hotkeyRecorded(const QString& key, hotkey::ModifierFlags modifiers) override;
    void recordingCancelled() override;
    void modifiersChanged(hotkey::ModifierFlags modifiers) override;

    Callbacks call;
    HotkeyRecorderNSView* keyView;
};

} // namespace vellumry
