#include "views/window/SnippetEditorPanel.h"

#include <QShowEvent>
#include <QVBoxLayout>

#include <utility>

namespace vellumry {

SnippetEditorPanel::SnippetEditorPanel(const MakeSnippetEditor& makeEditor,
                                       const SnippetEditorRequest& request,
                                       std::function<void()> whenAppeared, QWidget* parent)
    : QWidget(parent), id(request.snippet.id()), view(makeEditor(request, this)),
      onEditorAppeared(std::move(whenAppeared))
{
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(view);
}

void SnippetEditorPanel::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (const auto appeared = std::exchange(onEditorAppeared, {}))
        appeared();
}

} // namespace vellumry
