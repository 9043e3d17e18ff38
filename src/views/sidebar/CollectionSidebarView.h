#pragma once

#include "core/Scheduler.h"
#include "views/common/Theme.h"
#include "views/sidebar/CollectionDropDelegate.h"
#include "views/sidebar/CollectionRowView.h"

#include <QHash>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <map>
#include <optional>

class QKeyEvent;
class QMenu;
class QScrollArea;
class QUrl;

namespace vellumry {

class Button;
class CollectionColors;
class CollectionDialogs;
struct CustomColorPickerState;
class EdgeScroll;
class LiftedPicture;
class NewCollectionTextField;
class NotificationCenter;
class OverlayScrollBar;
class SheetHost;
class SidebarHeader;
class SnippetListViewModel;

/// The left column of the main window: the pseudo-collections, the collections with all that one
/// does to them, and the way to the shortcuts and settings. Main thread only.
class CollectionSidebarView : public QWidget {
    Q_OBJECT

public:
    static constexpr int sidebarWidth = 240;

    /// What the view works with; all outlive it.
    struct Dependencies {
        SnippetListViewModel& viewModel;
        CollectionColors& colors;
        NotificationCenter& notifications;
        Scheduler& scheduler;
        const Theme& theme;
        SheetHost& sheets;
        std::function<void(const QUrl&)> openExternally;
    };

    /// The row under the pointer.
    struct HoveredItem {
        enum class Kind { all, unsaved, collection };
        Kind kind = Kind::all;
        QString name; ///< of a collection

        friend bool operator==(const HoveredItem&, const HoveredItem&) = default;
    };

    explicit CollectionSidebarView(const Dependencies& dependencies, QWidget* parent = nullptr);
    ~CollectionSidebarView() override;

    /// The menu that the header's button opens; without one there is no button. Not owned.
    void setApplicationMenu(QMenu* menu);
    void openApplicationMenu();

    // State

    [[nodiscard]] bool isHovered() const { return hovered; }
    [[nodiscard]] bool allowKeyboardNav() const { return allowsKeys; }
    [[nodiscard]] bool listPrefersFocus() const { return listPrefersKeys; }
    [[nodiscard]] const std::optional<HoveredItem>& hoveredItem() const { return hoveredRow; }
    [[nodiscard]] bool isAddingNewCollection() const;
    [[nodiscard]] const std::optional<QString>& collectionToRename() const;
    [[nodiscard]] const std::optional<QString>& collectionToDelete() const;
    [[nodiscard]] const std::optional<QString>& draggingCollection() const { return dragged; }
    [[nodiscard]] const CustomColorPickerState& colorPickerState() const;
    /// Takes the keys away from the sidebar: the person has turned to a text.
    void stopKeyboardNav();

    // Parts

    [[nodiscard]] CollectionRowView* allRow() const { return allSnippetsRow; }
    /// None while there are no drafts.
    [[nodiscard]] CollectionRowView* unsavedRow() const;
    /// None for a collection that there is not.
    [[nodiscard]] CollectionRowView* collectionRow(const QString& name) const;
    [[nodiscard]] QStringList collectionNames() const { return names; }
    [[nodiscard]] Button* addButton() const { return add; }
    [[nodiscard]] Button* shortcutsButton() const { return shortcuts; }
    [[nodiscard]] Button* settingsButton() const { return settings; }
    [[nodiscard]] Button* brandButton() const;
    [[nodiscard]] Button* menuButton() const;
    /// The field for a new collection; hidden while none is being added.
    [[nodiscard]] NewCollectionTextField* newCollectionField() const { return newField; }

Q_SIGNALS:
    void exportRequested(const QString& collection);
    void keyboardShortcutsRequested();
    void settingsRequested();

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    class Content;

    void buildFooter();
    void observe();
    void applyTheme();

    void refresh();
    void refreshCollectionRows();
    void hideRow(CollectionRowView& row);
    void stackCollectionRows();
    void showRows();
    void placeRows();
    /// Lets the rows slide to the places that they have after the change.
    void slideRows(const std::function<void()>& change);
    [[nodiscard]] CollectionRowView* selectedRow() const;
    [[nodiscard]] CollectionRowView::Contents contentsOf(const QString& name) const;
    [[nodiscard]] CollectionRowView* makeCollectionRow(const QString& name);
    [[nodiscard]] std::function<void(bool)> hoverOf(const HoveredItem& item);
    void scrollTo(const CollectionRowView& row);

    bool handleKey(const QKeyEvent& event);
    void takeKeys();
    void giveKeysAnd(void (NotificationCenter::*notification)());
    void setKeys(bool allow, bool listPrefers);
    void moveCollectionSelection(qsizetype by);
    void select(const std::function<void()>& selection);

    void startAdding();
    void confirmAddCollection();
    void stopAdding();

    void startDrag(const QString& name, const QPoint& grip);
    void dragTo(const QPoint& screenPosition);
    void endDrag(const QPoint& screenPosition);
    void dropLifted();
    [[nodiscard]] CollectionDropDelegate dropDelegate(const QString& name);
    [[nodiscard]] std::optional<QString> collectionAt(const QPoint& screenPosition) const;

    Dependencies services;
    bool hovered = false;
    bool allowsKeys = false;
    bool listPrefersKeys = false;
    std::optional<HoveredItem> hoveredRow;
    std::optional<QString> dragged;
    std::optional<QString> entered; ///< the row that the drag is over
    LiftedPicture* lifted = nullptr;
    QPoint lastDragPosition;
    bool isRefreshing = false;
    bool hidFocus = false;            ///< since the last refresh, with a row
    bool hadKeysBeforeAdding = false; ///< before the text of a new collection took them

    QStringList names;
    QHash<QString, CollectionRowView*> rows;
    std::map<const QWidget*, int> slidFrom; ///< how far above its place a row starts
    CollectionDialogs* dialogs;
    QVariantAnimation* sliding;

    SidebarHeader* header;
    QWidget* footer;
    Button* shortcuts = nullptr;
    Button* settings = nullptr;
    QScrollArea* area;
    QWidget* content;
    OverlayScrollBar* scrollBar;
    EdgeScroll* edgeScroll;
    Button* add;
    CollectionRowView* allSnippetsRow;
    CollectionRowView* draftsRow;
    NewCollectionTextField* newField;
    int librarySectionY = 0;
    int collectionsSectionY = 0;
};

} // namespace vellumry
