#include "views/common/SheetHost.h"

#include "views/common/AccessibleRole.h"
#include "views/common/Button.h"
#include "views/common/FocusHeir.h"
#include "views/common/Motion.h"
#include "views/common/Shadow.h"
#include "views/common/Strokes.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLayout>
#include <QPainter>
#include <QPointer>
#include <QVariantAnimation>

#include <algorithm>

namespace vellumry {

namespace {

constexpr int radius = 12;
constexpr int windowMargin = 16;
constexpr std::chrono::milliseconds enterTime{180};
constexpr std::chrono::milliseconds leaveTime{120};
constexpr qreal smallestScale = 0.97;
constexpr int beyondAnyScreen = 30'000;

} // namespace

/// One sheet with its scrim. While it comes and goes a picture stands for the contents, which are
/// there all the same, out of sight, so that keys that come early arrive.
class SheetHost::Layer final : public QWidget {
public:
    Layer(const Theme& look, QWidget* sheetContents, const Options& sheetOptions, QWidget* parent)
        : QWidget(parent), theme(look), contents(sheetContents), options(sheetOptions),
          lastFocus(sheetOptions.firstFocus), focusBefore(window()->focusWidget()),
          motion(new QVariantAnimation(this))
    {
        setAccessibleRole(*this, QAccessible::Dialog);
        setAccessibleName(contents->accessibleName());
        contents->setParent(this);
        connect(motion, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
        connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
    }

    [[nodiscard]] QWidget* sheet() const { return contents; }

    [[nodiscard]] bool holds(const QWidget* widget) const
    {
        return widget == this || isAncestorOf(widget);
    }
    void rememberFocus(QWidget* widget) { lastFocus = widget; }
    void setFocusBefore(QWidget* widget) { focusBefore = widget; }
    /// What is below this layer goes, and with it what would have got the focus back.
    void standUponWhatIsBelow(const Layer& gone)
    {
        if (!focusBefore || gone.holds(focusBefore))
            focusBefore = gone.focusBefore;
    }
    /// Works in a window that is yet to come, too.
    void takeFocus()
    {
        if (lastFocus && lastFocus->isVisibleTo(this) && lastFocus->isEnabled()) {
            lastFocus->setFocus(Qt::OtherFocusReason);
            return;
        }
        setFocus(Qt::OtherFocusReason);
        focusNextPrevChild(true);
    }

    void enter()
    {
        setGeometry(parentWidget()->rect());
        show();
        raise();
        contents->setPalette(theme.palette());
        contents->resize(cardRect().size());
        contents->ensurePolished();
        contents->show();
        picture = contents->grab();
        placeContents(true);
        setFocusPolicy(Qt::StrongFocus);
        takeFocus();
        start(enterTime, QEasingCurve::OutCubic, 0, 1, [this] {
            picture = {};
            placeContents(false);
        });
    }

    void leave(std::function<void()> whenGone)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setFocusPolicy(Qt::NoFocus);
        picture = contents->grab();
        const QRect last = cardRect();
        // What closes its sheet by a key may have given the focus away already, to nothing.
        const QWidget* focused = window()->focusWidget();
        const bool hadFocus = !focused || holds(focused);
        contents->hide();
        contents->deleteLater();
        contents = nullptr;
        frozenCard = last;
        if (hadFocus && focusBefore && focusBefore->isVisible())
            focusBefore->setFocus(Qt::OtherFocusReason);
        start(leaveTime, QEasingCurve::InCubic, 1, 0, std::move(whenGone));
    }

protected:
    void resizeEvent(QResizeEvent*) override
    {
        if (contents)
            placeContents(!picture.isNull());
    }

    bool event(QEvent* event) override
    {
        // The window's commands are behind the sheet, too; only the end of the program is not.
        if (event->type() == QEvent::ShortcutOverride && contents &&
            !static_cast<QKeyEvent*>(event)->matches(QKeySequence::Quit)) {
            event->accept();
            return true;
        }
        // The contents want another size.
        if (event->type() == QEvent::LayoutRequest && contents && picture.isNull())
            placeContents(false);
        return QWidget::event(event);
    }

    bool focusNextPrevChild(bool next) override
    {
        if (!contents)
            return false;
        QWidget* start = window()->focusWidget() ? window()->focusWidget() : lastFocus.data();
        if (!start || !isAncestorOf(start))
            start = contents;
        for (QWidget* each = step(start, next); each != start; each = step(each, next)) {
            if (takesTab(*each)) {
                each->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
                break;
            }
        }
        return true;
    }

    void keyPressEvent(QKeyEvent* event) override
    {
        event->accept();
        if (!contents)
            return;
        switch (event->key()) {
        case Qt::Key_Escape:
            if (options.onCancel)
                options.onCancel();
            break;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            for (Button* button : contents->findChildren<Button*>()) {
                if (button->isDefault() && button->isEnabled()) {
                    button->click();
                    break;
                }
            }
            break;
        default:
            break;
        }
    }

    // What is behind takes no input.
    void mousePressEvent(QMouseEvent*) override {}
    void mouseReleaseEvent(QMouseEvent*) override {}
    void mouseMoveEvent(QMouseEvent*) override {}
    void wheelEvent(QWheelEvent* event) override { event->accept(); }
    void contextMenuEvent(QContextMenuEvent*) override {}

    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        const ColorTokens& token = theme.colors();
        const qreal progress = motion->currentValue().toReal();
        QColor scrim = token.scrim;
        scrim.setAlphaF(float(scrim.alphaF() * progress));
        painter.fillRect(rect(), scrim);

        const QRectF card = contents ? cardRect() : frozenCard;
        painter.setOpacity(progress);
        const qreal scale = smallestScale + (1 - smallestScale) * progress;
        painter.translate(card.center());
        painter.scale(scale, scale);
        painter.translate(-card.center());
        painter.setRenderHint(QPainter::SmoothPixmapTransform, progress < 1);
        Shadow::sheet.paint(painter, card, radius, token.shadow);
        fillRounded(painter, card.adjusted(-1, -1, 1, 1), radius + 1, token.strokeStrong);
        fillRounded(painter, card, radius, token.sheet);
        if (!picture.isNull())
            painter.drawPixmap(card.topLeft(), picture);
    }

private:
    [[nodiscard]] QRect cardRect() const
    {
        const QSize room = size() - QSize(2 * windowMargin, 2 * windowMargin);
        const QSize wanted = contents->sizeHint()
                                 .expandedTo(contents->minimumSize())
                                 .boundedTo(contents->maximumSize());
        const int wide = std::min(wanted.width(), room.width());
        const int high = std::min(contents->hasHeightForWidth() ? contents->heightForWidth(wide)
                                                                : wanted.height(),
                                  room.height());
        return {(width() - wide) / 2, (height() - high) / 2, wide, high};
    }

    void placeContents(bool outOfSight)
    {
        QRect place = cardRect();
        if (outOfSight)
            place.moveLeft(beyondAnyScreen);
        contents->setGeometry(place);
        update();
    }

    static QWidget* step(QWidget* from, bool next)
    {
        return next ? from->nextInFocusChain() : from->previousInFocusChain();
    }

    [[nodiscard]] bool takesTab(const QWidget& widget) const
    {
        return contents->isAncestorOf(&widget) && widget.isVisibleTo(this) && widget.isEnabled() &&
               (widget.focusPolicy() & Qt::TabFocus) != 0 && !widget.focusProxy();
    }

    void start(std::chrono::milliseconds time, QEasingCurve::Type curve, qreal from, qreal to,
               std::function<void()> whenDone)
    {
        motion->disconnect(SIGNAL(finished()));
        motion->stop();
        motion->setStartValue(from);
        motion->setEndValue(to);
        motion->setEasingCurve(curve);
        motion->setDuration(int(animationTime(*this, time).count()));
        connect(motion, &QVariantAnimation::finished, this, std::move(whenDone));
        motion->start();
    }

    const Theme& theme;
    QWidget* contents;
    Options options;
    QPointer<QWidget> lastFocus;
    QPointer<QWidget> focusBefore;
    QVariantAnimation* motion;
    QPixmap picture;
    QRect frozenCard;
};

SheetHost::SheetHost(const Theme& look, QWidget* parent) : QWidget(parent), theme(look)
{
    parent->installEventFilter(this);
    // Later, since what moves the focus often is about to dismiss the sheet; keys come later still.
    connect(qApp, &QApplication::focusChanged, this, &SheetHost::keepFocus, Qt::QueuedConnection);
    hide();
}

SheetHost::~SheetHost() = default;

bool SheetHost::isCovering(const QWidget& widget)
{
    const auto hosts = widget.window()->findChildren<SheetHost*>();
    return std::any_of(hosts.begin(), hosts.end(),
                       [](const SheetHost* host) { return host->isPresenting(); });
}

QWidget* SheetHost::presented() const
{
    return layers.empty() ? nullptr : layers.back()->sheet();
}

void SheetHost::present(QWidget* contents, const Options& options)
{
    setGeometry(parentWidget()->rect());
    setAttribute(Qt::WA_TransparentForMouseEvents, false);
    show();
    raise();
    layers.push_back(new Layer(theme, contents, options, this));
    layers.back()->enter();
    if (layers.size() == 1)
        Q_EMIT presentingChanged();
}

void SheetHost::dismiss(QWidget* contents)
{
    const auto found = std::find_if(layers.begin(), layers.end(), [contents](const Layer* layer) {
        return layer->sheet() == contents;
    });
    if (found == layers.end())
        return;
    Layer* layer = *found;
    const auto above = layers.erase(found);
    if (above != layers.end())
        (*above)->standUponWhatIsBelow(*layer);
    ++leaving;
    layer->leave([this, layer] {
        layer->hide();
        layer->deleteLater();
        layerGone();
    });
    if (!layers.empty()) {
        if (layer->holds(window()->focusWidget()))
            layers.back()->takeFocus();
        return;
    }
    inheritFocus(*layer, *parentWidget());
    // What is behind takes input again, while the last sheet is still to be seen.
    setAttribute(Qt::WA_TransparentForMouseEvents);
    Q_EMIT presentingChanged();
}

void SheetHost::keepFocus()
{
    if (layers.empty())
        return;
    QWidget* focused = window()->focusWidget();
    if (focused && layers.back()->holds(focused)) {
        layers.back()->rememberFocus(focused);
        return;
    }
    // Where it was taken to, there it goes when the sheet in front of that goes.
    if (focused) {
        const auto holder =
            std::find_if(layers.begin(), layers.end(),
                         [focused](const Layer* each) { return each->holds(focused); });
        const auto inFront = holder == layers.end() ? layers.begin() : std::next(holder);
        (*inFront)->setFocusBefore(focused);
    }
    layers.back()->takeFocus();
}

void SheetHost::layerGone()
{
    --leaving;
    if (layers.empty() && leaving == 0)
        hide();
}

bool SheetHost::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize && watched == parentWidget()) {
        setGeometry(parentWidget()->rect());
        for (QWidget* layer : findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
            layer->setGeometry(rect());
    }
    return false;
}

} // namespace vellumry
