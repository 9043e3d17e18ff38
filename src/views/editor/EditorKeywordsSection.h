#pragma once

#include "views/common/Theme.h"

#include <QWidget>

#include <functional>
#include <vector>

namespace vellumry {

class EditorTextBox;
class KeywordInputFieldCompat;
class KeywordTag;
class SectionHeader;
class SnippetEditorViewModel;
class WrappingHStack;

/// The search terms of a snippet.
class EditorKeywordsSection : public QWidget {
    Q_OBJECT

public:
    /// Both outlive the section.
    EditorKeywordsSection(const Theme& theme, SnippetEditorViewModel& viewModel,
                          const std::function<void()>& onEscape, QWidget* parent = nullptr);

    [[nodiscard]] SectionHeader& sectionHeader() const { return *header; }
    [[nodiscard]] KeywordInputFieldCompat& inputField() const { return *input; }
    [[nodiscard]] const std::vector<KeywordTag*>& keywordTags() const { return tags; }

private:
    void showKeywords();

    const Theme& theme;
    SnippetEditorViewModel& viewModel;
    SectionHeader* header;
    EditorTextBox* box;
    WrappingHStack* row;
    KeywordInputFieldCompat* input;
    std::vector<KeywordTag*> tags;
};

} // namespace vellumry
