#include "views/editor/EditorVariableRow.h"

#include "views/common/Button.h"
#include "views/common/Strokes.h"
#include "views/common/TextField.h"
#include "views/common/TextPainting.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace vellumry {

namespace {

constexpr int rowHeight = 38;
constexpr int fieldHeight = 28;
constexpr int leftPadding = 12;
constexpr int rightPadding = 6;
constexpr int nameWidth = 128;
constexpr int gap = 10;

} // namespace

EditorVariableRow::EditorVariableRow(const Theme& look, const QString& name, Actions handlers,
                                     QWidget* parent)
    : QWidget(parent), theme(look), variable(name), actions(std::move(handlers)),
      input(new TextField(theme, QStringLiteral("Value"), this, fieldHeight))
{
    setToolTip(variable);
    input->setAccessibleName(variable);
    input->addClearButton(QStringLiteral("Clear value for variable ") + variable);
    input->installEventFilter(this);
    auto* row = new QHBoxLayout(this);
    row->addWidget(input);
    applyTheme();
    connect(input, &QLineEdit::textEdited, this,
            [this](const QString& text) { actions.onChange(text); });
    connect(input, &TextField::clearRequested, this, [this] { actions.onChange({}); });
    connect(&theme, &Theme::changed, this, &EditorVariableRow::applyTheme);
}

void EditorVariableRow::applyTheme()
{
    setFixedHeight(theme.rowHeight(rowHeight, TextStyle::body));
    layout()->setContentsMargins(leftPadding + roomForName() + gap, 0, rightPadding, 0);
    update();
}

int EditorVariableRow::roomForName() const
{
    return qRound(nameWidth * std::max<qreal>(1, theme.textScale()));
}

void EditorVariableRow::setValue(const QString& value)
{
    if (input->text() != value)
        input->setText(value);
}

void EditorVariableRow::setHasLineAbove(bool hasLine)
{
    hasLineAbove = hasLine;
    update();
}

bool EditorVariableRow::eventFilter(QObject*, QEvent* event)
{
    if (event->type() != QEvent::KeyPress ||
        static_cast<const QKeyEvent*>(event)->key() != Qt::Key_Escape)
        return false;
    actions.onEscape();
    return true;
}

void EditorVariableRow::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const ColorTokens& token = theme.colors();
    if (hasLineAbove)
        painter.fillRect(QRectF(0, 0, width(), lineWidth(painter)), token.stroke);
    paintLine(painter, QRectF(leftPadding, 0, roomForName(), height()), variable,
              theme.font(TextStyle::contentSmall), token.accent);
}

} // namespace vellumry
