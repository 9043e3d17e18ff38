#pragma once

#include "views/common/Theme.h"

#include <QWidget>

namespace vellumry {

class CollectionChip;
class CollectionColors;
class PopupMenu;
class SnippetEditorViewModel;
class TextField;

/// The choice of a snippet's collection: a chip with a menu, or while a new collection is being
/// named the field for its name.
class EditorCollectionPicker : public QWidget {
    Q_OBJECT

public:
    /// All outlive the picker.
    EditorCollectionPicker(const Theme& theme, SnippetEditorViewModel& viewModel,
                           CollectionColors& colors, QWidget* parent = nullptr);

    [[nodiscard]] CollectionChip& chip() const { return *present; }
    [[nodiscard]] TextField& nameField() const { return *field; }
    /// The menu of the chip. The caller owns it.
    [[nodiscard]] PopupMenu* makeMenu();

private:
    void showCollection();
    void showMode();
    void openMenu();

    const Theme& theme;
    SnippetEditorViewModel& viewModel;
    CollectionColors& colors;
    CollectionChip* present;
    TextField* field;
};

} // namespace vellumry
