#include "views/palette/CommandPaletteView.h"

#include "notifications/NotificationCenter.h"
#include "palette/CommandPaletteViewModel.h"
#include "views/common/Strokes.h"
#include "views/palette/DarkPaletteEmptyState.h"
#include "views/palette/DarkSearchFieldView.h"
#include "views/palette/KeyHandlingTextField.h"
#include "views/palette/PaletteFooter.h"
#include "views/palette/PaletteListView.h"
#include "views/palette/QuickSearchStyle.h"

#include <QPainter>

#include <algorithm>

namespace vellumry {

namespace {

DarkSearchFieldView::Callbacks callbacks(CommandPaletteViewModel& viewModel)
{
    return {
        .onTextChanged = [&viewModel](const QString& text) { viewModel.setQuery(text); },
        .onEscape = [&viewModel] { viewModel.dismiss(); },
        .onArrowUp = [&viewModel] { viewModel.moveSelectionUp(); },
        .onArrowDown = [&viewModel] { viewModel.moveSelectionDown(); },
        .onArrowRight = [&viewModel] { viewModel.openCurrentItemInApp(); },
        .onReturn = [&viewModel] { viewModel.selectCurrentItem(); },
    };
}

} // namespace

CommandPaletteView::CommandPaletteView(const Dependencies& dependencies, QWidget* parent)
    : QWidget(parent), services(dependencies),
      field(new DarkSearchFieldView(services.theme, services.scheduler,
                                    callbacks(services.viewModel), this)),
      listView(
          new PaletteListView(services.theme, services.collectionColor, services.scheduler, this)),
      emptyState(new DarkPaletteEmptyState(services.theme, this))
{
    using Style = QuickSearchStyle;
    setAccessibleName(QStringLiteral("Palette"));
    setFixedSize(Style::width, Style::height);
    setFocusProxy(field);

    const QRect listPlace(Style::listInset, Style::fieldHeight, Style::width - 2 * Style::listInset,
                          Style::height - Style::fieldHeight - Style::footerHeight);
    field->setGeometry(0, 0, Style::width, Style::fieldHeight);
    listView->setGeometry(listPlace);
    emptyState->setGeometry(listPlace);
    (new PaletteFooter(services.theme, this))
        ->setGeometry(0, Style::height - Style::footerHeight, Style::width, Style::footerHeight);

    const auto& viewModel = services.viewModel;
    connect(&viewModel, &CommandPaletteViewModel::queryChanged, this, [this] {
        field->updateText(services.viewModel.query());
        updateRows();
    });
    connect(&viewModel, &CommandPaletteViewModel::resultsChanged, this,
            &CommandPaletteView::updateRows);
    connect(&viewModel, &CommandPaletteViewModel::selectedIndexChanged, this,
            &CommandPaletteView::scrollToSelected);
    connect(listView, &PaletteListView::rowClicked, this, &CommandPaletteView::rowClicked);
    field->updateText(viewModel.query());
    updateRows();
}

CommandPaletteView::~CommandPaletteView() = default;

void CommandPaletteView::setPresented(bool isPresented)
{
    if (presented == isPresented)
        return;
    presented = isPresented;
    if (presented)
        appear();
}

void CommandPaletteView::appear()
{
    hasAppeared = true;
    services.viewModel.onAppear();
    listView->select(services.viewModel.selectedIndex(), false);
}

void CommandPaletteView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (!hasAppeared)
        appear();
}

void CommandPaletteView::updateRows()
{
    const auto& viewModel = services.viewModel;
    currentRows = PaletteRows({.query = viewModel.query(),
                               .filteredSnippets = viewModel.filteredSnippets(),
                               .todaySnippets = viewModel.todaySnippets(),
                               .justCopiedID = viewModel.justCopiedID(),
                               .calculationResult = viewModel.calculationResult(),
                               .passwordResults = viewModel.passwordResults()},
                              services.clock.now());
    listView->setRows(currentRows, viewModel.selectedIndex());
    listView->setVisible(!currentRows.showsEmptyState());
    emptyState->setVisible(currentRows.showsEmptyState());
}

void CommandPaletteView::scrollToSelected()
{
    auto& viewModel = services.viewModel;
    const int kept =
        std::max(0, std::min(viewModel.selectedIndex(), currentRows.totalItemCount() - 1));
    if (kept != viewModel.selectedIndex()) {
        viewModel.setSelectedIndex(kept);
        return;
    }
    listView->select(kept, isVisible());
}

void CommandPaletteView::rowClicked(const PaletteRow& row)
{
    switch (row.kind) {
    case PaletteRowKind::openApp:
        Q_EMIT services.notifications.openMainWindow();
        services.viewModel.dismiss();
        break;
    case PaletteRowKind::password:
        services.viewModel.setSelectedIndex(row.index);
        services.viewModel.selectCurrentItem();
        break;
    case PaletteRowKind::calculator:
        // The selection stays, so with a lower row selected that row is copied.
        services.viewModel.selectCurrentItem();
        break;
    case PaletteRowKind::snippet:
        services.viewModel.copyAndDismiss(*row.snippet);
        break;
    case PaletteRowKind::sectionHeader:
        break;
    }
}

void CommandPaletteView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QRectF panel(rect());
    fillRounded(painter, panel, QuickSearchStyle::cornerRadius, QuickSearchStyle::background);
    const qreal line = lineWidth(painter);
    painter.fillRect(QRectF(0, QuickSearchStyle::fieldHeight - line, width(), line),
                     QuickSearchStyle::hairline);
    strokeRounded(painter, panel, QuickSearchStyle::cornerRadius, QuickSearchStyle::stroke);
}

} // namespace vellumry
