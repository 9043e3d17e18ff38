#pragma once

#include "views/editor/BareTextField.h"

namespace vellumry {

/// The field in which search terms are typed. Return and a comma end a term; what stands behind
/// the comma is dropped.
class KeywordInputFieldCompat : public BareTextField {
    Q_OBJECT

public:
    /// `onSubmit` is called with the term, before the field empties.
    KeywordInputFieldCompat(const Theme& theme, std::function<void(const QString& term)> onSubmit,
                            std::function<void()> onEscape, QWidget* parent = nullptr);

private:
    void takeEdit(const QString& text);
    void submit();

    std::function<void(const QString& term)> onSubmit;
};

} // namespace vellumry
