#include "views/list/SnippetListPanelView.h"

#include "library/SnippetListViewModel.h"
#include "notifications/NotificationCenter.h"
#include "platform/Pasteboard.h"
#include "views/common/Button.h"
#include "views/common/CollectionColors.h"
#include "views/common/KeyEventMonitor.h"
#include "views/common/PopupMenu.h"
#include "views/common/Strokes.h"
#include "views/list/ListHeader.h"
#include "views/list/ListKeyHandlingTextField.h"
#include "views/list/ListSearchField.h"
#include "views/list/SnippetCardListView.h"
#include "views/list/SnippetDropDelegate.h"

#include <QBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>

namespace vellumry {

namespace {

using namespace std::chrono_literals;

constexpr int fieldMargin = 12;
constexpr int fieldBelow = 4;
constexpr auto copiedTime = 800ms;

} // namespace

SnippetListPanelView::SnippetListPanelView(const Dependencies& dependencies, QWidget* parent)
    : QWidget(parent), services(dependencies), scope(currentScope()),
      head(new ListHeader(services.theme, this)),
      search(new ListSearchField(
          services.theme, services.scheduler,
          {.onTextChanged = [this](const QString& text) { services.viewModel.setSearchText(text); },
           .onReturn = [this] { focusFirstResult(); },
           .onTab = [this] { focusFirstResult(); },
           .onShiftTab = [this] { giveKeysToSidebar(); },
           .onEscape =
               [this] {
                   services.viewModel.setSearchText({});
                   focusLastOrFirstResult();
               },
           .onFocusChange =
               [this](bool hasFocus) {
                   searchHasFocus = hasFocus;
                   if (hasFocus)
                       setKeys(false);
               }},
          this)),
      list(new SnippetCardListView(
          {services.viewModel, services.colors, services.scheduler, services.clock, services.theme},
          this))
{
    setMinimumWidth(leastWidth);
    setMaximumWidth(greatestWidth);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 1, 0);
    column->setSpacing(0);
    column->addWidget(head);
    auto* field = new QHBoxLayout;
    field->setContentsMargins(fieldMargin, 0, fieldMargin, fieldBelow);
    field->addWidget(search);
    column->addLayout(field);
    column->addWidget(list, 1);

    new KeyEventMonitor([this](const QKeyEvent& event) { return handleKey(event); }, this);
    observe();
    showHeader();
    search->updateText(services.viewModel.searchText());
}

SnippetListPanelView::~SnippetListPanelView() = default;

void SnippetListPanelView::observe()
{
    SnippetListViewModel& model = services.viewModel;
    using M = SnippetListViewModel;
    connect(&model, &M::filteredSnippetsChanged, this, &SnippetListPanelView::listChanged);
    connect(&model, &M::selectedCollectionChanged, this, &SnippetListPanelView::showHeader);
    connect(&model, &M::searchTextChanged, this,
            [this] { search->updateText(services.viewModel.searchText()); });
    connect(&services.colors, &CollectionColors::changed, this, &SnippetListPanelView::showHeader);
    connect(&services.theme, &Theme::changed, this, qOverload<>(&QWidget::update));
    connect(head->addButton(), &Button::clicked, this,
            [this] { services.viewModel.createSnippet(); });

    connect(list, &SnippetCardListView::clicked, this, [this](const QString& id) {
        services.viewModel.setSelectedSnippetID(id);
        Q_EMIT services.notifications.focusSnippetList();
    });
    connect(list, &SnippetCardListView::tabFocusReceived, this,
            [this] { Q_EMIT services.notifications.focusSnippetList(); });
    connect(list, &SnippetCardListView::menuRequested, this, &SnippetListPanelView::showMenu);
    connect(list, &SnippetCardListView::dragStarted, this, [this](const QString& id) {
        dragging = id;
        list->setDragging(id);
    });
    connect(list, &SnippetCardListView::dragEntered, this, [this](const QString& id) {
        list->slideCards([&] {
            SnippetDropDelegate{id, dragging, services.viewModel}.dropEntered();
        });
    });
    connect(list, &SnippetCardListView::dropped, this, &SnippetListPanelView::drop);

    using N = NotificationCenter;
    connect(&services.notifications, &N::focusSnippetSearch, this,
            &SnippetListPanelView::focusSearchField);
    connect(&services.notifications, &N::focusSnippetList, this,
            &SnippetListPanelView::focusListArea);
    for (const auto signal : {&N::focusCategorySidebar, &N::focusSnippetEditor})
        connect(&services.notifications, signal, this, [this] { setKeys(false); });
}

std::optional<QString> SnippetListPanelView::hoveredID() const
{
    return list->hoveredID();
}

SnippetListPanelView::Scope SnippetListPanelView::currentScope() const
{
    const SnippetListViewModel& model = services.viewModel;
    return {model.selectedCollection(), model.isFilteringUnsaved(), model.searchText()};
}

void SnippetListPanelView::listChanged()
{
    showHeader();
    // Another list begins at its top; the same one stays where it was.
    const Scope now = currentScope();
    if (now == scope)
        return;
    scope = now;
    list->verticalScrollBar()->setValue(0);
    list->revealSelection();
}

void SnippetListPanelView::showHeader()
{
    const auto& collection = services.viewModel.selectedCollection();
    head->setContents({.title = collection.value_or(QStringLiteral("All Snippets")),
                       .collectionColor = collection
                                              ? std::optional(services.colors.color(*collection))
                                              : std::nullopt,
                       .count = services.viewModel.filteredSnippets().size()});
}

// Keys

void SnippetListPanelView::setKeys(bool allow)
{
    allowsKeys = allow;
    list->setLit(allow);
}

void SnippetListPanelView::stopKeyboardNav()
{
    setKeys(false);
}

void SnippetListPanelView::giveKeysToSidebar()
{
    setKeys(false);
    sidebarPrefersKeys = true;
    Q_EMIT services.notifications.focusCategorySidebar();
}

void SnippetListPanelView::focusSearchField()
{
    setKeys(false);
    search->focus();
    sidebarPrefersKeys = false;
}

void SnippetListPanelView::takeListKeys()
{
    setKeys(true);
    sidebarPrefersKeys = false;
    list->setFocus(Qt::OtherFocusReason); // which takes it from the filter field
}

bool SnippetListPanelView::isSelectionListed() const
{
    const auto& id = services.viewModel.selectedSnippetID();
    return id && services.viewModel.shownRow(*id) >= 0;
}

void SnippetListPanelView::selectFirst()
{
    const auto& shown = services.viewModel.filteredSnippets();
    if (!shown.isEmpty())
        services.viewModel.setSelectedSnippetID(shown.constFirst().id());
}

void SnippetListPanelView::focusListArea()
{
    takeListKeys();
    if (!isSelectionListed())
        selectFirst();
}

void SnippetListPanelView::focusFirstResult()
{
    takeListKeys();
    selectFirst();
    Q_EMIT services.notifications.focusSnippetList();
}

void SnippetListPanelView::focusLastOrFirstResult()
{
    takeListKeys();
    if (!isSelectionListed())
        selectFirst();
    Q_EMIT services.notifications.focusSnippetList();
}

void SnippetListPanelView::focusEditorArea(void (NotificationCenter::*notification)())
{
    if (!services.viewModel.selectedSnippetID())
        selectFirst();
    setKeys(false);
    Q_EMIT(services.notifications.*notification)();
}

bool SnippetListPanelView::handleKey(const QKeyEvent& event)
{
    if (!allowsKeys && (!hovered || sidebarPrefersKeys))
        return false;
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    const bool isBack = event.key() == Qt::Key_Backtab || event.key() == Qt::Key_Escape;
    if (isBack && modifiers == Qt::ShiftModifier) {
        setKeys(false);
        focusSearchField();
        return true;
    }
    if (event.key() == Qt::Key_C && modifiers == Qt::ControlModifier) {
        copySelectedSnippet();
        return true;
    }
    return !hasModifier(event) && handlePlainKey(event.key());
}

bool SnippetListPanelView::handlePlainKey(int key)
{
    SnippetListViewModel& model = services.viewModel;
    switch (key) {
    case Qt::Key_Tab:
        focusEditorArea(&NotificationCenter::focusSnippetTitle);
        return true;
    case Qt::Key_Escape:
        if (model.searchText().isEmpty())
            giveKeysToSidebar();
        else
            model.setSearchText({});
        return true;
    case Qt::Key_Left:
        giveKeysToSidebar();
        return true;
    case Qt::Key_Right:
        focusEditorArea(&NotificationCenter::focusSnippetEditor);
        return true;
    case Qt::Key_Down:
        model.moveSelectionDown();
        return true;
    case Qt::Key_Up:
        if (model.selectedSnippetID() && model.shownRow(*model.selectedSnippetID()) == 0)
            focusSearchField();
        else
            model.moveSelectionUp();
        return true;
    default:
        return false;
    }
}

// Actions

void SnippetListPanelView::copySelectedSnippet()
{
    SnippetListViewModel& model = services.viewModel;
    if (!isSelectionListed())
        return;
    const QString id = *model.selectedSnippetID();
    // The text as it stands, with its placeholders unfilled.
    services.pasteboard.setString(model.filteredSnippets().at(model.shownRow(id)).content());
    model.incrementUsage(id);
    copied = id;
    list->setCopied(copied);
    services.scheduler.after(copiedTime, this, [this, id] {
        if (copied != id)
            return;
        copied.reset();
        list->setCopied(copied);
    });
}

void SnippetListPanelView::showMenu(const QString& snippetID, const QPoint& screenPosition)
{
    auto* menu = new PopupMenu(services.theme, this);
    menu->addDestructiveItem(QStringLiteral("trash"), QStringLiteral("Delete"),
                             [this, snippetID] { services.viewModel.requestDelete(snippetID); });
    connect(menu, &QMenu::aboutToHide, menu, &QObject::deleteLater);
    menu->popup(screenPosition);
}

void SnippetListPanelView::drop(const std::optional<QString>& snippetID)
{
    if (snippetID)
        SnippetDropDelegate{*snippetID, dragging, services.viewModel}.performDrop();
    dragging.reset();
    list->setDragging(dragging);
}

// Events

void SnippetListPanelView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const ColorTokens& token = services.theme.colors();
    painter.fillRect(rect(), token.list);
    const qreal line = lineWidth(painter);
    painter.fillRect(QRectF(width() - line, 0, line, height()), token.stroke);
}

void SnippetListPanelView::enterEvent(QEnterEvent*)
{
    hovered = true;
    sidebarPrefersKeys = false;
}

void SnippetListPanelView::leaveEvent(QEvent*)
{
    hovered = false;
}

} // namespace vellumry
