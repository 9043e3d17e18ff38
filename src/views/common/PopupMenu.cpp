#include "views/common/PopupMenu.h"

#include "views/common/Icon.h"
#include "views/common/KeyboardText.h"
#include "views/common/PlainText.h"
#include "views/common/RoundedMask.h"
#include "views/common/Strokes.h"
#include "views/common/TextPainting.h"

#include <QActionGroup>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleOptionMenuItem>

#include <algorithm>
#include <utility>

namespace vellumry {

namespace {

constexpr int radius = 10;
constexpr int menuPadding = 5;
constexpr int rowHeight = 30;
constexpr int rowRadius = 6;
constexpr int separatorHeight = 11;
constexpr int separatorInset = 8;
constexpr int iconSize = 16;
constexpr int swatchSize = 12;
constexpr int gap = 9;
constexpr int leftPadding = 9;
constexpr int rightPadding = 10;
constexpr int chevronSize = 14;
constexpr int leastTextWidth = 108;
constexpr int keysGap = 24;

constexpr auto symbolKey = "symbol";
constexpr auto swatchKey = "swatch";
constexpr auto destructiveKey = "destructive";

class MenuStyle final : public QProxyStyle {
public:
    explicit MenuStyle(const Theme& look) : theme(look) {}

    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override
    {
        switch (metric) {
        case PM_MenuPanelWidth:
            return 0;
        case PM_MenuHMargin:
        case PM_MenuVMargin:
            return menuPadding;
        case PM_SubMenuOverlap:
            return -2;
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
        }
    }

    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override
    {
        const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        if (type != CT_MenuItem || !item)
            return QProxyStyle::sizeFromContents(type, option, size, widget);
        if (item->menuItemType == QStyleOptionMenuItem::Separator)
            return {1, separatorHeight};
        const auto& menu = *qobject_cast<const PopupMenu*>(widget);
        // The menu adds the room for the widest keys itself, in the larger font of the texts.
        const QString text = plainMenuText(item->text.section(u'\t', 0, 0));
        const qreal advance = QFontMetricsF(theme.font(TextStyle::body)).horizontalAdvance(text);
        int wide = leftPadding + marksRoom(menu) + symbolsRoom(menu) +
                   std::max(leastTextWidth, qCeil(advance)) + rightPadding;
        if (item->text.contains(u'\t'))
            wide += keysGap;
        if (item->menuItemType == QStyleOptionMenuItem::SubMenu)
            wide += chevronSize + gap;
        return {wide, theme.rowHeight(rowHeight, TextStyle::body)};
    }

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override
    {
        switch (element) {
        case PE_PanelMenu:
            fillRounded(*painter, option->rect, radius, theme.colors().menu);
            strokeRounded(*painter, option->rect, radius, theme.colors().strokeStrong);
            break;
        case PE_FrameMenu:
            break;
        default:
            QProxyStyle::drawPrimitive(element, option, painter, widget);
        }
    }

    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override
    {
        const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        if (element == CE_MenuEmptyArea)
            return;
        if (element == CE_MenuItem && item)
            drawItem(*item, *painter, *qobject_cast<const PopupMenu*>(widget));
        else
            QProxyStyle::drawControl(element, option, painter, widget);
    }

private:
    static int marksRoom(const PopupMenu& menu) { return menu.hasChoices() ? iconSize + gap : 0; }

    static int symbolsRoom(const PopupMenu& menu)
    {
        const QList<QAction*> items = menu.actions();
        const bool has = std::any_of(items.begin(), items.end(), [](const QAction* item) {
            return item->property(symbolKey).isValid() || item->property(swatchKey).isValid();
        });
        return has ? iconSize + gap : 0;
    }

    void drawItem(const QStyleOptionMenuItem& item, QPainter& painter, const PopupMenu& menu) const
    {
        const ColorTokens& token = theme.colors();
        const QRectF row = item.rect;
        if (item.menuItemType == QStyleOptionMenuItem::Separator) {
            painter.fillRect(QRectF(row.x() + separatorInset, qFloor(row.center().y()),
                                    row.width() - 2 * separatorInset, lineWidth(painter)),
                             token.stroke);
            return;
        }
        const QAction* action = menu.actionAt(item.rect.center());
        const bool isCurrent =
            item.state.testFlag(State_Selected) && item.state.testFlag(State_Enabled);
        QColor text = token.textPrimary;
        QColor symbol = token.textSecondary;
        if (action && action->property(destructiveKey).toBool())
            text = symbol = token.danger;
        if (!item.state.testFlag(State_Enabled))
            text = symbol = token.textDisabled;
        if (isCurrent) {
            fillRounded(painter, row, rowRadius, token.accentFill);
            text = symbol = token.onAccent;
        }
        QPointF slot(row.x() + leftPadding, row.center().y() - iconSize / 2.0);
        if (action && action->isChecked())
            Icon(QStringLiteral("checkmark")).paint(painter, slot, iconSize, symbol);
        slot.rx() += marksRoom(menu);
        if (action)
            drawLeading(*action, painter, slot, symbol);
        // Among choices, what has no swatch begins where theirs do.
        const bool isBare = menu.hasChoices() && action && !action->property(swatchKey).isValid();
        const qreal x = slot.x() + (isBare ? 2 : symbolsRoom(menu));
        const bool hasKeys = action && !action->shortcut().isEmpty();
        paintLine(painter, QRectF(x, row.y(), row.right() - rightPadding + 2 - x, row.height()),
                  plainMenuText(hasKeys ? action->text() : item.text), theme.font(TextStyle::body),
                  text);
        if (hasKeys)
            paintLine(painter, row.adjusted(0, 0, -rightPadding, 0),
                      shortcutText(action->shortcut()), theme.font(TextStyle::label),
                      isCurrent ? token.onAccent : token.textTertiary, Qt::AlignRight);
        if (item.menuItemType == QStyleOptionMenuItem::SubMenu)
            Icon(QStringLiteral("chevron.right"))
                .paint(painter,
                       {row.right() - rightPadding - chevronSize,
                        row.center().y() - chevronSize / 2.0},
                       chevronSize, symbol);
    }

    static void drawLeading(const QAction& action, QPainter& painter, const QPointF& slot,
                            const QColor& color)
    {
        const QString symbol = action.property(symbolKey).toString();
        const QVariant swatch = action.property(swatchKey);
        if (!symbol.isEmpty()) {
            Icon(symbol).paint(painter, slot, iconSize, color);
        } else if (swatch.isValid()) {
            const qreal inset = (iconSize - swatchSize) / 2.0;
            painter.drawPixmap(
                slot + QPointF(inset, inset),
                PopupMenu::swatch(swatch.value<QColor>(), painter.device()->devicePixelRatioF()));
        }
    }

    const Theme& theme;
};

} // namespace

PopupMenu::PopupMenu(const Theme& look, QWidget* parent) : QMenu(parent), theme(look)
{
    setWindowFlag(Qt::FramelessWindowHint);
    setAttribute(Qt::WA_TranslucentBackground);
    auto* menuStyle = new MenuStyle(theme);
    menuStyle->setParent(this);
    setStyle(menuStyle);
    setFont(theme.font(TextStyle::body));
}

PopupMenu::~PopupMenu() = default;

QAction* PopupMenu::addItem(const QString& symbol, const QString& text,
                            std::function<void()> action)
{
    QAction* item = addAction(menuText(text), this, std::move(action));
    item->setProperty(symbolKey, symbol);
    return item;
}

QAction* PopupMenu::addDestructiveItem(const QString& symbol, const QString& text,
                                       std::function<void()> action)
{
    QAction* item = addItem(symbol, text, std::move(action));
    item->setProperty(destructiveKey, true);
    return item;
}

QAction* PopupMenu::addSwatch(const QColor& color, const QString& text,
                              std::function<void()> action)
{
    QAction* item = addAction(menuText(text), this, std::move(action));
    item->setProperty(swatchKey, color);
    return item;
}

QAction* PopupMenu::addChoice(const QColor& color, const QString& text, bool isChosen,
                              std::function<void()> action)
{
    if (!choices)
        choices = new QActionGroup(this);
    QAction* item = addSwatch(color, text, std::move(action));
    item->setCheckable(true);
    item->setActionGroup(choices);
    item->setChecked(isChosen);
    return item;
}

PopupMenu* PopupMenu::addSubmenu(const QString& symbol, const QString& text)
{
    auto* submenu = new PopupMenu(theme, this);
    submenu->setTitle(menuText(text));
    addMenu(submenu)->setProperty(symbolKey, symbol);
    return submenu;
}

QPixmap PopupMenu::swatch(const QColor& color, qreal devicePixelRatio)
{
    const int pixels = qRound(swatchSize * devicePixelRatio);
    QPixmap picture(pixels, pixels);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    fillRounded(painter, QRectF(0, 0, pixels, pixels), pixels / 2.0, color);
    painter.end();
    picture.setDevicePixelRatio(devicePixelRatio);
    return picture;
}

void PopupMenu::resizeEvent(QResizeEvent* event)
{
    QMenu::resizeEvent(event);
    // Where no compositor makes the corners translucent, they are cut; where one does, the smooth
    // edge stays whole.
    setMask(roundedMask(size(), radius - 1));
}

} // namespace vellumry
