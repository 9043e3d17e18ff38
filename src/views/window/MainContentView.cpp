#include "views/window/MainContentView.h"

#include "library/SnippetListViewModel.h"
#include "notifications/NotificationCenter.h"
#include "views/common/AlertCard.h"
#include "views/common/CollectionColors.h"
#include "views/common/FocusHeir.h"
#include "views/common/PillToast.h"
#include "views/common/SheetHost.h"
#include "views/list/SnippetListPanelView.h"
#include "views/sidebar/CollectionSidebarView.h"
#include "views/window/ApplicationMenus.h"
#include "views/window/EditorPlaceholder.h"
#include "views/window/EmptyStateView.h"

#include <QApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QStackedLayout>
#include <QTextEdit>
#include <QToolTip>
#include <QUrl>

#include <utility>

namespace vellumry {

namespace {

/// The text that is edited in this widget, be it the field itself or a part of it.
QWidget* textInputOf(QWidget* widget)
{
    for (QWidget* each = widget; each; each = each->parentWidget()) {
        if (qobject_cast<QLineEdit*>(each) || qobject_cast<QTextEdit*>(each) ||
            qobject_cast<QPlainTextEdit*>(each))
            return each;
    }
    return nullptr;
}

} // namespace

MainContentView::MainContentView(const Dependencies& dependencies, QWidget* parent)
    : QWidget(parent), services(dependencies),
      collectionColor(new CollectionColors(services.colors, this)),
      sheetHost(new SheetHost(services.theme, this)),
      pill(new PillToast(services.theme, services.scheduler, this)), columns(new QWidget(this)),
      listPanel(new SnippetListPanelView({services.viewModel, *collectionColor,
                                          services.notifications, services.scheduler,
                                          services.clock, services.theme, services.pasteboard},
                                         columns)),
      sidebarView(new CollectionSidebarView({services.viewModel, *collectionColor,
                                             services.notifications, services.scheduler,
                                             services.theme, *sheetHost, services.openExternally},
                                            columns)),
      editorColumn(new QWidget(columns)),
      placeholder(new EditorPlaceholder(services.theme, editorColumn)),
      emptyState(new EmptyStateView(
          services.theme, [this] { services.viewModel.createSnippet(); }, this)),
      stack(new QStackedLayout(this)),
      applicationMenus(new ApplicationMenus(*sidebarView, services.theme, *this))
{
    layOut();
    observe();
    qApp->installEventFilter(this);
    applyTheme();
    showColumnsOrWelcome();
    showEditor();
    showDeleteConfirmation();
}

MainContentView::~MainContentView()
{
    // The columns give up the focus as they go, after this view is no more than a widget.
    disconnect(qApp, nullptr, this, nullptr);
    qApp->removeEventFilter(this);
}

void MainContentView::layOut()
{
    auto* editorLayout = new QVBoxLayout(editorColumn);
    editorLayout->setContentsMargins(0, 0, 0, 0);
    editorLayout->addWidget(placeholder);

    auto* splitter = new QSplitter(columns);
    splitter->setHandleWidth(0); // the columns draw their lines; five pixels can be taken hold of
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(listPanel);
    splitter->addWidget(editorColumn);
    splitter->setStretchFactor(0, 0);
    splitter->setStretchFactor(1, 1);
    constexpr int plenty = 10'000;
    splitter->setSizes({SnippetListPanelView::firstWidth, plenty});

    auto* row = new QHBoxLayout(columns);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(sidebarView);
    row->addWidget(splitter, 1);

    stack->addWidget(columns);
    stack->addWidget(emptyState);
}

void MainContentView::observe()
{
    SnippetListViewModel& model = services.viewModel;
    using M = SnippetListViewModel;
    // A rename takes a colour along, an import and a deletion change some, too.
    connect(&model, &M::collectionModelsChanged, collectionColor, &CollectionColors::refresh);
    connect(&model, &M::snippetsChanged, this, &MainContentView::showColumnsOrWelcome);
    for (const auto signal :
         {&M::snippetsChanged, &M::unsavedEditsChanged, &M::selectedSnippetIDChanged})
        connect(&model, signal, this, &MainContentView::showEditor);
    connect(&model, &M::showDeleteConfirmationChanged, this,
            &MainContentView::showDeleteConfirmation);

    using N = NotificationCenter;
    const N& notifications = services.notifications;
    connect(&notifications, &N::createSnippet, this, [this] {
        // Keys that come before the new snippet has them are not for the old one.
        resignTextInputs();
        services.viewModel.createSnippet();
    });
    connect(&notifications, &N::importSnippets, this, &MainContentView::importRequested);
    connect(&notifications, &N::exportSnippets, this, &MainContentView::exportRequested);
    connect(&notifications, &N::revealDataInFinder, this,
            [this] { services.openExternally(QUrl::fromLocalFile(services.currentLocation())); });

    connect(sidebarView, &CollectionSidebarView::exportRequested, this,
            &MainContentView::exportCollectionRequested);
    connect(sidebarView, &CollectionSidebarView::keyboardShortcutsRequested, this,
            &MainContentView::keyboardShortcutsRequested);
    connect(sidebarView, &CollectionSidebarView::settingsRequested, this,
            &MainContentView::settingsRequested);

    connect(sheetHost, &SheetHost::presentingChanged, this,
            [this] { applicationMenus->setCovered(sheetHost->isPresenting()); });
    connect(&services.theme, &Theme::changed, this, &MainContentView::applyTheme);
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget*, QWidget* now) { focusMoved(now); });
}

void MainContentView::applyTheme()
{
    const QPalette colors = services.theme.palette();
    setPalette(colors);
    applicationMenus->applyTheme();
    QToolTip::setPalette(colors);
    QToolTip::setFont(services.theme.font(TextStyle::label));
}

void MainContentView::setMenuBar(QMenuBar& bar)
{
    applicationMenus->setBar(bar);
}

bool MainContentView::isWelcoming() const
{
    return stack->currentWidget() == emptyState;
}

void MainContentView::showColumnsOrWelcome()
{
    QWidget* wanted = services.viewModel.snippets().isEmpty() ? emptyState : columns;
    if (stack->currentWidget() != wanted)
        inheritFocus(*stack->currentWidget(), *this);
    stack->setCurrentWidget(wanted);
    // The layout puts what it shows in front of everything else.
    sheetHost->raise();
    pill->raise();
}

void MainContentView::showEditor()
{
    const auto& id = services.viewModel.selectedSnippetID();
    const auto snippet = id ? services.viewModel.effectiveSnippet(*id) : std::nullopt;
    if (panel && snippet && panel->snippetID() == *id)
        return;
    if (SnippetEditorPanel* gone = std::exchange(panel, nullptr)) {
        inheritFocus(*gone, *this);
        gone->hide();
        gone->deleteLater();
        // A text that loses the focus can announce what an input method had begun.
        if (panel)
            return;
    }
    if (snippet) {
        panel = new SnippetEditorPanel(
            services.makeEditor, editorRequest(*snippet),
            [this] { services.viewModel.setNewlyCreatedSnippetID(std::nullopt); }, editorColumn);
        editorColumn->layout()->addWidget(panel);
    }
    placeholder->setVisible(panel == nullptr);
}

SnippetEditorRequest MainContentView::editorRequest(const Snippet& snippet) const
{
    SnippetListViewModel& model = services.viewModel;
    const QString& id = snippet.id();
    return {
        .snippet = snippet,
        .isUnsaved = model.isUnsaved(id),
        .allSnippets = model.snippets(),
        .isNewSnippet = model.newlyCreatedSnippetID() == id,
        .onSave = [&model](const Snippet& edited) { model.updateSnippet(edited); },
        .onDelete = [&model, id] { model.requestDelete(id); },
        .onDuplicate = [&model, id](const QString& title) { model.duplicateSnippet(id, title); },
        .onDirtyChange = [&model](const Snippet& draft) { model.setUnsavedEdit(draft); },
        .onDiscard = [&model, id] { model.clearUnsavedEdit(id); },
        .sheets = sheetHost,
        .colors = collectionColor};
}

void MainContentView::showDeleteConfirmation()
{
    SnippetListViewModel& model = services.viewModel;
    if (!model.showDeleteConfirmation()) {
        sheetHost->dismiss(std::exchange(deleteAlert, nullptr));
        return;
    }
    if (deleteAlert)
        return;
    const auto cancel = [&model] {
        model.setShowDeleteConfirmation(false);
        model.setSnippetIDToDelete(std::nullopt);
    };
    auto* alert = new AlertCard(
        services.theme, {.symbol = QStringLiteral("trash"),
                         .symbolColor = &ColorTokens::danger,
                         .title = QStringLiteral("Delete Snippet"),
                         .message = QStringLiteral("Are you sure you want to delete this snippet?"),
                         .answers = {{QStringLiteral("Cancel"), Button::Kind::secondary, cancel},
                                     {QStringLiteral("Delete"), Button::Kind::danger,
                                      [&model] {
                                          model.setShowDeleteConfirmation(false);
                                          model.confirmDelete();
                                      },
                                      true}}});
    deleteAlert = alert;
    sheetHost->present(alert, {.onCancel = cancel, .firstFocus = alert->firstFocus()});
}

void MainContentView::showImportResult(const QString& symbol, const QString& text)
{
    pill->present(symbol, text);
}

void MainContentView::hideImportResult()
{
    pill->dismiss();
}

void MainContentView::resignTextInputs()
{
    QWidget* focus = window()->focusWidget();
    if (focus && columns->isAncestorOf(focus) && textInputOf(focus))
        setFocus(Qt::OtherFocusReason);
}

void MainContentView::toggleSidebar()
{
    const bool isShown = sidebarView->isVisible();
    if (isShown) {
        inheritFocus(*sidebarView, *this);
        sidebarView->stopKeyboardNav();
    }
    sidebarView->setVisible(!isShown);
}

void MainContentView::focusMoved(QWidget* now)
{
    // Who turns to a text types into it: neither panel takes its arrow keys, unless the pointer is
    // over the panel.
    if (!now || !columns->isAncestorOf(now) || !textInputOf(now))
        return;
    if (sidebarView->allowKeyboardNav())
        sidebarView->stopKeyboardNav();
    if (listPanel->allowKeyboardNav())
        listPanel->stopKeyboardNav();
}

bool MainContentView::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Show && watched == window() && watched != this)
        applyTheme();
    if (event->type() != QEvent::MouseButtonPress || !watched->isWidgetType())
        return false;
    auto* clicked = static_cast<QWidget*>(watched);
    if (columns->isAncestorOf(clicked) && !textInputOf(clicked))
        resignTextInputs();
    return false;
}

} // namespace vellumry
