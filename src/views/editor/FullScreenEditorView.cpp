#include "views/editor/FullScreenEditorView.h"

#include "core/Text.h"
#include "views/common/Button.h"
#include "views/common/CountPill.h"
#include "views/common/Icon.h"
#include "views/common/Strokes.h"
#include "views/common/TextPainting.h"
#include "views/editor/ContentSearchBar.h"
#include "views/editor/MacTextEditor.h"
#include "views/editor/ViewShortcut.h"

#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace vellumry {

namespace {

using namespace std::chrono_literals;

constexpr QSize sizeWithoutWindow{900, 600};
constexpr QSize leastSize{700, 500};
constexpr int widthPercent = 80;
constexpr int heightPercent = 85;
constexpr int designedHeaderHeight = 52;
constexpr int sideMargin = 20;
constexpr int rightMargin = 12;
constexpr int gap = 10;
constexpr int symbolSize = 18;
constexpr int bottomMargin = 6; // keeps the scroll handle off the sheet's round corner
constexpr int radius = 12;
constexpr auto focusDelay = 100ms;

} // namespace

FullScreenEditorView::FullScreenEditorView(const Theme& look, Scheduler& scheduler, Request subject,
                                           QWidget* parent)
    : QWidget(parent), theme(look), timing(scheduler), request(std::move(subject)),
      done(new Button(theme, Button::Kind::primary, QStringLiteral("Done"), this)),
      editor(new MacTextEditor(theme, scheduler, sideMargin, this)),
      searchBar(new ContentSearchBar(theme, scheduler, *editor, {sideMargin, 0}, this)),
      characters(characterCount(request.content))
{
    setAccessibleName(request.title);
    done->setSymbol(QStringLiteral("arrow.down.right.and.arrow.up.left"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, bottomMargin);
    column->setSpacing(0);
    auto* header = new QHBoxLayout;
    header->setContentsMargins(0, 0, rightMargin - Button::ringRoom, 0);
    header->addStretch();
    header->addWidget(done);
    auto* headerBox = new QWidget(this);
    headerBox->setLayout(header);
    headerBox->setFixedHeight(headerHeight());
    column->addWidget(headerBox);
    column->addWidget(searchBar);
    column->addWidget(editor, 1);
    QWidget::setTabOrder(editor, done);

    editor->setText(request.content);
    editor->setCallbacks({.onFocusChange = {},
                          .onEscape = [this] { escape(); },
                          .onShiftTab = [this] { focusNextPrevChild(false); }});
    new ViewShortcut(
        Qt::Key_F, Qt::ControlModifier, [this] { searchBar->toggleSearch(); }, this);
    connect(done, &Button::clicked, this, [this] { request.onDismiss(); });
    connect(editor, &MacTextEditor::textEdited, this, [this](const TextEdit& edit) {
        const TextEdit::Lines lines = edit.lines();
        characters +=
            characterCount(QStringView(edit.after).first(lines.endAfter).sliced(lines.begin)) -
            characterCount(QStringView(edit.before).first(lines.endBefore).sliced(lines.begin));
        update();
    });
    connect(editor, &MacTextEditor::typed, this, [this] { request.onTextChange(editor->text()); });
    connect(&theme, &Theme::changed, this, [this, headerBox] {
        headerBox->setFixedHeight(headerHeight());
        update();
    });
}

int FullScreenEditorView::headerHeight() const
{
    return theme.rowHeight(designedHeaderHeight, TextStyle::heading);
}

QSize FullScreenEditorView::windowSize(std::optional<QSize> mainWindow)
{
    if (!mainWindow)
        return sizeWithoutWindow;
    return {std::max(mainWindow->width() * widthPercent / 100, leastSize.width()),
            std::max(mainWindow->height() * heightPercent / 100, leastSize.height())};
}

QSize FullScreenEditorView::sizeHint() const
{
    const bool hasWindow = request.window && request.window->isVisible();
    return windowSize(hasWindow ? std::optional(request.window->size()) : std::nullopt);
}

void FullScreenEditorView::escape()
{
    if (searchBar->isSearchVisible())
        searchBar->closeSearch();
    else
        request.onDismiss();
}

QString FullScreenEditorView::count() const
{
    return QString::number(characters) + QStringLiteral(" characters");
}

void FullScreenEditorView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (!std::exchange(hasAppeared, true))
        timing.after(focusDelay, this, [this] { editor->setFocus(Qt::OtherFocusReason); });
}

void FullScreenEditorView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const ColorTokens& token = theme.colors();
    const int high = headerHeight();
    const qreal line = lineWidth(painter);
    // The ground of the text, whose lower corners are the sheet's.
    painter.setClipRect(0, high, width(), height() - high);
    fillRounded(painter, rect(), radius, token.field);
    painter.setClipping(false);
    painter.fillRect(QRectF(0, high - line, width(), line), token.stroke);

    qreal x = sideMargin;
    Icon(QStringLiteral("doc.text.fill"))
        .paint(painter, {x, (high - symbolSize) / 2.0}, symbolSize, token.accent);
    x += symbolSize + gap;
    const int pill = CountPill::width(theme, count());
    const QFont font = theme.font(TextStyle::heading);
    const qreal room = done->x() - gap - pill - gap - x;
    const qreal wide =
        std::min(room, QFontMetricsF(font).horizontalAdvance(singleLine(request.title)) + 1);
    paintLine(painter, QRectF(x, 0, wide, high), request.title, font, token.textPrimary);
    CountPill::paint(painter, theme, {x + wide + gap, high / 2.0}, count());
}

} // namespace vellumry
