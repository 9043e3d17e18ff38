#pragma once

#include "views/editor/BareTextField.h"

namespace vellumry {

/// The field of a snippet's subtitle.
class SubtitleTextField : public BareTextField {
    Q_OBJECT

public:
    /// Of user-perceived characters.
    static constexpr int longest = 200;

    explicit SubtitleTextField(const Theme& theme, QWidget* parent = nullptr);
};

} // namespace vellumry
