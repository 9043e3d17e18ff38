#pragma once

#include "views/editor/BareTextField.h"

namespace vellumry {

/// The field in which one types what to look for in a text.
class SearchTextField : public BareTextField {
    Q_OBJECT

public:
    explicit SearchTextField(const Theme& theme, QWidget* parent = nullptr);
};

} // namespace vellumry
