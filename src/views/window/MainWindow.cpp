#include "views/window/MainWindow.h"

#include <QIcon>

#include <utility>

namespace vellumry {

namespace {

constexpr QSize firstSize{1024, 680};
constexpr QSize smallestContents{928, 560};

} // namespace

MainWindow::MainWindow(QWidget* parent) : QMainWindow(parent)
{
    setWindowTitle(QStringLiteral("Vellumry"));
    resize(firstSize);
}

void MainWindow::setGround(QWidget* ground)
{
    ground->setMinimumSize(smallestContents);
    setCentralWidget(ground);
}

void MainWindow::setContents(QWidget* contents)
{
    // Here and not for the whole application: the palette is in no task bar, and drawing the icon
    // takes a megabyte, and its time, which the ground need not wait for.
    setWindowIcon(QIcon(QStringLiteral(":/icons/vellumry.svg")));
    contents->setMinimumSize(smallestContents);
    setCentralWidget(contents);
    hasContents = true;
    tellOfContents();
}

void MainWindow::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    tellOfContents();
}

void MainWindow::tellOfContents()
{
    if (hasContents && isVisible() && !std::exchange(hasAppeared, true))
        Q_EMIT appeared();
}

} // namespace vellumry
