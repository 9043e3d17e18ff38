#include "views/settings/SettingsParts.h"

#include "views/common/Button.h"
#include "views/common/HoverFade.h"
#include "views/common/Icon.h"
#include "views/common/Label.h"
#include "views/common/Strokes.h"
#include "views/common/SymbolView.h"

#include <QAccessible>
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
constexpr qreal driveTint = 0.13;
constexpr QColor darkDriveTile(0xdd, 0xe3, 0xe3);

constexpr int noteRadius = 8;
constexpr int noteGap = 9;
constexpr QMargins noteMargins(12, 10, 12, 10);
constexpr int noteTitleGap = 3;

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
    const ColorTokens& token = theme.colors();
    QColor ground = accented ? token.accentTint : token.fill;
    QColor ink = accented ? token.accent : token.textSecondary;
    if (own) {
        // A drive's own colour is made for light grounds.
        ground =
            theme.scheme() == ColorScheme::dark ? darkDriveTile : mixed(Qt::white, *own, driveTint);
        ink = *own;
    }
    fillRounded(painter, rect(), tileRadius, ground);
    const qreal inset = (tileSide - tileSymbol) / 2.0;
    Icon(symbolName).paint(painter, {inset, inset}, tileSymbol, ink);
}

SettingsNote::SettingsNote(const Theme& look, Kind noteKind, const Contents& contents,
                           QWidget* parent)
    : QWidget(parent), theme(look), kind(noteKind), line(new QHBoxLayout(this))
{
    const bool isError = kind == Kind::error;
    line->setContentsMargins(noteMargins);
    line->setSpacing(noteGap);
    line->addWidget(new SymbolView(theme, contents.symbol, contents.symbolSize,
                                   isError ? &ColorTokens::danger : &ColorTokens::warning, this));
    auto* texts = new QVBoxLayout;
    texts->setSpacing(noteTitleGap);
    Label::Color color = isError ? &ColorTokens::danger : &ColorTokens::textPrimary;
    if (!contents.title.isEmpty()) {
        texts->addWidget(new Label(theme, TextStyle::labelStrong, color, contents.title, this));
        color = &ColorTokens::textSecondary;
    }
    message =
        new Label(theme, isError ? TextStyle::labelMedium : TextStyle::label, color, {}, this);
    message->setWordWrap(true);
    texts->addWidget(message);
    line->addLayout(texts, 1);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void SettingsNote::setText(const QString& text)
{
    if (message->text() == text)
        return;
    message->setText(text);
    QAccessibleEvent told(message, QAccessible::Alert);
    QAccessible::updateAccessibility(&told);
}

QString SettingsNote::text() const
{
    return message->text();
}

void SettingsNote::addButton(QWidget* button)
{
    // What shows the focus around it lies in the margin.
    line->setContentsMargins(noteMargins -
                             QMargins(0, Button::ringRoom, Button::ringRoom, Button::ringRoom));
    line->addWidget(button);
}

void SettingsNote::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const ColorTokens& token = theme.colors();
    fillRounded(painter, rect(), noteRadius,
                kind == Kind::error ? token.dangerTint : token.warningTint);
}

} // namespace vellumry
