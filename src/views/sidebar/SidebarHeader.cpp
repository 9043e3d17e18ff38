#include "views/sidebar/SidebarHeader.h"

#include "views/common/Button.h"
#include "views/common/Icon.h"
#include "views/common/TextPainting.h"

#include <QHBoxLayout>
#include <QMenu>
#include <QPainter>
#include <QUrl>
#include <QtMath>

#include <algorithm>
#include <utility>

namespace vellumry {

namespace {

constexpr int headerHeight = 56;
constexpr int leftMargin = 16;
constexpr int rightMargin = 10;
constexpr int logoSize = 24;
constexpr int logoGap = 9;
constexpr int menuGap = 3;
constexpr int ring = Button::ringRoom;

// To be replaced by the address of the site, once there is one.
constexpr QStringView webSite = u"https://vellumry.example/";

/// The logo and the name, which lead to the web site.
class BrandButton final : public Button {
public:
    BrandButton(const Theme& look, QWidget* parent)
        : Button(look, Kind::ghost, QStringLiteral("Vellumry"), parent), theme(look)
    {
        setCursor(Qt::PointingHandCursor);
    }

    [[nodiscard]] QSize sizeHint() const override
    {
        const qreal name = QFontMetricsF(theme.font(TextStyle::heading)).horizontalAdvance(text());
        const int high = std::max(logoSize, theme.lineHeight(TextStyle::heading));
        return {logoSize + logoGap + qCeil(name) + 1 + 2 * ringRoom, high + 2 * ringRoom};
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        const QRectF face = QRectF(rect()).adjusted(ringRoom, ringRoom, -ringRoom, -ringRoom);
        Icon(QStringLiteral("SidebarLogo"))
            .paint(painter, {face.x(), face.center().y() - logoSize / 2.0}, logoSize, Qt::black);
        paintLine(painter, face.adjusted(logoSize + logoGap, 0, 1, 0), text(),
                  theme.font(TextStyle::heading), theme.colors().textPrimary);
        if (isRingShown())
            paintRing(painter, face, 4);
    }

private:
    const Theme& theme;
};

} // namespace

SidebarHeader::SidebarHeader(const Theme& theme, OpenExternally openExternally, QWidget* parent)
    : QWidget(parent), brand(new BrandButton(theme, this)),
      menu(Button::withSymbol(theme, QStringLiteral("line.3.horizontal"), QStringLiteral("Menu"),
                              this))
{
    setFixedHeight(headerHeight);
    menu->hide();
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(leftMargin - ring, 0, rightMargin - ring, 0);
    row->addWidget(brand);
    row->addStretch();
    row->addWidget(menu);
    connect(brand, &Button::clicked, this,
            [open = std::move(openExternally)] { open(QUrl(webSite.toString())); });
    connect(menu, &Button::clicked, this, &SidebarHeader::openApplicationMenu);
}

void SidebarHeader::setApplicationMenu(QMenu* newMenu)
{
    applicationMenu = newMenu;
    menu->setVisible(newMenu != nullptr);
}

void SidebarHeader::openApplicationMenu()
{
    if (applicationMenu)
        applicationMenu->popup(menu->mapToGlobal(QPoint(ring, menu->height() - ring + menuGap)));
}

} // namespace vellumry
