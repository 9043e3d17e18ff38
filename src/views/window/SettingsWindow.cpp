#include "views/window/SettingsWindow.h"

#include <QHideEvent>
#include <QIcon>
#include <QVBoxLayout>

namespace vellumry {

SettingsWindow::SettingsWindow(QWidget* contents, QWidget* parent) : QWidget(parent, Qt::Window)
{
    setWindowTitle(QStringLiteral("Settings"));
    setWindowIcon(QIcon(QStringLiteral(":/icons/vellumry.svg")));
    setAttribute(Qt::WA_DeleteOnClose);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->addWidget(contents);
}

void SettingsWindow::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    // A minimised one is still there.
    if (!event->spontaneous())
        Q_EMIT disappeared();
}

} // namespace vellumry
