#pragma once

#include "views/common/Theme.h"

#include <QVariantAnimation>
#include <QWidget>

namespace vellumry {

class Button;
class CollectionColors;
class EditorCollectionPicker;
class Label;
class PopupMenu;
class SnippetEditorViewModel;
class SubtitleTextField;
class TitleTextField;

/// The head of the editor: collection, Copy and further commands, title and subtitle.
class EditorTitleSection : public QWidget {
    Q_OBJECT

public:
    /// What Escape and Shift-Tab in a field mean to the editor.
    struct Actions {
        std::function<void()> onEscape;
        std::function<void()> onShiftTab; ///< out of the title, which has given up the focus
    };

    /// All outlive the section.
    EditorTitleSection(const Theme& theme, SnippetEditorViewModel& viewModel,
                       CollectionColors& colors, const Actions& actions, QWidget* parent = nullptr);

    [[nodiscard]] EditorCollectionPicker& picker() const { return *collection; }
    [[nodiscard]] TitleTextField& titleField() const { return *title; }
    [[nodiscard]] SubtitleTextField& subtitleField() const { return *subtitle; }
    [[nodiscard]] Button& copyButton() const { return *copy; }
    [[nodiscard]] Button& moreButton() const { return *more; }
    /// How many characters the subtitle may still take; empty while there are plenty.
    [[nodiscard]] QString remaining() const;
    /// The menu of "More Actions". The caller owns it.
    [[nodiscard]] PopupMenu* makeMenu();

private:
    void layOut();
    void observe();
    void handleKeys(const Actions& actions);
    void showCopied();
    void showRemaining();

    const Theme& theme;
    SnippetEditorViewModel& viewModel;
    EditorCollectionPicker* collection;
    Button* copy;
    Button* more;
    TitleTextField* title;
    SubtitleTextField* subtitle;
    Label* remainingLabel;
    QVariantAnimation* popping;
};

} // namespace vellumry
