#include "views/editor/SnippetEditorView.h"

#include "notifications/NotificationCenter.h"
#include "views/common/OverlayScrollBar.h"
#include "views/editor/EditorBottomBar.h"
#include "views/editor/EditorContentSection.h"
#include "views/editor/EditorKeywordsSection.h"
#include "views/editor/EditorTitleSection.h"
#include "views/editor/EditorToolbarView.h"
#include "views/editor/EditorVariablesSection.h"
#include "views/editor/MacTextEditor.h"
#include "views/editor/TitleTextField.h"
#include "views/editor/ViewShortcut.h"

#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include <utility>

namespace vellumry {

namespace {

using namespace std::chrono_literals;

// The sections lie further out than their texts, by as much as a focused field does.
constexpr int outset = BareTextField::outset;
constexpr int sideMargin = 24 - outset;
constexpr int narrowSideMargin = 20 - outset;
constexpr int narrowBelow = 420;
constexpr int topMargin = 12;
constexpr int bottomMargin = 20;
constexpr int gapToContent = 12;
constexpr int sectionGap = 16;
constexpr int revealMargin = 24;
constexpr int wheelStep = 20;
constexpr auto titleFocusDelay = 150ms;

SnippetEditorViewModel::Callbacks callbacksOf(const SnippetEditorRequest& request)
{
    return {.onSave = request.onSave,
            .onDelete = request.onDelete,
            .onDuplicate = request.onDuplicate,
            .onDirtyEditChange = request.onDirtyChange,
            .onDiscardEdit = request.onDiscard};
}

} // namespace

MakeSnippetEditor SnippetEditorView::maker(const Dependencies& dependencies)
{
    return [dependencies](const SnippetEditorRequest& request, QWidget* parent) {
        return new SnippetEditorView(dependencies, request, parent);
    };
}

SnippetEditorView::SnippetEditorView(const Dependencies& dependencies,
                                     const SnippetEditorRequest& request, QWidget* parent)
    : QWidget(parent), services(dependencies), shouldFocusTitle(request.isNewSnippet),
      model(new SnippetEditorViewModel(services.model, request.snippet, request.isUnsaved,
                                       request.allSnippets, callbacksOf(request), this)),
      toolbarView(new EditorToolbarView(services.theme, *model, this)),
      scrollArea(new QScrollArea(this)), body(new QWidget),
      title(new EditorTitleSection(services.theme, *model, *request.colors,
                                   {[this] { model->escape(); }, [this] { focusListSoon(); }},
                                   body)),
      content(new EditorContentSection(
          services.theme, services.model.scheduler, *model, *request.sheets,
          {[this] { model->escape(); }, [this] { focusListSoon(); }}, body)),
      variables(new EditorVariablesSection(
          services.theme, *model, [this] { model->escape(); }, body)),
      keywords(new EditorKeywordsSection(
          services.theme, *model, [this] { model->escape(); }, body)),
      bottom(new EditorBottomBar(services.theme, *model, services.model.clock, this)),
      scrollBar(new OverlayScrollBar(*scrollArea, {}, services.model.scheduler))
{
    layOut();
    observe();
    applyTheme();
}

SnippetEditorView::~SnippetEditorView() = default;

void SnippetEditorView::layOut()
{
    auto* sections = new QVBoxLayout(body);
    sections->setSpacing(0);
    sections->addWidget(title);
    sections->addSpacing(gapToContent);
    sections->addWidget(content);
    variables->setContentsMargins(0, sectionGap, 0, 0);
    sections->addWidget(variables);
    sections->addSpacing(sectionGap);
    sections->addWidget(keywords);
    sections->addStretch();

    scrollArea->setFrameShape(QFrame::NoFrame);
    scrollArea->setWidgetResizable(true);
    scrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scrollArea->setFocusPolicy(Qt::NoFocus);
    scrollArea->verticalScrollBar()->setSingleStep(wheelStep);
    scrollArea->setWidget(body);
    scrollArea->viewport()->setAutoFillBackground(false);
    body->setAutoFillBackground(false);
    scrollArea->viewport()->installEventFilter(this);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(0);
    column->addWidget(toolbarView);
    column->addWidget(scrollArea, 1);
    column->addWidget(bottom);
}

void SnippetEditorView::observe()
{
    const NotificationCenter& notifications = services.model.notifications;
    using N = NotificationCenter;
    connect(&notifications, &N::focusSnippetTitle, this, &SnippetEditorView::focusTitle);
    connect(&notifications, &N::focusSnippetEditor, this, [this] { content->focusText(); });
    connect(content, &EditorContentSection::revealed, this, [this](const QRect& rect) {
        const QPoint middle = content->mapTo(body, rect.center());
        scrollArea->ensureVisible(middle.x(), middle.y(), 0, rect.height() / 2 + revealMargin);
    });
    new ViewShortcut(
        Qt::Key_S, Qt::ControlModifier, [this] { model->save(); }, this);
    connect(&services.theme, &Theme::changed, this, &SnippetEditorView::applyTheme);
}

void SnippetEditorView::applyTheme()
{
    const ColorTokens& token = services.theme.colors();
    scrollBar->setLook({.handle = token.scrollHandle, .handleHovered = token.scrollHandleHover});
    update();
}

void SnippetEditorView::focusTitle()
{
    title->titleField().setFocus(Qt::OtherFocusReason);
}

/// On the next turn, so that the end of editing comes first.
void SnippetEditorView::focusListSoon()
{
    services.model.scheduler.after(
        0ms, this, [this] { Q_EMIT services.model.notifications.focusSnippetList(); });
}

void SnippetEditorView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (!std::exchange(shouldFocusTitle, false))
        return;
    services.model.scheduler.after(titleFocusDelay, this, [this] {
        focusTitle();
        title->titleField().selectAll();
    });
}

bool SnippetEditorView::eventFilter(QObject*, QEvent* event)
{
    if (event->type() == QEvent::Resize)
        fitBody();
    return false;
}

void SnippetEditorView::fitBody()
{
    const QSize room = scrollArea->viewport()->size();
    const int side = room.width() < narrowBelow ? narrowSideMargin : sideMargin;
    body->layout()->setContentsMargins(side, topMargin, side, bottomMargin);
    content->setGreatestHeight(room.height() - 2 * topMargin);
}

void SnippetEditorView::paintEvent(QPaintEvent*)
{
    QPainter(this).fillRect(rect(), services.theme.colors().editor);
}

} // namespace vellumry
