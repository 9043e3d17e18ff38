#pragma once

#include "views/common/Theme.h"

#include <QWidget>

#include <functional>
#include <vector>

class QVBoxLayout;

namespace vellumry {

class Button;
class EditorTextBox;
class EditorVariableRow;
class SectionHeader;
class SnippetEditorViewModel;
class TextField;

/// The values of the placeholders in a snippet's text. Hidden while there are none.
class EditorVariablesSection : public QWidget {
    Q_OBJECT

public:
    /// Both outlive the section.
    EditorVariablesSection(const Theme& theme, SnippetEditorViewModel& viewModel,
                           std::function<void()> onEscape, QWidget* parent = nullptr);

    [[nodiscard]] SectionHeader& sectionHeader() const { return *header; }
    [[nodiscard]] Button& clearButton() const { return *clear; }
    /// The names, in the order of their rows.
    [[nodiscard]] QStringList names() const;
    /// None for a name that has no row.
    [[nodiscard]] TextField* field(const QString& name) const;

private:
    void showNames();
    void showValues();

    const Theme& theme;
    SnippetEditorViewModel& viewModel;
    std::function<void()> onEscape;
    SectionHeader* header;
    Button* clear;
    EditorTextBox* box;
    QVBoxLayout* column;
    std::vector<EditorVariableRow*> rows;
};

} // namespace vellumry
