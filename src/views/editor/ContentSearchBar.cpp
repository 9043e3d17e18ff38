#include "views/editor/ContentSearchBar.h"

#include "views/common/Button.h"
#include "views/common/Label.h"
#include "views/common/Motion.h"
#include "views/common/OutsetItem.h"
#include "views/common/Strokes.h"
#include "views/common/SymbolView.h"
#include "views/editor/MacTextEditor.h"
#include "views/editor/SearchTextField.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace vellumry {

namespace {

using namespace std::chrono_literals;

constexpr int barHeight = 40;
constexpr int gap = 8;
constexpr int rightMargin = 6;
constexpr int symbolSize = 14;
constexpr int closeSymbolSize = 15;
constexpr int ring = Button::ringRoom;
constexpr qreal focusWidth = 2;
constexpr auto slideTime = 150ms;
constexpr auto focusDelay = 100ms;

} // namespace

ContentSearchBar::ContentSearchBar(const Theme& colors, Scheduler& scheduler,
                                   MacTextEditor& searched, Look appearance, QWidget* parent)
    : QWidget(parent), theme(colors), timing(scheduler), text(searched), look(appearance),
      input(new SearchTextField(theme, this)),
      statusLabel(new Label(theme, TextStyle::label, &ColorTokens::textTertiary, {}, this)),
      previous(Button::withSymbol(theme, QStringLiteral("chevron.up"),
                                  QStringLiteral("Previous Match"), this)),
      next(Button::withSymbol(theme, QStringLiteral("chevron.down"), QStringLiteral("Next Match"),
                              this)),
      close(Button::withSymbol(theme, QStringLiteral("xmark.circle.fill"),
                               QStringLiteral("Close Search"), this)),
      sliding(new QVariantAnimation(this))
{
    layOut();
    sliding->setStartValue(0.0);
    sliding->setEndValue(1.0);
    sliding->setEasingCurve(QEasingCurve::InOutQuad);
    connect(sliding, &QVariantAnimation::valueChanged, this, &ContentSearchBar::applyHeight);
    connect(sliding, &QVariantAnimation::finished, this, [this] { setVisible(shown); });

    input->setKeys({.onSubmit = [this] { nextMatch(); }, .onEscape = [this] { closeSearch(); }});
    connect(input, &BareTextField::edited, this, [this](const QString& term) {
        text.setSearchTerm(term);
        updateMatchCount();
    });
    connect(input, &BareTextField::focusChanged, this, qOverload<>(&QWidget::update));
    connect(previous, &Button::clicked, this, &ContentSearchBar::previousMatch);
    connect(next, &Button::clicked, this, &ContentSearchBar::nextMatch);
    connect(close, &Button::clicked, this, &ContentSearchBar::closeSearch);
    connect(&text, &MacTextEditor::textEdited, this, &ContentSearchBar::updateMatchCount);
    connect(&theme, &Theme::changed, this, [this] {
        applyHeight();
        update();
    });
    hide();
}

void ContentSearchBar::layOut()
{
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(look.sideMargin, 0, rightMargin, 0);
    row->setSpacing(gap);
    row->addWidget(new SymbolView(theme, QStringLiteral("magnifyingglass"), symbolSize,
                                  &ColorTokens::textTertiary, this));
    row->addWidget(input, 1);
    row->addWidget(statusLabel);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(0);
    previous->setSymbol(previous->symbol(), symbolSize);
    next->setSymbol(next->symbol(), symbolSize);
    close->setSymbol(close->symbol(), closeSymbolSize);
    for (Button* button : {previous, next, close})
        buttons->addItem(new OutsetItem(button, {ring, ring, ring, ring}));
    row->addLayout(buttons);
}

int ContentSearchBar::fullHeight() const
{
    return theme.rowHeight(barHeight, TextStyle::body);
}

void ContentSearchBar::applyHeight()
{
    setFixedHeight(qRound(sliding->currentValue().toReal() * fullHeight()));
}

QString ContentSearchBar::searchText() const
{
    return input->text();
}

void ContentSearchBar::toggleSearch()
{
    if (shown) {
        closeSearch();
        return;
    }
    shown = true;
    slide(true);
    timing.after(focusDelay, this, [this] {
        if (!shown)
            return;
        input->setFocus(Qt::ShortcutFocusReason);
        input->selectAll();
    });
}

void ContentSearchBar::closeSearch()
{
    shown = false;
    slide(false);
    input->clear();
    text.setSearchTerm({});
    updateMatchCount();
    text.setFocus(Qt::OtherFocusReason);
}

void ContentSearchBar::slide(bool in)
{
    show();
    sliding->setDirection(in ? QAbstractAnimation::Forward : QAbstractAnimation::Backward);
    sliding->setDuration(int(animationTime(*this, slideTime).count()));
    sliding->start();
}

void ContentSearchBar::updateMatchCount()
{
    total = text.matchCount();
    if (currentIndex >= total)
        currentIndex = 0;
    showMatch();
}

void ContentSearchBar::nextMatch()
{
    if (total == 0)
        return;
    currentIndex = (currentIndex + 1) % total;
    showMatch();
}

void ContentSearchBar::previousMatch()
{
    if (total == 0)
        return;
    currentIndex = (currentIndex - 1 + total) % total;
    showMatch();
}

void ContentSearchBar::showMatch()
{
    text.setCurrentMatchIndex(currentIndex);
    text.updateSearchHighlighting();
    statusLabel->setText(status());
    statusLabel->setAccessibleName(
        total > 0 ? QStringLiteral("%1 of %2").arg(currentIndex + 1).arg(total) : status());
}

QString ContentSearchBar::status() const
{
    if (searchText().isEmpty())
        return {};
    if (total == 0)
        return QStringLiteral("No matches");
    return QStringLiteral("%1/%2").arg(currentIndex + 1).arg(total);
}

void ContentSearchBar::paintEvent(QPaintEvent*)
{
    constexpr qreal half = focusWidth / 2;
    QPainter painter(this);
    const ColorTokens& token = theme.colors();
    // The lower corners are not round. At rest the line about the box is to be seen.
    painter.setClipRect(rect());
    const int edge = input->hasFocus() ? 0 : look.reach;
    fillRounded(painter, QRectF(rect()).adjusted(edge, edge, -edge, look.radius),
                look.radius - edge, token.group);
    painter.fillRect(QRectF(0, height() - lineWidth(painter), width(), lineWidth(painter)),
                     token.stroke);
    if (!input->hasFocus())
        return;
    painter.setPen(QPen(token.focusRing, focusWidth));
    painter.setBrush(Qt::NoBrush);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF line = QRectF(rect()).adjusted(half, half, -half, -half);
    const qreal corner = std::max(look.radius - half, half);
    QPainterPath path(line.bottomLeft());
    path.lineTo(line.left(), line.top() + corner);
    path.quadTo(line.topLeft(), {line.left() + corner, line.top()});
    path.lineTo(line.right() - corner, line.top());
    path.quadTo(line.topRight(), {line.right(), line.top() + corner});
    path.lineTo(line.bottomRight());
    path.closeSubpath();
    painter.drawPath(path);
}

} // namespace vellumry
