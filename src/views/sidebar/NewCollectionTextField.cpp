#include "views/sidebar/NewCollectionTextField.h"

#include <QKeyEvent>

#include <utility>

namespace vellumry {

namespace {

constexpr int fieldHeight = 30;

} // namespace

NewCollectionTextField::NewCollectionTextField(const Theme& look, std::function<void()> confirm,
                                               std::function<void()> cancel, QWidget* parent)
    : TextField(look, QStringLiteral("Collection name"), parent, fieldHeight),
      onReturn(std::move(confirm)), onCancel(std::move(cancel))
{
    addClearButton(QStringLiteral("Cancel"), true);
    connect(this, &TextField::clearRequested, this, [this] { onCancel(); });
}

void NewCollectionTextField::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        onReturn();
        break;
    case Qt::Key_Escape:
        onCancel();
        break;
    default:
        TextField::keyPressEvent(event);
    }
}

} // namespace vellumry
