#include "views/editor/KeywordInputFieldCompat.h"

#include "core/Text.h"
#include "library/SnippetEditorViewModel.h"

#include <algorithm>
#include <utility>

namespace vellumry {

namespace {

constexpr int fieldHeight = 24;
constexpr int inset = 4;

} // namespace

KeywordInputFieldCompat::KeywordInputFieldCompat(const Theme& scheme,
                                                 std::function<void(const QString&)> submitted,
                                                 std::function<void()> onEscape, QWidget* parent)
    : BareTextField(scheme, {.style = TextStyle::body, .height = fieldHeight}, {}, 0, parent),
      onSubmit(std::move(submitted))
{
    setAccessibleName(QStringLiteral("Related terms"));
    setTextMargins(textMargins() + QMargins(inset, 0, inset, 0));
    setKeys({.onSubmit = [this] { submit(); }, .onEscape = std::move(onEscape)});
    connect(this, &BareTextField::edited, this, &KeywordInputFieldCompat::takeEdit);
}

void KeywordInputFieldCompat::takeEdit(const QString& edit)
{
    const qsizetype comma = edit.indexOf(u',');
    if (comma >= 0) {
        amendEdit(edit.first(comma), int(comma));
        submit();
        return;
    }
    const QString kept = prefixOfCharacters(edit, SnippetEditorViewModel::longestKeyword);
    if (kept != edit)
        amendEdit(kept, std::min(cursorPosition(), int(kept.size())));
}

void KeywordInputFieldCompat::submit()
{
    onSubmit(text());
    clear();
}

} // namespace vellumry
