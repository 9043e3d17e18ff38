#pragma once

#include "core/Scheduler.h"

#include <QWidget>

#include <functional>

class QKeyEvent;

namespace vellumry {

class KeyHandlingTextField;
class Theme;

/// The palette's search field: the symbol, the text, and what the keys mean.
class DarkSearchFieldView : public QWidget {
    Q_OBJECT

public:
    static constexpr int maxCharacters = 50;

    struct Callbacks {
        std::function<void(const QString&)> onTextChanged; ///< by the person; already cut
        std::function<void()> onEscape;
        std::function<void()> onArrowUp;
        std::function<void()> onArrowDown;
        std::function<void()> onArrowRight;
        std::function<void()> onReturn;
    };

    /// Takes the focus 0.1 s after creation. Theme and scheduler outlive the view.
    DarkSearchFieldView(const Theme& theme, Scheduler& scheduler, Callbacks callbacks,
                        QWidget* parent = nullptr);

    /// The text of the model; to be called at each of its changes. Sees to the focus 0.05 s later.
    void updateText(const QString& text);
    [[nodiscard]] QString text() const;

    [[nodiscard]] KeyHandlingTextField& textField() const { return *field; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void applyTheme();
    bool handleKeyDown(const QKeyEvent& event);
    void handleTextEdited(const QString& text);
    void takeFocusAfter(std::chrono::milliseconds delay);

    const Theme& theme;
    Scheduler& timing;
    Callbacks callbacks;
    KeyHandlingTextField* field;
};

} // namespace vellumry
