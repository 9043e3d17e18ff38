#pragma once

#include "core/Date.h"
#include "core/Scheduler.h"
#include "views/common/Theme.h"
#include "views/window/SnippetEditorPanel.h"

#include <QWidget>

#include <functional>

class QMenuBar;
class QStackedLayout;
class QUrl;

namespace vellumry {

class ApplicationMenus;
class CategoryColorService;
class CollectionColors;
class CollectionSidebarView;
class EmptyStateView;
class NotificationCenter;
class Pasteboard;
class PillToast;
class SheetHost;
class SnippetListPanelView;
class SnippetListViewModel;

/// The contents of the main window: three columns, or a welcome where the library is empty, and
/// the sheets, the questions and the toast above them. Holds no state of the library's own: what it
/// shows is what the list model says. Main thread only.
class MainContentView : public QWidget {
    Q_OBJECT

public:
    /// What the view works with; all outlive it.
    struct Dependencies {
        SnippetListViewModel& viewModel;
        CategoryColorService& colors;
        NotificationCenter& notifications;
        Scheduler& scheduler;
        const Clock& clock;
        const Theme& theme;
        Pasteboard& pasteboard;
        MakeSnippetEditor makeEditor;
        std::function<QString()> currentLocation; ///< the data folder
        /// Shows a web page, or a folder in the file manager.
        std::function<void(const QUrl&)> openExternally;
    };

    explicit MainContentView(const Dependencies& dependencies, QWidget* parent = nullptr);
    ~MainContentView() override;

    /// The menu bar of the window, with its menus: ApplicationMenus tells where they show.
    void setMenuBar(QMenuBar& bar);

    /// Shows the result of an import at the bottom while there is one; see PillToast::present.
    void showImportResult(const QString& symbol, const QString& text);
    void hideImportResult();

    /// Ends the editing of a text in the columns, if there is any: its field loses the focus.
    void resignTextInputs();

    /// Hides the sidebar, which has the keys no longer, or shows it.
    void toggleSidebar();

    /// Where sheets are shown over these contents.
    [[nodiscard]] SheetHost& sheets() const { return *sheetHost; }
    /// Changed by whoever stores a colour by another way than the sidebar.
    [[nodiscard]] CollectionColors& collectionColors() const { return *collectionColor; }

    [[nodiscard]] bool isWelcoming() const;
    [[nodiscard]] CollectionSidebarView& sidebar() const { return *sidebarView; }
    [[nodiscard]] SnippetListPanelView& list() const { return *listPanel; }
    [[nodiscard]] EmptyStateView& welcome() const { return *emptyState; }
    [[nodiscard]] ApplicationMenus& menus() const { return *applicationMenus; }
    [[nodiscard]] PillToast& toast() const { return *pill; }
    /// None while the placeholder shows.
    [[nodiscard]] SnippetEditorPanel* editorPanel() const { return panel; }

Q_SIGNALS:
    void importRequested();
    void exportRequested();
    void exportCollectionRequested(const QString& name);
    void keyboardShortcutsRequested();
    void settingsRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void layOut();
    void observe();
    void applyTheme();
    void showColumnsOrWelcome();
    void showEditor();
    [[nodiscard]] SnippetEditorRequest editorRequest(const Snippet& snippet) const;
    void showDeleteConfirmation();
    void focusMoved(QWidget* now);

    Dependencies services;
    CollectionColors* collectionColor;
    SheetHost* sheetHost;
    PillToast* pill;
    QWidget* columns;
    SnippetListPanelView* listPanel; ///< before the sidebar, which is asked first for keys
    CollectionSidebarView* sidebarView;
    QWidget* editorColumn;
    QWidget* placeholder;
    EmptyStateView* emptyState;
    SnippetEditorPanel* panel = nullptr;
    QWidget* deleteAlert = nullptr;
    QStackedLayout* stack;
    ApplicationMenus* applicationMenus;
};

} // namespace vellumry
