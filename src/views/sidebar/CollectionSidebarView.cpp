#include "views/sidebar/CollectionSidebarView.h"

#include "core/Text.h"
#include "library/SnippetListViewModel.h"
#include "notifications/NotificationCenter.h"
#include "views/common/AccessibleRole.h"
#include "views/common/Button.h"
#include "views/common/CollectionColors.h"
#include "views/common/EdgeScroll.h"
#include "views/common/FocusHeir.h"
#include "views/common/KeyEventMonitor.h"
#include "views/common/LiftedPicture.h"
#include "views/common/Motion.h"
#include "views/common/OverlayScrollBar.h"
#include "views/common/PopupMenu.h"
#include "views/common/Strokes.h"
#include "views/common/TextPainting.h"
#include "views/sidebar/CollectionDialogs.h"
#include "views/sidebar/NewCollectionTextField.h"
#include "views/sidebar/SidebarHeader.h"

#include <QBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollArea>
#include <QSet>

#include <algorithm>
#include <utility>

namespace vellumry {

namespace {

using namespace std::chrono_literals;

constexpr int footerHeight = 44;
constexpr int sectionHeight = 28;
constexpr int sectionGap = 12;
constexpr int sectionX = 16;
constexpr int sectionRight = 10;
constexpr int rowMargin = 8;
constexpr int fieldAbove = 2;
constexpr int fieldBelow = 4;
constexpr int addSide = 24;
constexpr int addSymbol = 14;
constexpr auto focusDelay = 100ms;
constexpr auto menuDelay = 100ms; ///< so that a menu has closed
constexpr auto slideTime = 200ms;

} // namespace

/// The scrolled rows, with the headings of their sections.
class CollectionSidebarView::Content final : public QWidget {
public:
    explicit Content(CollectionSidebarView& view) : sidebar(view)
    {
        setAccessibleRole(*this, QAccessible::List);
        setAccessibleName(QStringLiteral("Collections"));
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        const Theme& theme = sidebar.services.theme;
        const auto heading = [&](int y, const QString& text) {
            paintLine(painter, QRectF(sectionX, y, width() - 2.0 * sectionX, sectionHeight), text,
                      theme.font(TextStyle::section), theme.colors().textTertiary);
        };
        heading(sidebar.librarySectionY, QStringLiteral("LIBRARY"));
        heading(sidebar.collectionsSectionY, QStringLiteral("COLLECTIONS"));
    }

private:
    CollectionSidebarView& sidebar;
};

CollectionSidebarView::CollectionSidebarView(const Dependencies& dependencies, QWidget* parent)
    : QWidget(parent), services(dependencies),
      dialogs(new CollectionDialogs({services.viewModel, services.colors, services.scheduler,
                                     services.theme, services.sheets},
                                    this)),
      sliding(new QVariantAnimation(this)),
      header(new SidebarHeader(services.theme, services.openExternally, this)),
      footer(new QWidget(this)), area(new QScrollArea(this)), content(new Content(*this)),
      scrollBar(new OverlayScrollBar(*area, {}, services.scheduler)),
      edgeScroll(new EdgeScroll(*area, [this] { dragTo(lastDragPosition); })),
      add(Button::withSymbol(services.theme, QStringLiteral("plus"),
                             QStringLiteral("New Collection"), content)),
      allSnippetsRow(new CollectionRowView(
          services.theme,
          {.onSelect =
               [this] { select([this] { services.viewModel.selectCollection(std::nullopt); }); },
           .onHoverChange = hoverOf({HoveredItem::Kind::all, {}}),
           .onTabFocus = [this] { takeKeys(); }},
          content)),
      draftsRow(new CollectionRowView(
          services.theme,
          {.onSelect = [this] { select([this] { services.viewModel.selectUnsaved(); }); },
           .onHoverChange = hoverOf({HoveredItem::Kind::unsaved, {}}),
           .onTabFocus = [this] { takeKeys(); }},
          content)),
      newField(new NewCollectionTextField(
          services.theme, [this] { confirmAddCollection(); }, [this] { stopAdding(); }, content))
{
    setAccessibleName(QStringLiteral("Collections"));
    setFixedWidth(sidebarWidth);
    buildFooter();
    // Screen readers meet things in the order in which they lie upon each other.
    footer->raise();
    add->raise();
    newField->raise();
    add->setSymbol(QStringLiteral("plus"), addSymbol);
    add->setSide(addSide);
    newField->hide();

    area->setWidget(content);
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFocusPolicy(Qt::NoFocus);
    area->viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
    content->setFocusPolicy(Qt::NoFocus);
    area->viewport()->installEventFilter(this);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 1, 0);
    column->setSpacing(0);
    column->addWidget(header);
    column->addWidget(area, 1);
    column->addWidget(footer);

    sliding->setStartValue(0.0);
    sliding->setEndValue(1.0);
    sliding->setEasingCurve(QEasingCurve::InOutQuad);
    connect(sliding, &QVariantAnimation::valueChanged, this, [this] { placeRows(); });
    connect(sliding, &QVariantAnimation::finished, this, [this] {
        slidFrom.clear();
        placeRows();
    });
    connect(add, &Button::clicked, this, &CollectionSidebarView::startAdding);
    new KeyEventMonitor([this](const QKeyEvent& event) { return handleKey(event); }, this);
    observe();
    applyTheme();
    refresh();
}

CollectionSidebarView::~CollectionSidebarView() = default;

void CollectionSidebarView::buildFooter()
{
    const auto addButton = [this](const QString& symbol, const QString& text) {
        auto* button =
            new Button(services.theme, Button::Kind::ghost, text, footer, Button::Size::small);
        button->setSymbol(symbol);
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        footer->layout()->addWidget(button);
        return button;
    };
    footer->setFixedHeight(footerHeight);
    auto* row = new QHBoxLayout(footer);
    row->setContentsMargins(rowMargin - Button::ringRoom, 1, rowMargin - Button::ringRoom, 0);
    row->setSpacing(0);
    shortcuts = addButton(QStringLiteral("keyboard"), QStringLiteral("Shortcuts"));
    shortcuts->setToolTip(QStringLiteral("Keyboard Shortcuts"));
    settings = addButton(QStringLiteral("gearshape"), QStringLiteral("Settings"));
    connect(shortcuts, &Button::clicked, this, &CollectionSidebarView::keyboardShortcutsRequested);
    connect(settings, &Button::clicked, this, &CollectionSidebarView::settingsRequested);
}

void CollectionSidebarView::observe()
{
    using M = SnippetListViewModel;
    for (const auto signal :
         {&M::snippetsChanged, &M::collectionModelsChanged, &M::unsavedEditsChanged,
          &M::selectedCollectionChanged, &M::isFilteringUnsavedChanged})
        connect(&services.viewModel, signal, this, &CollectionSidebarView::refresh);
    connect(&services.colors, &CollectionColors::changed, this, &CollectionSidebarView::showRows);
    connect(&services.theme, &Theme::changed, this, &CollectionSidebarView::applyTheme);

    using N = NotificationCenter;
    connect(&services.notifications, &N::focusCategorySidebar, this,
            [this] { setKeys(true, false); });
    for (const auto signal : {&N::focusSnippetSearch, &N::focusSnippetList, &N::focusSnippetEditor})
        connect(&services.notifications, signal, this, [this] { setKeys(false, true); });
}

void CollectionSidebarView::applyTheme()
{
    scrollBar->setLook({.handle = services.theme.colors().scrollHandle,
                        .handleHovered = services.theme.colors().scrollHandleHover});
    placeRows();
    update();
    content->update();
}

void CollectionSidebarView::setApplicationMenu(QMenu* menu)
{
    header->setApplicationMenu(menu);
}

void CollectionSidebarView::openApplicationMenu()
{
    header->openApplicationMenu();
}

Button* CollectionSidebarView::brandButton() const
{
    return header->brandButton();
}

Button* CollectionSidebarView::menuButton() const
{
    return header->menuButton();
}

const std::optional<QString>& CollectionSidebarView::collectionToRename() const
{
    return dialogs->collectionToRename();
}

const std::optional<QString>& CollectionSidebarView::collectionToDelete() const
{
    return dialogs->collectionToDelete();
}

const CustomColorPickerState& CollectionSidebarView::colorPickerState() const
{
    return dialogs->colorPickerState();
}

// Rows

CollectionRowView* CollectionSidebarView::unsavedRow() const
{
    return services.viewModel.unsavedEdits().isEmpty() ? nullptr : draftsRow;
}

CollectionRowView* CollectionSidebarView::collectionRow(const QString& name) const
{
    return rows.value(name);
}

bool CollectionSidebarView::isAddingNewCollection() const
{
    return !newField->isHidden();
}

std::function<void(bool)> CollectionSidebarView::hoverOf(const HoveredItem& item)
{
    return [this, item](bool isOver) {
        if (isOver)
            hoveredRow = item;
        else if (hoveredRow == item)
            hoveredRow.reset();
    };
}

void CollectionSidebarView::refresh()
{
    // To read the names can create collections, which is announced in the midst of it.
    if (std::exchange(isRefreshing, true))
        return;
    const QStringList before = std::exchange(names, services.viewModel.collections());
    names.removeDuplicates(); // two collections of one name have one row
    isRefreshing = false;
    refreshCollectionRows();
    if (names != before)
        stackCollectionRows();
    showRows();
    placeRows();
    if (std::exchange(hidFocus, false))
        setKeys(true, listPrefersKeys);
}

void CollectionSidebarView::hideRow(CollectionRowView& row)
{
    hidFocus |= inheritFocus(row, *content);
    row.hide();
}

void CollectionSidebarView::refreshCollectionRows()
{
    for (const QString& name : std::as_const(names)) {
        if (!rows.contains(name))
            rows.insert(name, makeCollectionRow(name));
    }
    const QSet<QString> wanted(names.begin(), names.end());
    for (auto each = rows.begin(); each != rows.end();) {
        if (wanted.contains(each.key())) {
            ++each;
            continue;
        }
        if (dragged == each.key()) {
            dropLifted();
            dragged.reset();
        }
        slidFrom.erase(each.value());
        hideRow(*each.value());
        each.value()->deleteLater();
        each = rows.erase(each);
    }
}

/// Puts the rows in their order for screen readers, too.
void CollectionSidebarView::stackCollectionRows()
{
    for (const QString& name : std::as_const(names))
        rows[name]->raise();
}

CollectionRowView* CollectionSidebarView::makeCollectionRow(const QString& name)
{
    const auto afterMenu = [this](std::function<void()> action) {
        return [this, action = std::move(action)] {
            services.scheduler.after(menuDelay, this, action);
        };
    };
    auto* row = new CollectionRowView(
        services.theme,
        {.onSelect =
             [this, name] { select([this, name] { services.viewModel.selectCollection(name); }); },
         .onHoverChange = hoverOf({HoveredItem::Kind::collection, name}),
         .onRename = afterMenu([this, name] { dialogs->showRename(name); }),
         .onExport = afterMenu([this, name] { Q_EMIT exportRequested(name); }),
         .onDelete = [this, name] { dialogs->showDelete(name); },
         .onColorChange = [this,
                           name](const QString& preset) { services.colors.setColor(name, preset); },
         .onCustomColor = afterMenu([this, name] { dialogs->showColorPicker(name); }),
         .onTabFocus = [this] { takeKeys(); }},
        content);
    connect(row, &CollectionRowView::dragStarted, this,
            [this, name](const QPoint& grip) { startDrag(name, grip); });
    connect(row, &CollectionRowView::dragMoved, this, &CollectionSidebarView::dragTo);
    connect(row, &CollectionRowView::dragEnded, this, &CollectionSidebarView::endDrag);
    row->show();
    return row;
}

CollectionRowView::Contents CollectionSidebarView::contentsOf(const QString& name) const
{
    return {.icon = {},
            .title = name,
            .count = services.viewModel.snippetCount(name),
            .isSelected = services.viewModel.selectedCollection() == name,
            .isFocused = allowsKeys,
            .collectionColor = services.colors.color(name)};
}

void CollectionSidebarView::showRows()
{
    const SnippetListViewModel& model = services.viewModel;
    allSnippetsRow->setContents(
        {.icon = QStringLiteral("square.grid.2x2"),
         .title = QStringLiteral("All Snippets"),
         .count = model.effectiveSnippets().size(),
         .isSelected = !model.selectedCollection() && !model.isFilteringUnsaved(),
         .isFocused = allowsKeys,
         .collectionColor = {}});
    draftsRow->setContents({.icon = QStringLiteral("pencil.circle.fill"),
                            .title = QStringLiteral("Unsaved"),
                            .count = model.unsavedEdits().size(),
                            .isSelected = model.isFilteringUnsaved(),
                            .isFocused = allowsKeys,
                            .iconColor = &ColorTokens::draft,
                            .collectionColor = {}});
    for (const QString& name : std::as_const(names))
        rows[name]->setContents(contentsOf(name));
}

void CollectionSidebarView::slideRows(const std::function<void()>& change)
{
    sliding->stop();
    slidFrom.clear();
    for (const auto& [name, row] : rows.asKeyValueRange())
        slidFrom[row] = row->y();
    change();
    sliding->setDuration(int(animationTime(*this, slideTime).count()));
    sliding->start();
    placeRows(); // where they were, before anything is painted
}

void CollectionSidebarView::placeRows()
{
    const int rowWidth = area->viewport()->width() - 2 * rowMargin;
    const int rowHigh = allSnippetsRow->sizeHint().height();
    int y = 0;
    librarySectionY = y;
    y += sectionHeight;
    allSnippetsRow->setGeometry(rowMargin, y, rowWidth, rowHigh);
    y += rowHigh;
    const bool hasDrafts = !services.viewModel.unsavedEdits().isEmpty();
    if (hasDrafts) {
        draftsRow->show();
        draftsRow->setGeometry(rowMargin, y, rowWidth, rowHigh);
        y += rowHigh;
    } else {
        hideRow(*draftsRow);
    }
    y += sectionGap;
    if (std::exchange(collectionsSectionY, y) != y)
        content->update();
    const QSize addSize = add->sizeHint();
    add->setGeometry(area->viewport()->width() - sectionRight - addSize.width() + Button::ringRoom,
                     y + (sectionHeight - addSize.height()) / 2, addSize.width(), addSize.height());
    y += sectionHeight;
    if (isAddingNewCollection()) {
        const int high = newField->sizeHint().height();
        newField->setGeometry(rowMargin, y + fieldAbove, rowWidth, high);
        y += fieldAbove + high + fieldBelow;
    }
    const bool isSliding = sliding->state() == QAbstractAnimation::Running;
    const qreal left = isSliding ? 1 - sliding->currentValue().toReal() : 0;
    for (const QString& name : std::as_const(names)) {
        CollectionRowView* row = rows[name];
        const auto from = slidFrom.find(row);
        const int shift = from == slidFrom.end() ? 0 : qRound((from->second - y) * left);
        row->setGeometry(rowMargin, y + shift, rowWidth, rowHigh);
        y += rowHigh;
    }
    content->resize(area->viewport()->width(), y + rowMargin);
}

CollectionRowView* CollectionSidebarView::selectedRow() const
{
    const SnippetListViewModel& model = services.viewModel;
    if (model.isFilteringUnsaved())
        return unsavedRow();
    return model.selectedCollection() ? collectionRow(*model.selectedCollection()) : allSnippetsRow;
}

void CollectionSidebarView::scrollTo(const CollectionRowView& row)
{
    area->ensureVisible(0, row.y() + row.height() / 2, 0, row.height() / 2);
}

void CollectionSidebarView::select(const std::function<void()>& selection)
{
    selection();
    setKeys(true, false);
    Q_EMIT services.notifications.focusCategorySidebar();
}

// Keys

void CollectionSidebarView::setKeys(bool allow, bool listPrefers)
{
    allowsKeys = allow;
    listPrefersKeys = listPrefers;
    showRows();
    if (!allow)
        return;
    CollectionRowView* row = selectedRow();
    if (row) {
        row->setFocus(Qt::OtherFocusReason);
        scrollTo(*row);
    } else {
        content->setFocus(Qt::OtherFocusReason);
    }
}

void CollectionSidebarView::takeKeys()
{
    Q_EMIT services.notifications.focusCategorySidebar();
}

void CollectionSidebarView::stopKeyboardNav()
{
    setKeys(false, listPrefersKeys);
}

void CollectionSidebarView::giveKeysAnd(void (NotificationCenter::*notification)())
{
    setKeys(false, true);
    Q_EMIT(services.notifications.*notification)();
}

bool CollectionSidebarView::handleKey(const QKeyEvent& event)
{
    if (!allowsKeys && (!hovered || listPrefersKeys))
        return false;
    if (hasModifier(event))
        return false;
    switch (event.key()) {
    case Qt::Key_Tab:
        giveKeysAnd(&NotificationCenter::focusSnippetSearch);
        return true;
    case Qt::Key_Right:
        giveKeysAnd(&NotificationCenter::focusSnippetList);
        return true;
    case Qt::Key_Down:
        moveCollectionSelection(1);
        return true;
    case Qt::Key_Up:
        moveCollectionSelection(-1);
        return true;
    default:
        return false;
    }
}

void CollectionSidebarView::moveCollectionSelection(qsizetype by)
{
    // "All Snippets" comes first; the drafts are no part of it.
    const QStringList all = services.viewModel.collections();
    const auto& selected = services.viewModel.selectedCollection();
    const qsizetype found = selected ? all.indexOf(*selected) + 1 : 0;
    const qsizetype next = std::clamp<qsizetype>(found + by, 0, all.size());
    services.viewModel.selectCollection(next == 0 ? std::nullopt : std::optional(all.at(next - 1)));
    if (CollectionRowView* row = selectedRow()) {
        if (allowsKeys)
            row->setFocus(Qt::OtherFocusReason);
        scrollTo(*row);
    }
}

// Collections

void CollectionSidebarView::startAdding()
{
    hadKeysBeforeAdding = allowsKeys;
    newField->clear();
    newField->show();
    placeRows();
    services.scheduler.after(focusDelay, this, [this] {
        if (isAddingNewCollection()) {
            newField->setFocus(Qt::OtherFocusReason);
            area->ensureWidgetVisible(newField);
        }
    });
}

void CollectionSidebarView::confirmAddCollection()
{
    const QString text = newField->text();
    const QString name = trimmedHorizontally(text).toString();
    // A name that is taken closes the field without a word.
    if (!name.isEmpty() && services.viewModel.isCollectionNameAvailable(name)) {
        services.viewModel.createEmptyCollection(name);
        services.colors.refresh();
    }
    stopAdding();
}

void CollectionSidebarView::stopAdding()
{
    const bool hadFocus = inheritFocus(*newField, *content);
    newField->clear();
    newField->hide();
    placeRows();
    if (hadFocus && hadKeysBeforeAdding)
        takeKeys();
}

// Drag

void CollectionSidebarView::startDrag(const QString& name, const QPoint& grip)
{
    CollectionRowView* row = rows.value(name);
    if (!row)
        return;
    dragged = name;
    entered = name;
    lifted = new LiftedPicture(services.theme, *row, row->picture(), row->rect(), grip,
                               CollectionRowView::radius);
    row->setOpenPlace(true);
}

std::optional<QString> CollectionSidebarView::collectionAt(const QPoint& screenPosition) const
{
    const QPoint position = content->mapFromGlobal(screenPosition);
    if (!area->viewport()->rect().contains(area->viewport()->mapFromGlobal(screenPosition)) ||
        names.isEmpty())
        return std::nullopt;
    // Rows that slide count where they go to.
    const int rowHigh = allSnippetsRow->height();
    const int first = content->height() - rowMargin - int(names.size()) * rowHigh;
    if (position.y() < first || position.y() >= first + int(names.size()) * rowHigh)
        return std::nullopt;
    return names.at((position.y() - first) / rowHigh);
}

void CollectionSidebarView::dragTo(const QPoint& screenPosition)
{
    if (!lifted)
        return;
    lifted->follow(screenPosition);
    edgeScroll->follow(screenPosition);
    lastDragPosition = screenPosition;
    const auto over = collectionAt(screenPosition);
    if (over == std::exchange(entered, over) || !over)
        return;
    slideRows([&] { dropDelegate(*over).dropEntered(); });
}

void CollectionSidebarView::dropLifted()
{
    edgeScroll->stop();
    if (LiftedPicture* picture = std::exchange(lifted, nullptr))
        picture->putDown();
}

void CollectionSidebarView::endDrag(const QPoint& screenPosition)
{
    dropLifted();
    if (dragged && rows.contains(*dragged))
        rows[*dragged]->setOpenPlace(false);
    if (const auto over = collectionAt(screenPosition))
        dropDelegate(*over).performDrop();
    dragged.reset();
    entered.reset();
}

CollectionDropDelegate CollectionSidebarView::dropDelegate(const QString& name)
{
    return {name, dragged, services.viewModel, [this] { placeRows(); }};
}

// Events

void CollectionSidebarView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const ColorTokens& token = services.theme.colors();
    painter.fillRect(rect(), token.sidebar);
    const qreal line = lineWidth(painter);
    painter.fillRect(QRectF(width() - line, 0, line, height()), token.stroke);
    painter.fillRect(QRectF(0, footer->y(), width() - line, line), token.stroke);
}

void CollectionSidebarView::enterEvent(QEnterEvent*)
{
    hovered = true;
}

void CollectionSidebarView::leaveEvent(QEvent*)
{
    hovered = false;
}

void CollectionSidebarView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    placeRows();
}

void CollectionSidebarView::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    if (lifted)
        endDrag(lastDragPosition);
}

bool CollectionSidebarView::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == area->viewport() && event->type() == QEvent::Resize)
        placeRows();
    return false;
}

} // namespace vellumry
