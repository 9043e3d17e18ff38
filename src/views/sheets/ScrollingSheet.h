#pragma once

#include "core/Scheduler.h"
#include "views/common/Theme.h"

#include <QWidget>

#include <optional>

class QScrollArea;
class QVBoxLayout;

namespace vellumry {

class Button;
class OverlayScrollBar;

/// The contents of a sheet: a header, a body that scrolls where the window is too low for it, and a
/// footer under a hairline. An empty header or footer takes no room.
class ScrollingSheet : public QWidget {
    Q_OBJECT

public:
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int wide) const override;

    /// What has the focus when the sheet comes up; none for what Tab reaches first.
    [[nodiscard]] virtual QWidget* firstFocus() const { return nullptr; }
    [[nodiscard]] QScrollArea& scrollArea() const { return *area; }

protected:
    /// Theme and scheduler outlive the sheet.
    ScrollingSheet(const Theme& theme, Scheduler& scheduler, int width, QWidget* parent);

    /// The columns that the sheet's parts are put into; they have no margins or spacing.
    [[nodiscard]] QVBoxLayout& header() const;
    [[nodiscard]] QVBoxLayout& body() const;
    [[nodiscard]] QVBoxLayout& footer() const;
    /// What parts of the body are children of.
    [[nodiscard]] QWidget* bodyWidget() const { return bodyPart; }
    [[nodiscard]] QWidget* headerWidget() const { return headerPart; }
    [[nodiscard]] QWidget* footerWidget() const { return footerPart; }

    /// A footer of the usual measures: something at the left, if anything, and buttons at the
    /// right.
    void addFooter(QWidget* left, std::initializer_list<Button*> buttons, int marginX = 20,
                   int marginY = 12);
    /// The title at the left of the usual header and a close button at its right.
    [[nodiscard]] Button* addTitleWithClose(const QString& title);

    /// The body scrolls when it wants to be higher than this.
    void setMostBodyHeight(int height) { mostBodyHeight = height; }
    /// Gives the whole sheet this height.
    void setWholeHeight(int height) { wholeHeight = height; }
    /// Scrolls a part of the body into view once it has its place.
    void reveal(QWidget* part);

    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void place();
    void applyTheme();

    const Theme& theme;
    int preferredWidth;
    std::optional<int> mostBodyHeight;
    std::optional<int> wholeHeight;
    QWidget* headerPart;
    QScrollArea* area;
    QWidget* bodyPart;
    QWidget* footerPart;
    OverlayScrollBar* scrollBar;
};

} // namespace vellumry
