#include "views/sheets/ScrollingSheet.h"

#include "views/common/Button.h"
#include "views/common/Label.h"
#include "views/common/OverlayScrollBar.h"

#include <QApplication>
#include <QPainter>
#include <QPointer>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace vellumry {

namespace {

constexpr int margin = 20;
constexpr int closeSymbol = 20;

QWidget* makePart(QWidget* parent)
{
    auto* part = new QWidget(parent);
    auto* column = new QVBoxLayout(part);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    return part;
}

QVBoxLayout& columnOf(const QWidget* part)
{
    return *static_cast<QVBoxLayout*>(part->layout());
}

int heightOf(const QWidget* part, int wide)
{
    if (part->layout()->count() == 0)
        return 0;
    return part->hasHeightForWidth() ? part->heightForWidth(wide) : part->sizeHint().height();
}

/// Lets Tab go through the parts as they are read, whenever their contents were made.
void chainFocus(std::initializer_list<QWidget*> parts)
{
    QWidget* before = nullptr;
    for (QWidget* part : parts) {
        QList<std::pair<QPoint, QWidget*>> places;
        for (QWidget* each : part->findChildren<QWidget*>()) {
            if ((each->focusPolicy() & Qt::TabFocus) != 0 && each->isVisibleTo(part))
                places.append({each->mapTo(part, QPoint()), each});
        }
        std::stable_sort(places.begin(), places.end(), [](const auto& a, const auto& b) {
            return std::pair(a.first.y(), a.first.x()) < std::pair(b.first.y(), b.first.x());
        });
        for (const auto& [place, each] : places) {
            if (before)
                QWidget::setTabOrder(before, each);
            before = each;
        }
    }
}

} // namespace

ScrollingSheet::ScrollingSheet(const Theme& look, Scheduler& scheduler, int width, QWidget* parent)
    : QWidget(parent), theme(look), preferredWidth(width), headerPart(makePart(this)),
      area(new QScrollArea(this)), bodyPart(makePart(area)), footerPart(makePart(this)),
      scrollBar(new OverlayScrollBar(*area, {}, scheduler))
{
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setWidgetResizable(true);
    area->setWidget(bodyPart);
    area->viewport()->setAutoFillBackground(false);
    bodyPart->setAutoFillBackground(false);
    for (QWidget* part : {headerPart, bodyPart, footerPart})
        part->installEventFilter(this);
    connect(&theme, &Theme::changed, this, &ScrollingSheet::applyTheme);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (now && bodyPart->isAncestorOf(now))
            area->ensureWidgetVisible(now, 0, margin);
    });
    applyTheme();
}

QVBoxLayout& ScrollingSheet::header() const
{
    return columnOf(headerPart);
}

QVBoxLayout& ScrollingSheet::body() const
{
    return columnOf(bodyPart);
}

QVBoxLayout& ScrollingSheet::footer() const
{
    return columnOf(footerPart);
}

void ScrollingSheet::addFooter(QWidget* left, std::initializer_list<Button*> buttons, int marginX,
                               int marginY)
{
    constexpr int ring = Button::ringRoom;
    auto* row = new QHBoxLayout;
    row->setSpacing(0);
    const bool startsWithButton = qobject_cast<Button*>(left) != nullptr;
    row->setContentsMargins(marginX - (startsWithButton ? ring : 0), marginY - ring, marginX - ring,
                            marginY - ring);
    if (left && !startsWithButton)
        row->addWidget(left, 1);
    else if (left)
        row->addWidget(left);
    row->addStretch();
    for (Button* button : buttons)
        row->addWidget(button);
    footer().addLayout(row);
}

Button* ScrollingSheet::addTitleWithClose(const QString& title)
{
    constexpr int ring = Button::ringRoom;
    auto* row = new QHBoxLayout;
    row->setSpacing(0);
    row->setContentsMargins(margin, 18 - ring, margin - ring - 4, 14 - ring);
    row->addWidget(
        new Label(theme, TextStyle::sheetTitle, &ColorTokens::textPrimary, title, headerPart), 1);
    Button* close = Button::withSymbol(theme, QStringLiteral("xmark.circle.fill"),
                                       QStringLiteral("Close"), headerPart);
    close->setSymbol(QStringLiteral("xmark.circle.fill"), closeSymbol);
    row->addWidget(close, 0, Qt::AlignTop);
    header().addLayout(row);
    return close;
}

QSize ScrollingSheet::sizeHint() const
{
    return {preferredWidth, heightForWidth(preferredWidth)};
}

int ScrollingSheet::heightForWidth(int wide) const
{
    if (wholeHeight)
        return *wholeHeight;
    const int wanted = heightOf(bodyPart, wide);
    return heightOf(headerPart, wide) + std::min(wanted, mostBodyHeight.value_or(wanted)) +
           heightOf(footerPart, wide);
}

void ScrollingSheet::reveal(QWidget* part)
{
    // Once its room is laid out, which takes two turns.
    QMetaObject::invokeMethod(
        this,
        [this, part = QPointer<QWidget>(part)] {
            QMetaObject::invokeMethod(
                this,
                [this, part] {
                    if (part && part->isVisible())
                        area->ensureWidgetVisible(part, 0, margin);
                },
                Qt::QueuedConnection);
        },
        Qt::QueuedConnection);
}

bool ScrollingSheet::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::LayoutRequest &&
        (watched == headerPart || watched == bodyPart || watched == footerPart)) {
        updateGeometry();
        place();
    }
    return false;
}

void ScrollingSheet::resizeEvent(QResizeEvent*)
{
    place();
}

void ScrollingSheet::place()
{
    const int top = heightOf(headerPart, width());
    const int bottom = heightOf(footerPart, width());
    headerPart->setGeometry(0, 0, width(), top);
    area->setGeometry(0, top, width(), std::max(0, height() - top - bottom));
    footerPart->setGeometry(0, height() - bottom, width(), bottom);
    update();
    // Once the layouts have given everything its place.
    QMetaObject::invokeMethod(
        this,
        [this] {
            chainFocus({headerPart, bodyPart, footerPart});
        },
        Qt::QueuedConnection);
}

void ScrollingSheet::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (footerPart->layout()->count() > 0)
        painter.fillRect(0, footerPart->y(), width(), 1, theme.colors().stroke);
}

void ScrollingSheet::applyTheme()
{
    const ColorTokens& token = theme.colors();
    scrollBar->setLook({.handle = token.scrollHandle, .handleHovered = token.scrollHandleHover});
    update();
}

} // namespace vellumry
