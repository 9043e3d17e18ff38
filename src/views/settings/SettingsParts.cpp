#include "views/settings/SettingsParts.h"

#include "views/common/Button.h"
#include "views/common/Icon.h"
#include "views/common/Label.h"
#include "views/common/Strokes.h"
#include "views/sheets/DriveLook.h"

#include <QBoxLayout>
#include <QPainter>

namespace vellumry {

namespace {

constexpr int groupRadius = 10;
constexpr int rowHeight = 60;
constexpr int rowMargin = 14;
constexpr int rowGap = 12;
constexpr int rowPadding = 12;
constexpr int titleGap = 2;

constexpr int tileSide = 32;
constexpr int tileRadius = 8;
constexpr int tileSymbol = 18;

} // namespace

SettingsGroup::SettingsGroup(const Theme& look, const QString& name, QWidget* parent)
    : QWidget(parent), theme(look), column(new QVBoxLayout(this))
{
    setAccessibleName(name);
    column->setContentsMargins(1, 1, 1, 1);
    column->setSpacing(0);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void SettingsGroup::addRow(QWidget* row, Line line)
{
    column->addWidget(row);
    if (line == Line::above)
        lined.append(row);
}

void SettingsGroup::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const ColorTokens& token = theme.colors();
    fillRounded(painter, rect(), groupRadius, token.group);
    strokeRounded(painter, rect(), groupRadius, token.stroke);
    const qreal thin = lineWidth(painter);
    for (const QWidget* row : lined) {
        if (row->isVisible())
            painter.fillRect(QRectF(thin, row->y(), width() - 2 * thin, thin), token.stroke);
    }
}

QHBoxLayout* makeSettingsRow(QWidget* row)
{
    row->setMinimumHeight(rowHeight);
    auto* line = new QHBoxLayout(row);
    line->setContentsMargins(rowMargin, rowPadding, rowMargin - Button::ringRoom, rowPadding);
    line->setSpacing(rowGap - Button::ringRoom);
    return line;
}

QVBoxLayout* makeSettingsTexts(const Theme& theme, const QString& title, const QString& description,
                               QWidget* parent)
{
    auto* texts = new QVBoxLayout;
    texts->setSpacing(0);
    texts->addStretch();
    auto* above = new Label(theme, TextStyle::bodyMedium, &ColorTokens::textPrimary, title, parent);
    above->setWordWrap(true);
    texts->addWidget(above);
    texts->addSpacing(titleGap);
    auto* below =
        new Label(theme, TextStyle::label, &ColorTokens::textSecondary, description, parent);
    below->setWordWrap(true);
    texts->addWidget(below);
    texts->addStretch();
    return texts;
}

void foldSettingsRow(QBoxLayout& row)
{
    row.setDirection(QBoxLayout::LeftToRight);
    if (row.minimumSize().width() > settingsRowWidth)
        row.setDirection(QBoxLayout::TopToBottom);
}

SettingsTile::SettingsTile(const Theme& look, QWidget* parent) : QWidget(parent), theme(look)
{
    setFixedSize(tileSide, tileSide);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void SettingsTile::setSymbol(const QString& name, bool isAccented)
{
    symbolName = name;
    accented = isAccented;
    own.reset();
    update();
}

void SettingsTile::setSymbol(const QString& name, const QColor& ownColor)
{
    symbolName = name;
    own = ownColor;
    update();
}

void SettingsTile::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (!accented || own) {
        paintTile(painter, theme, rect(), symbolName, own);
        return;
    }
    fillRounded(painter, rect(), tileRadius, theme.colors().accentTint);
    const qreal inset = (tileSide - tileSymbol) / 2.0;
    Icon(symbolName).paint(painter, {inset, inset}, tileSymbol, theme.colors().accent);
}

} // namespace vellumry
