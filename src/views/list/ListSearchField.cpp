#include "views/list/ListSearchField.h"

#include "views/list/ListKeyHandlingTextField.h"

#include <QKeyEvent>
#include <QVBoxLayout>

#include <utility>

namespace vellumry {

ListSearchField::ListSearchField(const Theme& theme, Scheduler& scheduler, Callbacks handlers,
                                 QWidget* parent)
    : QWidget(parent), timing(scheduler), callbacks(std::move(handlers)),
      field(new ListKeyHandlingTextField(
          theme, QStringLiteral("Filter list..."),
          [this](const QKeyEvent& event) { return handleKey(event); }, this))
{
    field->setSymbol(QStringLiteral("magnifyingglass"));
    field->setAccessibleName(QStringLiteral("Filter list"));
    setFocusProxy(field);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(field);
    connect(field, &QLineEdit::textEdited, this,
            [this](const QString& text) { callbacks.onTextChanged(text); });
    connect(field, &ListKeyHandlingTextField::focusChanged, this,
            [this](bool hasIt) { callbacks.onFocusChange(hasIt); });
}

void ListSearchField::updateText(const QString& text)
{
    if (field->text() != text)
        field->setText(text);
}

void ListSearchField::focus()
{
    field->setFocus(Qt::OtherFocusReason);
    field->selectAll();
}

bool ListSearchField::handleKey(const QKeyEvent& event)
{
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        callbacks.onReturn();
        return true;
    case Qt::Key_Tab:
        callbacks.onTab();
        return true;
    case Qt::Key_Backtab:
        callbacks.onShiftTab();
        return true;
    case Qt::Key_Escape:
        callbacks.onEscape();
        return true;
    case Qt::Key_Down:
        field->clearFocus();
        timing.after(std::chrono::milliseconds(0), this, [this] { callbacks.onReturn(); });
        return true;
    default:
        return false;
    }
}

} // namespace vellumry
