#pragma once

#include "views/common/Theme.h"

#include <QVariantAnimation>
#include <QWidget>

namespace vellumry {

class Button;
class SnippetEditorViewModel;

/// The bar above the editor: what is unsaved, Revert and Save.
class EditorToolbarView : public QWidget {
    Q_OBJECT

public:
    /// Both outlive the bar.
    EditorToolbarView(const Theme& theme, SnippetEditorViewModel& viewModel,
                      QWidget* parent = nullptr);

    [[nodiscard]] Button& saveButton() const { return *save; }
    [[nodiscard]] Button& revertButton() const { return *revert; }
    /// Whether it says that there are unsaved changes.
    [[nodiscard]] bool saysUnsaved() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void showState();

    const Theme& theme;
    SnippetEditorViewModel& viewModel;
    QWidget* unsaved;
    Button* revert;
    Button* save;
    QVariantAnimation* growing;
};

} // namespace vellumry
