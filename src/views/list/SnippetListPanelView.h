#pragma once

#include "core/Date.h"
#include "core/Scheduler.h"
#include "views/common/Theme.h"

#include <QWidget>

#include <optional>

class QKeyEvent;

namespace vellumry {

class CollectionColors;
class ListHeader;
class ListSearchField;
class NotificationCenter;
class Pasteboard;
class SnippetCardListView;
class SnippetListViewModel;

/// The middle column of the main window: a header, the filter field, and the cards. Main thread
/// only.
class SnippetListPanelView : public QWidget {
    Q_OBJECT

public:
    static constexpr int leastWidth = 280;
    static constexpr int greatestWidth = 320;
    static constexpr int firstWidth = 300;

    /// What the view works with; all outlive it.
    struct Dependencies {
        SnippetListViewModel& viewModel;
        CollectionColors& colors;
        NotificationCenter& notifications;
        Scheduler& scheduler;
        const Clock& clock;
        const Theme& theme;
        Pasteboard& pasteboard;
    };

    explicit SnippetListPanelView(const Dependencies& dependencies, QWidget* parent = nullptr);
    ~SnippetListPanelView() override;

    // State

    [[nodiscard]] std::optional<QString> hoveredID() const;
    [[nodiscard]] bool isSearchFocused() const { return searchHasFocus; }
    [[nodiscard]] bool isHoveredPanel() const { return hovered; }
    [[nodiscard]] bool allowKeyboardNav() const { return allowsKeys; }
    [[nodiscard]] bool sidebarPrefersFocus() const { return sidebarPrefersKeys; }
    [[nodiscard]] const std::optional<QString>& copiedSnippetID() const { return copied; }
    [[nodiscard]] const std::optional<QString>& draggingSnippetID() const { return dragging; }
    /// Takes the keys away from the list: the person has turned to a text.
    void stopKeyboardNav();

    void copySelectedSnippet();

    // Parts

    [[nodiscard]] ListHeader& header() const { return *head; }
    [[nodiscard]] ListSearchField& searchField() const { return *search; }
    [[nodiscard]] SnippetCardListView& cards() const { return *list; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    /// What decides which snippets are listed.
    struct Scope {
        std::optional<QString> collection;
        bool isFilteringUnsaved = false;
        QString searchText;

        friend bool operator==(const Scope&, const Scope&) = default;
    };

    void observe();
    void showHeader();
    void listChanged();
    [[nodiscard]] Scope currentScope() const;

    bool handleKey(const QKeyEvent& event);
    bool handlePlainKey(int key);
    void setKeys(bool allow);
    void giveKeysToSidebar();
    void focusSearchField();
    void focusListArea();
    void focusFirstResult();
    void focusLastOrFirstResult();
    void focusEditorArea(void (NotificationCenter::*notification)());
    void takeListKeys();
    [[nodiscard]] bool isSelectionListed() const;
    void selectFirst();

    void showMenu(const QString& snippetID, const QPoint& screenPosition);
    void drop(const std::optional<QString>& snippetID);

    Dependencies services;
    bool searchHasFocus = false;
    bool hovered = false;
    bool allowsKeys = false;
    bool sidebarPrefersKeys = false;
    std::optional<QString> copied;
    std::optional<QString> dragging;
    Scope scope;

    ListHeader* head;
    ListSearchField* search;
    SnippetCardListView* list;
};

} // namespace vellumry
