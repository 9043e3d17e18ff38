#pragma once

#include "views/common/TextField.h"

#include <functional>

namespace vellumry {

/// The sidebar's field for the name of a new collection.
class NewCollectionTextField : public TextField {
    Q_OBJECT

public:
    /// Escape and the clear button cancel. The theme outlives the field.
    NewCollectionTextField(const Theme& theme, std::function<void()> onReturn,
                           std::function<void()> onCancel, QWidget* parent);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    std::function<void()> onReturn;
    std::function<void()> onCancel;
};

} // namespace vellumry
