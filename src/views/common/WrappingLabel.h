#pragma once

#include "views/common/Label.h"

namespace vellumry {

/// A text of several lines that also breaks within a word that is longer than a line, as paths are.
/// Other than a plain label it never asks for more width than there is.
class WrappingLabel : public Label {
    Q_OBJECT

public:
    using Label::Label;

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int wide) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace vellumry
