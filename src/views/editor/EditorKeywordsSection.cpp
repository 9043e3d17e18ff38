#include "views/editor/EditorKeywordsSection.h"

#include "library/SnippetEditorViewModel.h"
#include "views/common/Label.h"
#include "views/editor/EditorTextBox.h"
#include "views/editor/KeywordInputFieldCompat.h"
#include "views/editor/KeywordTag.h"
#include "views/editor/SectionHeader.h"
#include "views/editor/WrappingHStack.h"

#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace vellumry {

namespace {

constexpr int outset = BareTextField::outset;
constexpr int padding = 9; // with the border
constexpr int tagGap = 6;
constexpr int helpGap = 6;

} // namespace

EditorKeywordsSection::EditorKeywordsSection(const Theme& look, SnippetEditorViewModel& model,
                                             const std::function<void()>& onEscape, QWidget* parent)
    : QWidget(parent), theme(look), viewModel(model),
      header(
          new SectionHeader(theme, QStringLiteral("tag"), QStringLiteral("Related terms"), this)),
      box(new EditorTextBox(theme, {&ColorTokens::field, &ColorTokens::stroke}, this)),
      row(new WrappingHStack(padding, tagGap, box)),
      input(new KeywordInputFieldCompat(
          theme, [this](const QString& term) { viewModel.addKeyword(term); }, onEscape, box))
{
    row->insertWidget(0, input);
    connect(input, &BareTextField::focusChanged, box, &EditorTextBox::setFocused);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(outset, 0, outset, 0);
    column->setSpacing(0);
    column->addItem(header->makeLayoutItem());
    column->addWidget(box);
    column->addSpacing(helpGap);
    column->addWidget(new Label(theme, TextStyle::caption, &ColorTokens::textTertiary,
                                QStringLiteral("Press Enter or comma to add. Up to 10 terms."),
                                this));
    connect(&viewModel, &SnippetEditorViewModel::keywordsChanged, this,
            &EditorKeywordsSection::showKeywords);
    showKeywords();
}

void EditorKeywordsSection::showKeywords()
{
    const QStringList& keywords = viewModel.keywords();
    std::vector<KeywordTag*> known = std::exchange(tags, {});
    QWidget* before = header;
    for (qsizetype i = 0; i < keywords.size(); ++i) {
        const auto same = std::find_if(known.begin(), known.end(), [&](const KeywordTag* tag) {
            return tag->text() == keywords[i];
        });
        KeywordTag* tag;
        if (same != known.end()) {
            tag = *same;
            known.erase(same);
            row->removeWidget(tag);
        } else {
            tag = new KeywordTag(theme, keywords[i], box);
            connect(tag, &KeywordTag::removeRequested, this,
                    [this, term = keywords[i]] { viewModel.removeKeyword(term); });
            if (isVisible())
                tag->appear();
        }
        row->insertWidget(int(i), tag);
        tag->show();
        QWidget::setTabOrder(before, tag);
        before = tag;
        tags.push_back(tag);
    }
    QWidget::setTabOrder(before, input);
    for (KeywordTag* tag : known) {
        if (tag->hasFocus())
            input->setFocus(Qt::OtherFocusReason);
        row->removeWidget(tag);
        tag->hide();
        tag->deleteLater();
    }
    header->setCount(QString::number(keywords.size()));
    input->setPlaceholderText(
        keywords.isEmpty() ? QStringLiteral("Optional words you might use to find this snippet.")
                           : QStringLiteral("Type to add more..."));
    box->updateGeometry();
}

} // namespace vellumry
