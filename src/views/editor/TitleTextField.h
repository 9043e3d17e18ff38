#pragma once

#include "views/editor/BareTextField.h"

namespace vellumry {

/// The field of a snippet's title.
class TitleTextField : public BareTextField {
    Q_OBJECT

public:
    /// Of user-perceived characters.
    static constexpr int longest = 60;

    explicit TitleTextField(const Theme& theme, QWidget* parent = nullptr);
};

} // namespace vellumry
