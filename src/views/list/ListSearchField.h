#pragma once

#include "core/Scheduler.h"
#include "views/common/Theme.h"

#include <QWidget>

#include <functional>

class QKeyEvent;

namespace vellumry {

class ListKeyHandlingTextField;

/// The list's filter field and what its keys mean.
class ListSearchField : public QWidget {
    Q_OBJECT

public:
    struct Callbacks {
        std::function<void(const QString&)> onTextChanged; ///< by the person
        std::function<void()> onReturn;                    ///< also Down, a turn later
        std::function<void()> onTab;
        std::function<void()> onShiftTab;
        std::function<void()> onEscape;
        std::function<void(bool hasFocus)> onFocusChange;
    };

    /// The theme and the scheduler outlive the field.
    ListSearchField(const Theme& theme, Scheduler& scheduler, Callbacks callbacks,
                    QWidget* parent = nullptr);

    /// The text of the model; to be called at each of its changes.
    void updateText(const QString& text);
    /// Gives the field the focus, with its text selected.
    void focus();
    [[nodiscard]] ListKeyHandlingTextField& textField() const { return *field; }

private:
    bool handleKey(const QKeyEvent& event);

    Scheduler& timing;
    Callbacks callbacks;
    ListKeyHandlingTextField* field;
};

} // namespace vellumry
