#pragma once

#include <QString>

class QAbstractButton;

namespace vellumry {

// Texts that are shown as they stand, a person's own above all. The toolkit takes an ampersand in
// some places for the mark of a key, and in others what looks like tags for markup.

/// Sets the text of a button which paints it itself. It gets no key from it.
void setPlainText(QAbstractButton& button, const QString& text);

/// A text as the item of a menu takes it, and back: as the item shows it.
[[nodiscard]] QString menuText(const QString& plain);
[[nodiscard]] QString plainMenuText(const QString& text);

/// A text as a tool tip takes it.
[[nodiscard]] QString toolTipText(const QString& plain);

} // namespace vellumry
