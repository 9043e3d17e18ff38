#pragma once

#include "views/common/Theme.h"

#include <QMenu>

#include <functional>

class QActionGroup;

namespace vellumry {

/// The program's menu: symbols or swatches before the texts, in the colours of the theme. The texts
/// that are added are shown as they stand: an ampersand makes no key.
class PopupMenu : public QMenu {
    Q_OBJECT

public:
    /// The theme outlives the menu.
    explicit PopupMenu(const Theme& theme, QWidget* parent = nullptr);
    ~PopupMenu() override;

    QAction* addItem(const QString& symbol, const QString& text, std::function<void()> action);
    /// One that takes something away for good.
    QAction* addDestructiveItem(const QString& symbol, const QString& text,
                                std::function<void()> action);
    /// With a round swatch of the colour.
    QAction* addSwatch(const QColor& color, const QString& text, std::function<void()> action);
    /// One of several, with a round swatch; a mark stands before the chosen one. All items of the
    /// menu then leave room for the marks.
    QAction* addChoice(const QColor& color, const QString& text, bool isChosen,
                       std::function<void()> action);
    PopupMenu* addSubmenu(const QString& symbol, const QString& text);

    [[nodiscard]] bool hasChoices() const { return choices != nullptr; }

    /// The swatch, 12 points wide, as it stands before an item.
    [[nodiscard]] static QPixmap swatch(const QColor& color, qreal devicePixelRatio);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    const Theme& theme;
    QActionGroup* choices = nullptr; ///< one of them is checked
};

} // namespace vellumry
