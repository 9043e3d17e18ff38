#pragma once

#include "views/list/SnippetCardView.h"

#include <QListView>
#include <QVariantAnimation>

#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace vellumry {

class EdgeScroll;
class LiftedPicture;
class OverlayScrollBar;
class Scheduler;
class SnippetListModel;
class SnippetListViewModel;

/// The scrolling cards. Only the cards that are in sight are ever looked at, and a change of the
/// list costs no more than one pass over it for the places of the cards. Hover, selection and drag
/// are told to the owner, who decides. Main thread only.
class SnippetCardListView : public QListView {
    Q_OBJECT

public:
    /// What the list works with; all outlive it.
    struct Dependencies {
        SnippetListViewModel& viewModel;
        CollectionColors& colors;
        Scheduler& scheduler;
        const Clock& clock;
        const Theme& theme;
    };

    explicit SnippetCardListView(const Dependencies& dependencies, QWidget* parent = nullptr);
    ~SnippetCardListView() override;

    /// Whether the list has the keys, which its selected card shows.
    void setLit(bool lit);
    /// The card that shows "Copied"; it comes and goes softly.
    void setCopied(const std::optional<QString>& snippetID);
    /// The card whose place stands open.
    void setDragging(const std::optional<QString>& snippetID);
    /// Brings the selected card into sight, at once.
    void revealSelection();
    /// Lets the cards slide to the places that they have after the change.
    void slideCards(const std::function<void()>& change);

    [[nodiscard]] std::optional<QString> hoveredID() const;
    /// The card's place in the viewport; empty for a snippet that is not listed.
    [[nodiscard]] QRect cardRect(const QString& snippetID) const;
    /// The snippet whose card, or the gap below it, is there.
    [[nodiscard]] std::optional<QString> snippetAt(const QPoint& viewportPosition) const;
    [[nodiscard]] OverlayScrollBar& scrollHandle() const { return *scrollBar; }

    [[nodiscard]] QRect visualRect(const QModelIndex& index) const override;
    [[nodiscard]] QModelIndex indexAt(const QPoint& position) const override;
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
    void doItemsLayout() override;

Q_SIGNALS:
    void clicked(const QString& snippetID);
    void menuRequested(const QString& snippetID, const QPoint& screenPosition);
    void dragStarted(const QString& snippetID);
    /// The dragged card has come to this one.
    void dragEntered(const QString& snippetID);
    /// The dragged card was let go, over this one or beside the cards.
    void dropped(const std::optional<QString>& snippetID);
    void tabFocusReceived();

protected:
    void paintEvent(QPaintEvent* event) override;
    void updateGeometries() override;
    bool viewportEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void hideEvent(QHideEvent* event) override;
    void selectionChanged(const QItemSelection& chosen, const QItemSelection& left) override;

private:
    struct Press {
        QString snippetID;
        QPoint position;
    };

    void applyTheme();
    void measure();
    void measureAnew();
    [[nodiscard]] int contentHeight() const;
    [[nodiscard]] int rowAt(int contentY) const;
    [[nodiscard]] QRect rectOfRow(int row) const;
    [[nodiscard]] int slideOf(const QString& snippetID, int row) const;
    void syncCurrentIndex();
    void hoverAt(const QPoint& position);
    void setHovered(const std::optional<QString>& snippetID);
    void beginDrag();
    void dragTo(const QPoint& screenPosition);
    void endDrag();
    void runFade(QVariantAnimation& fade, bool in, std::chrono::milliseconds time);
    [[nodiscard]] SnippetCardView::Contents contentsOf(int row) const;

    Dependencies services;
    SnippetCardView cards;
    SnippetListModel* rows;
    OverlayScrollBar* scrollBar;
    EdgeScroll* edgeScroll;
    /// Where each card begins, from the top of the first one, and, last, where the next one would.
    std::vector<int> tops{0};
    bool isMeasured = false;
    qreal measuredScale = 0; ///< the size of the text that `tops` are for

    bool isLit = false;
    std::optional<QString> hovered;
    std::optional<QString> leftHover; ///< the card that is losing its hover
    QVariantAnimation* hoverFade;
    std::optional<QString> copied; ///< also while it goes
    QVariantAnimation* copiedFade;
    std::optional<QString> dragging;
    std::optional<Press> pressed;
    LiftedPicture* lifted = nullptr;
    std::optional<QString> entered;
    QPoint lastDragPosition;
    std::map<QString, int> slidFrom; ///< where cards were, from the top of the contents
    QVariantAnimation* sliding;
};

} // namespace vellumry
