#include "views/list/SnippetCardListView.h"

#include "core/Scheduler.h"
#include "library/SnippetListViewModel.h"
#include "views/common/CollectionColors.h"
#include "views/common/EdgeScroll.h"
#include "views/common/LiftedPicture.h"
#include "views/common/Motion.h"
#include "views/common/OverlayScrollBar.h"
#include "views/list/SnippetListModel.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace vellumry {

namespace {

using namespace std::chrono_literals;

constexpr int sideMargin = 12;
constexpr int endMargin = 6;
constexpr int gap = 6;
constexpr int pixelsOfWheelStep = 28; // a notch is three of them: one card
constexpr auto hoverTime = 90ms;
constexpr auto copiedTime = 150ms;
constexpr auto slideTime = 200ms;

/// Whether the pointer has moved too far for a click.
bool isFar(const QPoint& position, const QPoint& pressed)
{
    return (position - pressed).manhattanLength() >= QApplication::startDragDistance();
}

} // namespace

SnippetCardListView::SnippetCardListView(const Dependencies& dependencies, QWidget* parent)
    : QListView(parent), services(dependencies),
      cards(services.theme, services.colors, services.clock),
      rows(new SnippetListModel(
          services.viewModel,
          [this](const Snippet& snippet) {
              return cards.description(snippet, services.viewModel.isUnsaved(snippet.id()));
          },
          this)),
      scrollBar(new OverlayScrollBar(*this, {}, services.scheduler)),
      edgeScroll(new EdgeScroll(*this, [this] { dragTo(lastDragPosition); })),
      hoverFade(new QVariantAnimation(this)), copiedFade(new QVariantAnimation(this)),
      sliding(new QVariantAnimation(this))
{
    setAccessibleName(QStringLiteral("Snippets"));
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::TabFocus);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setEditTriggers(NoEditTriggers);
    setSelectionMode(SingleSelection);
    setAutoScroll(false);
    setTabKeyNavigation(false);
    viewport()->setMouseTracking(true);
    for (QVariantAnimation* animation : {hoverFade, copiedFade, sliding}) {
        animation->setStartValue(0.0);
        animation->setEndValue(1.0);
        connect(animation, &QVariantAnimation::valueChanged, this,
                [this] { viewport()->update(); });
    }
    hoverFade->setEasingCurve(QEasingCurve::OutQuad);
    copiedFade->setEasingCurve(QEasingCurve::InOutQuad);
    sliding->setEasingCurve(QEasingCurve::InOutQuad);
    connect(hoverFade, &QVariantAnimation::finished, this, [this] { leftHover.reset(); });
    connect(copiedFade, &QVariantAnimation::finished, this, [this] {
        if (copiedFade->direction() == QAbstractAnimation::Backward)
            copied.reset();
    });
    connect(sliding, &QVariantAnimation::finished, this, [this] { slidFrom.clear(); });

    measuredScale = services.theme.textScale();
    measure();
    setModel(rows);
    // Behind the rows' own connection, and at once: what comes next asks for places.
    connect(&services.viewModel, &SnippetListViewModel::filteredSnippetsChanged, this,
            &SnippetCardListView::measureAnew);
    connect(&services.viewModel, &SnippetListViewModel::selectedSnippetIDChanged, this, [this] {
        syncCurrentIndex();
        revealSelection();
        viewport()->update();
    });
    connect(&services.colors, &CollectionColors::changed, viewport(),
            qOverload<>(&QWidget::update));
    connect(&services.theme, &Theme::changed, this, &SnippetCardListView::applyTheme);
    applyTheme();
    syncCurrentIndex();
}

SnippetCardListView::~SnippetCardListView() = default;

void SnippetCardListView::applyTheme()
{
    const ColorTokens& token = services.theme.colors();
    QPalette colors = palette();
    colors.setColor(QPalette::Base, token.list);
    setPalette(colors);
    scrollBar->setLook({.handle = token.scrollHandle, .handleHovered = token.scrollHandleHover});
    if (measuredScale != services.theme.textScale()) {
        measuredScale = services.theme.textScale();
        measureAnew();
    }
    viewport()->update();
}

// Places

void SnippetCardListView::measure()
{
    const QList<Snippet>& snippets = services.viewModel.filteredSnippets();
    constexpr qsizetype ahead = 16; // records lie scattered in memory, and the pass waits for it
    const int withSubtitle = cards.height(true) + gap;
    const int withoutSubtitle = cards.height(false) + gap;
    tops.resize(size_t(snippets.size()) + 1);
    int top = 0;
    for (qsizetype i = 0; i < snippets.size(); ++i) {
        if (i + ahead < snippets.size())
            __builtin_prefetch(&snippets[i + ahead].fields().subtitle);
        tops[size_t(i)] = top;
        top += snippets[i].subtitle().isEmpty() ? withoutSubtitle : withSubtitle;
    }
    tops.back() = top;
    isMeasured = true;
}

void SnippetCardListView::measureAnew()
{
    isMeasured = false;
    SnippetCardListView::doItemsLayout(); // by its name: this is also called by the constructor
}

int SnippetCardListView::contentHeight() const
{
    return 2 * endMargin + std::max(0, tops.back() - gap);
}

QRect SnippetCardListView::rectOfRow(int row) const
{
    const int top = tops[size_t(row)];
    return {sideMargin, endMargin + top - verticalScrollBar()->value(),
            viewport()->width() - 2 * sideMargin, tops[size_t(row) + 1] - top - gap};
}

int SnippetCardListView::rowAt(int contentY) const
{
    const int y = contentY - endMargin;
    if (y < 0 || y >= tops.back())
        return -1;
    return int(std::upper_bound(tops.begin(), tops.end(), y) - tops.begin()) - 1;
}

void SnippetCardListView::doItemsLayout()
{
    if (!isMeasured)
        measure();
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): the places are ours, not the list's
    QAbstractItemView::doItemsLayout();
    syncCurrentIndex();
    viewport()->update();
}

void SnippetCardListView::updateGeometries()
{
    auto* bar = verticalScrollBar();
    bar->setSingleStep(pixelsOfWheelStep);
    bar->setPageStep(viewport()->height());
    bar->setRange(0, std::max(0, contentHeight() - viewport()->height()));
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): the places are ours, not the list's
    QAbstractItemView::updateGeometries();
}

QRect SnippetCardListView::visualRect(const QModelIndex& index) const
{
    if (!index.isValid() || size_t(index.row()) + 1 >= tops.size())
        return {};
    return rectOfRow(index.row());
}

QModelIndex SnippetCardListView::indexAt(const QPoint& position) const
{
    const int row = rowAt(position.y() + verticalScrollBar()->value());
    return row >= 0 && rectOfRow(row).contains(position) ? rows->index(row) : QModelIndex();
}

std::optional<QString> SnippetCardListView::snippetAt(const QPoint& position) const
{
    if (!viewport()->rect().contains(position))
        return std::nullopt;
    const int row = rowAt(position.y() + verticalScrollBar()->value());
    return row < 0 ? std::nullopt : std::optional(rows->snippet(row).id());
}

QRect SnippetCardListView::cardRect(const QString& snippetID) const
{
    const qsizetype row = services.viewModel.shownRow(snippetID);
    return row < 0 ? QRect() : visualRect(rows->index(int(row)));
}

void SnippetCardListView::scrollTo(const QModelIndex& index, ScrollHint)
{
    const QRect card = visualRect(index);
    if (card.isEmpty())
        return;
    auto* bar = verticalScrollBar();
    if (card.top() < endMargin)
        bar->setValue(bar->value() + card.top() - endMargin);
    else if (card.bottom() + endMargin >= viewport()->height())
        bar->setValue(bar->value() + card.bottom() + 1 + endMargin - viewport()->height());
}

void SnippetCardListView::revealSelection()
{
    const auto& id = services.viewModel.selectedSnippetID();
    const qsizetype row = id ? services.viewModel.shownRow(*id) : -1;
    if (row >= 0)
        scrollTo(rows->index(int(row)));
}

void SnippetCardListView::syncCurrentIndex()
{
    const auto& id = services.viewModel.selectedSnippetID();
    const qsizetype row = id ? services.viewModel.shownRow(*id) : -1;
    const QModelIndex index = row < 0 ? QModelIndex() : rows->index(int(row));
    if (currentIndex() != index || selectionModel()->isSelected(index) != index.isValid())
        selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
}

// Looks

void SnippetCardListView::setLit(bool lit)
{
    isLit = lit;
    viewport()->update();
}

void SnippetCardListView::runFade(QVariantAnimation& fade, bool in, std::chrono::milliseconds time)
{
    fade.setDuration(int(animationTime(*this, time).count()));
    fade.setDirection(in ? QAbstractAnimation::Forward : QAbstractAnimation::Backward);
    fade.start();
}

void SnippetCardListView::setCopied(const std::optional<QString>& snippetID)
{
    if (snippetID) {
        const bool isNew = copied != snippetID;
        copied = snippetID;
        if (isNew || copiedFade->direction() == QAbstractAnimation::Backward)
            runFade(*copiedFade, true, copiedTime);
    } else if (copied) {
        runFade(*copiedFade, false, copiedTime);
    }
    viewport()->update();
}

void SnippetCardListView::setDragging(const std::optional<QString>& snippetID)
{
    dragging = snippetID;
    viewport()->update();
}

void SnippetCardListView::slideCards(const std::function<void()>& change)
{
    // Only what is in sight, or comes into it, is seen to slide.
    std::map<QString, int> before;
    const int offset = verticalScrollBar()->value();
    const int first = std::max(0, rowAt(std::max(endMargin, offset)));
    for (int row = first; row < rows->rowCount() && rectOfRow(row).top() < viewport()->height();
         ++row) {
        const QString& id = rows->snippet(row).id();
        before[id] = tops[size_t(row)] + slideOf(id, row);
    }
    change();
    slidFrom = std::move(before);
    sliding->stop();
    sliding->setDuration(int(animationTime(*this, slideTime).count()));
    sliding->start();
    viewport()->update();
}

int SnippetCardListView::slideOf(const QString& snippetID, int row) const
{
    if (sliding->state() != QAbstractAnimation::Running)
        return 0;
    const auto from = slidFrom.find(snippetID);
    if (from == slidFrom.end())
        return 0;
    return qRound((from->second - tops[size_t(row)]) * (1 - sliding->currentValue().toReal()));
}

SnippetCardView::Contents SnippetCardListView::contentsOf(int row) const
{
    const Snippet& snippet = rows->snippet(row);
    const QString& id = snippet.id();
    qreal hover = 0;
    if (hovered == id)
        hover = hoverFade->currentValue().toReal();
    else if (leftHover == id)
        hover = 1 - hoverFade->currentValue().toReal();
    return {.snippet = snippet,
            .isSelected = services.viewModel.selectedSnippetID() == id,
            .isUnsaved = services.viewModel.isUnsaved(id),
            .hover = hover,
            .isFocused = isLit,
            .copied = copied == id ? copiedFade->currentValue().toReal() : 0,
            .isOpenPlace = dragging == id};
}

void SnippetCardListView::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    painter.fillRect(event->rect(), services.theme.colors().list);
    const int offset = verticalScrollBar()->value();
    // Cards that slide can come from a card's height above.
    const int first = std::max(0, rowAt(std::max(endMargin, offset + event->rect().top())) - 1);
    for (int row = first; row < rows->rowCount(); ++row) {
        QRect card = rectOfRow(row);
        if (card.top() > event->rect().bottom() + card.height())
            break;
        card.translate(0, slideOf(rows->snippet(row).id(), row));
        if (card.intersects(event->rect()))
            cards.paint(painter, card, contentsOf(row));
    }
}

// Pointer

std::optional<QString> SnippetCardListView::hoveredID() const
{
    return hovered;
}

void SnippetCardListView::setHovered(const std::optional<QString>& snippetID)
{
    if (hovered == snippetID)
        return;
    leftHover = std::exchange(hovered, snippetID);
    hoverFade->stop();
    runFade(*hoverFade, true, hoverTime);
    viewport()->update();
}

void SnippetCardListView::hoverAt(const QPoint& position)
{
    const QModelIndex index = indexAt(position);
    setHovered(index.isValid() ? std::optional(rows->snippet(index.row()).id()) : std::nullopt);
}

bool SnippetCardListView::viewportEvent(QEvent* event)
{
    switch (event->type()) {
    case QEvent::Leave:
        setHovered(std::nullopt);
        break;
    case QEvent::HoverEnter:
    case QEvent::HoverMove:
    case QEvent::HoverLeave:
        return true; // the item view's own, which would repaint by its delegate
    default:
        break;
    }
    return QListView::viewportEvent(event);
}

void SnippetCardListView::mousePressEvent(QMouseEvent* event)
{
    const QPoint position = event->position().toPoint();
    const QModelIndex index = indexAt(position);
    if (event->button() == Qt::LeftButton && index.isValid())
        pressed = Press{rows->snippet(index.row()).id(), position};
}

void SnippetCardListView::mouseMoveEvent(QMouseEvent* event)
{
    if (!event->buttons().testFlag(Qt::LeftButton)) {
        // The release has gone elsewhere.
        pressed.reset();
        if (lifted)
            endDrag();
    }
    if (lifted) {
        dragTo(event->globalPosition().toPoint());
        return;
    }
    const QPoint position = event->position().toPoint();
    hoverAt(position);
    if (pressed && isFar(position, pressed->position)) {
        beginDrag();
        if (lifted)
            dragTo(event->globalPosition().toPoint());
    }
}

void SnippetCardListView::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const auto press = std::exchange(pressed, std::nullopt);
    if (lifted) {
        endDrag();
        return;
    }
    if (!press)
        return;
    // Cards can change places between the press and the release.
    const QPoint position = event->position().toPoint();
    const QModelIndex index = indexAt(position);
    const bool isOver = index.isValid() && rows->snippet(index.row()).id() == press->snippetID;
    const bool isThere = services.viewModel.shownRow(press->snippetID) >= 0;
    if (isOver || (isThere && !isFar(position, press->position)))
        Q_EMIT clicked(press->snippetID);
}

void SnippetCardListView::mouseDoubleClickEvent(QMouseEvent* event)
{
    mousePressEvent(event);
}

void SnippetCardListView::beginDrag()
{
    const qsizetype row = services.viewModel.shownRow(pressed->snippetID);
    if (row < 0)
        return;
    const QRect place = rectOfRow(int(row));
    const qreal ratio = devicePixelRatioF();
    QPixmap picture(place.size() * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(services.theme.colors().cardSelected);
    QPainter painter(&picture);
    SnippetCardView::Contents contents = contentsOf(int(row));
    contents.isSelected = true;
    contents.copied = 0;
    cards.paint(painter, QRectF(QPointF(0, 0), QSizeF(place.size())), contents);
    painter.end();
    setHovered(std::nullopt);
    lifted = new LiftedPicture(services.theme, *viewport(), picture, place, pressed->position,
                               SnippetCardView::radius);
    entered = pressed->snippetID;
    Q_EMIT dragStarted(pressed->snippetID);
}

void SnippetCardListView::dragTo(const QPoint& screenPosition)
{
    if (!lifted)
        return;
    lastDragPosition = screenPosition;
    lifted->follow(screenPosition);
    edgeScroll->follow(screenPosition);
    const auto over = snippetAt(viewport()->mapFromGlobal(screenPosition));
    if (over == std::exchange(entered, over) || !over)
        return;
    Q_EMIT dragEntered(*over);
}

void SnippetCardListView::endDrag()
{
    edgeScroll->stop();
    std::exchange(lifted, nullptr)->putDown();
    entered.reset();
    Q_EMIT dropped(snippetAt(viewport()->mapFromGlobal(lastDragPosition)));
}

void SnippetCardListView::contextMenuEvent(QContextMenuEvent* event)
{
    if (lifted)
        return;
    if (event->reason() == QContextMenuEvent::Keyboard) {
        const auto& id = services.viewModel.selectedSnippetID();
        const QRect card = id ? cardRect(*id) : QRect();
        if (!card.isEmpty())
            Q_EMIT menuRequested(*id, viewport()->mapToGlobal(card.center()));
        return;
    }
    const QModelIndex index = indexAt(viewport()->mapFromGlobal(event->globalPos()));
    if (index.isValid())
        Q_EMIT menuRequested(rows->snippet(index.row()).id(), event->globalPos());
}

void SnippetCardListView::keyPressEvent(QKeyEvent* event)
{
    event->ignore();
}

void SnippetCardListView::focusInEvent(QFocusEvent* event)
{
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): the focus chooses no row by itself
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason)
        Q_EMIT tabFocusReceived();
}

void SnippetCardListView::selectionChanged(const QItemSelection& chosen, const QItemSelection& left)
{
    QListView::selectionChanged(chosen, left);
    // By itself the view selects what the model has selected; another card, a screen reader does.
    const QModelIndexList indexes = chosen.indexes();
    if (indexes.isEmpty())
        return;
    const QString id = rows->snippet(indexes.constFirst().row()).id();
    if (services.viewModel.selectedSnippetID() != id)
        Q_EMIT clicked(id);
}

void SnippetCardListView::scrollContentsBy(int dx, int dy)
{
    QListView::scrollContentsBy(dx, dy);
    if (viewport()->underMouse() && !lifted)
        hoverAt(viewport()->mapFromGlobal(QCursor::pos()));
}

void SnippetCardListView::hideEvent(QHideEvent* event)
{
    QListView::hideEvent(event);
    setHovered(std::nullopt);
    pressed.reset();
    if (lifted)
        endDrag();
}

} // namespace vellumry
