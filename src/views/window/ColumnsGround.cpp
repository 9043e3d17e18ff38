#include "views/window/ColumnsGround.h"

#include "views/common/Strokes.h"
#include "views/common/Theme.h"
#include "views/list/SnippetListPanelView.h"
#include "views/sidebar/CollectionSidebarView.h"

#include <QPainter>
#include <QStyle>

#include <utility>

namespace vellumry {

ColumnsGround::ColumnsGround(const Theme& usedTheme, QWidget* parent)
    : QWidget(parent), theme(usedTheme)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void ColumnsGround::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const ColorTokens& token = theme.colors();
    const qreal line = lineWidth(painter);
    const auto fillColumn = [&](int x, int columnWidth, const QColor& color) {
        const QRect column =
            QStyle::visualRect(layoutDirection(), rect(), {x, 0, columnWidth, height()});
        painter.fillRect(column, color);
        painter.fillRect(QRectF(column.x() + columnWidth - line, 0, line, height()), token.stroke);
    };
    constexpr int besideSidebar = CollectionSidebarView::sidebarWidth;
    constexpr int besideList = besideSidebar + SnippetListPanelView::firstWidth;
    fillColumn(0, besideSidebar, token.sidebar);
    fillColumn(besideSidebar, SnippetListPanelView::firstWidth, token.list);
    painter.fillRect(QStyle::visualRect(layoutDirection(), rect(),
                                        {besideList, 0, width() - besideList, height()}),
                     token.editor);
    if (!std::exchange(isPainted, true))
        QMetaObject::invokeMethod(this, &ColumnsGround::painted, Qt::QueuedConnection);
}

} // namespace vellumry
