#pragma once

#include "views/common/TextField.h"

#include <functional>

namespace vellumry {

/// A text field that offers the keys of commands to a handler first, and tells of its focus.
class ListKeyHandlingTextField : public TextField {
    Q_OBJECT

public:
    /// Answers whether it has handled the key, which then goes no further.
    using KeyHandler = std::function<bool(const QKeyEvent&)>;

    /// The theme outlives the field.
    ListKeyHandlingTextField(const Theme& theme, const QString& placeholder, KeyHandler handler,
                             QWidget* parent);

Q_SIGNALS:
    void focusChanged(bool hasFocus);

protected:
    bool event(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    KeyHandler keyHandler;
};

} // namespace vellumry
