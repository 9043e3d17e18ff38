#include "views/window/MainWindow.h"

#include <QCloseEvent>
#include <QIcon>
#include <QLabel>
#include <QVBoxLayout>

namespace vellumry {

namespace {

constexpr QSize firstSize{1024, 680};
constexpr QSize smallestSize{928, 560};

} // namespace

MainWindow::MainWindow(QWidget* parent)
    : QWidget(parent), hotkeyLine(new QLabel(this)), libraryLine(new QLabel(this))
{
    setWindowTitle(QStringLiteral("Vellumry"));
    // Here and not for the whole application: the palette is in no task bar, and drawing the icon
    // takes a megabyte.
    setWindowIcon(QIcon(QStringLiteral(":/icons/vellumry.svg")));
    setMinimumSize(smallestSize);
    resize(firstSize);

    auto* heading = new QLabel(QStringLiteral("Vellumry"), this);
    QFont headingFont = heading->font();
    headingFont.setPixelSize(24);
    headingFont.setWeight(QFont::DemiBold);
    heading->setFont(headingFont);

    auto* column = new QVBoxLayout(this);
    column->setSpacing(12);
    column->addStretch();
    for (QLabel* line : {heading, hotkeyLine, libraryLine}) {
        line->setAlignment(Qt::AlignCenter);
        line->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        column->addWidget(line);
    }
    column->addStretch();
}

void MainWindow::setHotkeyText(const QString& text)
{
    hotkeyLine->setText(QStringLiteral("Press %1 anywhere to search your snippets.").arg(text));
}

void MainWindow::setLibrary(qsizetype snippetCount, const QString& folderDisplayName)
{
    libraryLine->setText(
        QStringLiteral("%1 snippets in %2").arg(snippetCount).arg(folderDisplayName));
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    event->ignore();
    hide();
}

} // namespace vellumry
