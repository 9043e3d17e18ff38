#include "views/window/SettingsWindow.h"

#include "views/common/AccessibleRole.h"
#include "views/settings/SettingsView.h"

#include <QHideEvent>
#include <QIcon>
#include <QScreen>
#include <QVBoxLayout>

namespace vellumry {

SettingsWindow::SettingsWindow(QWidget* contents, QWidget* parent) : QWidget(parent, Qt::Window)
{
    setAccessibleRole(*this, QAccessible::Window);
    setWindowTitle(QStringLiteral("Settings"));
    setWindowIcon(QIcon(QStringLiteral(":/icons/vellumry.svg")));
    setAttribute(Qt::WA_DeleteOnClose);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->addWidget(contents);
    // Not two thirds of the screen at most, as Qt would have it.
    resize(contents->sizeHint().boundedTo(screen()->availableSize()));
    if (const auto* settings = qobject_cast<const SettingsView*>(contents))
        connect(settings, &SettingsView::dismissed, this, &QWidget::close);
}

void SettingsWindow::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    // A minimised one is still there.
    if (!event->spontaneous())
        Q_EMIT disappeared();
}

} // namespace vellumry
