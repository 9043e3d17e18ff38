#pragma once

#include "core/Date.h"
#include "views/common/Theme.h"

#include <QWidget>

namespace vellumry {

class SnippetEditorViewModel;

/// The bar below the editor: when the snippet was made, how often it was copied and when last.
class EditorBottomBar : public QWidget {
    Q_OBJECT

public:
    /// All outlive the bar.
    EditorBottomBar(const Theme& theme, SnippetEditorViewModel& viewModel, const Clock& clock,
                    QWidget* parent = nullptr);

    [[nodiscard]] QString createdText() const;
    [[nodiscard]] QString copiedText() const;
    /// As of now.
    [[nodiscard]] QString lastUsedText() const;

    [[nodiscard]] int heightForWidth(int wide) const override;
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    [[nodiscard]] bool hasTwoLines(int wide) const;
    void refresh();

    const Theme& theme;
    SnippetEditorViewModel& viewModel;
    const Clock& clock;
};

} // namespace vellumry
