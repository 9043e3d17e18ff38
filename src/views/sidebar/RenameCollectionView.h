#pragma once

#include "views/common/Theme.h"

#include <QWidget>

#include <functional>

namespace vellumry {

class Button;
class TextField;

/// The sheet that asks for a collection's new name.
class RenameCollectionView : public QWidget {
    Q_OBJECT

public:
    /// `newName` is what stands in the field at first. The theme outlives the view.
    RenameCollectionView(const Theme& theme, const QString& currentName, const QString& newName,
                         std::function<void(const QString& newName)> onConfirm,
                         std::function<void()> onCancel, QWidget* parent = nullptr);

    /// Whether the name, without blanks around it, is one and another one. That it is free nobody
    /// asks.
    [[nodiscard]] bool isValidName() const;

    [[nodiscard]] TextField* field() const { return nameField; }
    [[nodiscard]] Button* renameButton() const { return rename; }
    [[nodiscard]] Button* cancelButton() const { return cancel; }

private:
    QString currentName;
    TextField* nameField;
    Button* cancel;
    Button* rename;
};

} // namespace vellumry
