#include "views/editor/EditorBottomBar.h"

#include "library/SnippetEditorViewModel.h"
#include "views/common/AccessibleRole.h"
#include "views/common/DateText.h"
#include "views/common/Icon.h"
#include "views/common/Strokes.h"
#include "views/common/TextPainting.h"

#include <QEvent>
#include <QPainter>
#include <QtMath>

namespace vellumry {

namespace {

constexpr int barHeight = 40;
constexpr int twoLinesHeight = 62;
constexpr int twoLinesBelow = 470;
constexpr int wideLeftMargin = 24; // those of the sections above
constexpr int narrowLeftMargin = 20;
constexpr int narrowBelow = 420;
constexpr int rightMargin = 12;
constexpr int pillHeight = 22;
constexpr int pillPadding = 6;
constexpr int pillGap = 5;
constexpr int symbolSize = 12;
constexpr int symbolGap = 4;
constexpr int lineGap = 4;

} // namespace

EditorBottomBar::EditorBottomBar(const Theme& look, SnippetEditorViewModel& model,
                                 const Clock& time, QWidget* parent)
    : QWidget(parent), theme(look), viewModel(model), clock(time)
{
    setAccessibleRole(*this, QAccessible::StaticText);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    using M = SnippetEditorViewModel;
    connect(&viewModel, &M::usageCountChanged, this, &EditorBottomBar::refresh);
    connect(&viewModel, &M::lastUsedAtChanged, this, &EditorBottomBar::refresh);
    connect(&theme, &Theme::changed, this, [this] {
        updateGeometry();
        update();
    });
    refresh();
}

QString EditorBottomBar::createdText() const
{
    return QStringLiteral("Created ") + mediumDateTime(viewModel.snippet().createdAt());
}

QString EditorBottomBar::copiedText() const
{
    const qint64 count = viewModel.usageCount();
    return QStringLiteral("Copied %1 time%2").arg(count).arg(count == 1 ? u"" : u"s");
}

QString EditorBottomBar::lastUsedText() const
{
    const auto& lastUsed = viewModel.lastUsedAt();
    return lastUsed ? QStringLiteral("Last used ") +
                          SnippetEditorViewModel::relativeTime(*lastUsed, clock.now())
                    : QStringLiteral("Never used");
}

void EditorBottomBar::refresh()
{
    setAccessibleName(createdText() + QStringLiteral(", ") + copiedText() + QStringLiteral(", ") +
                      lastUsedText());
    update();
}

bool EditorBottomBar::hasTwoLines(int wide) const
{
    return wide < twoLinesBelow * theme.textScale();
}

int EditorBottomBar::heightForWidth(int wide) const
{
    return qRound((hasTwoLines(wide) ? twoLinesHeight : barHeight) *
                  std::max<qreal>(1, theme.textScale()));
}

QSize EditorBottomBar::sizeHint() const
{
    return {0, heightForWidth(width())};
}

void EditorBottomBar::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    // Who comes back to the window wants to know how long ago it is by now.
    if (event->type() == QEvent::ActivationChange)
        refresh();
}

void EditorBottomBar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const ColorTokens& token = theme.colors();
    painter.fillRect(rect(), token.editor);
    painter.fillRect(QRectF(0, 0, width(), lineWidth(painter)), token.stroke);

    const int leftMargin = width() < narrowBelow ? narrowLeftMargin : wideLeftMargin;
    const QFont font = theme.font(TextStyle::caption);
    const QFontMetricsF metrics(font);
    const int high = theme.rowHeight(pillHeight, TextStyle::caption);
    const int line = theme.lineHeight(TextStyle::caption);
    const auto pillWidth = [&](const QString& text) {
        return 2 * pillPadding + symbolSize + symbolGap + qCeil(metrics.horizontalAdvance(text)) +
               1;
    };
    const QString copied = copiedText();
    const QString lastUsed = lastUsedText();
    const qreal pills = pillWidth(copied) + pillGap + pillWidth(lastUsed);

    QRectF created(leftMargin, 0, width() - leftMargin - rightMargin - pills - pillGap, height());
    qreal x = width() - rightMargin - pills;
    qreal y = (height() - high) / 2.0;
    if (hasTwoLines(width())) {
        const qreal top = (height() - line - lineGap - high) / 2.0;
        created = QRectF(leftMargin, top, width() - leftMargin - rightMargin, line);
        x = leftMargin;
        y = top + line + lineGap;
    }
    paintLine(painter, created, createdText(), font, token.textTertiary);

    const auto paintPill = [&](const QString& symbol, const QString& text) {
        const QRectF pill(x, y, pillWidth(text), high);
        fillRounded(painter, pill, high / 2.0, token.fill);
        Icon(symbol).paint(painter, {x + pillPadding, pill.center().y() - symbolSize / 2.0},
                           symbolSize, token.textSecondary);
        const qreal left = x + pillPadding + symbolSize + symbolGap;
        paintLine(painter, QRectF(left, y, pill.right() - pillPadding + 1 - left, high), text, font,
                  token.textSecondary);
        x = pill.right() + pillGap;
    };
    paintPill(QStringLiteral("doc.on.doc.fill"), copied);
    paintPill(viewModel.lastUsedAt() ? QStringLiteral("clock.fill")
                                     : QStringLiteral("clock.badge.questionmark"),
              lastUsed);
}

} // namespace vellumry
