#include "views/window/LibrarySummary.h"

#include <QLabel>
#include <QVBoxLayout>

#include <utility>

namespace vellumry {

LibrarySummary::LibrarySummary(std::function<Facts()> facts, QWidget* parent)
    : QWidget(parent), currentFacts(std::move(facts)), hotkeyLine(new QLabel(this)),
      libraryLine(new QLabel(this))
{
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

void LibrarySummary::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    const Facts facts = currentFacts();
    hotkeyLine->setText(
        QStringLiteral("Press %1 anywhere to search your snippets.").arg(facts.hotkey));
    libraryLine->setText(
        QStringLiteral("%1 snippets in %2").arg(facts.snippetCount).arg(facts.folder));
}

} // namespace vellumry
