#include "views/sheets/ExportCollectionPickerView.h"

#include "views/common/Button.h"
#include "views/common/Icon.h"
#include "views/common/Label.h"
#include "views/common/Strokes.h"
#include "views/common/TextPainting.h"
#include "views/sheets/SelectableButton.h"

#include <QPainter>
#include <QStringBuilder>
#include <QVBoxLayout>
#include <QtMath>

#include <algorithm>
#include <utility>

namespace vellumry {

namespace {

constexpr int sheetWidth = 320;
constexpr int margin = 20;
constexpr int rowHeight = 36;
constexpr int rowRadius = 6;
constexpr int padding = 12;
constexpr int gap = 10;
constexpr int markSize = 18;
constexpr int dotSize = 10;
constexpr int listMarginX = 8;
constexpr int listMarginY = 6;
constexpr int mostRows = 8; ///< that are seen at once
constexpr int countHeight = 34;

QString snippetCountText(qsizetype count)
{
    return QStringLiteral("%1 snippet%2")
        .arg(count)
        .arg(count == 1 ? QString() : QStringLiteral("s"));
}

/// A row that has a line above and below it.
class Ruled final : public QWidget {
public:
    Ruled(const Theme& look, QWidget* parent) : QWidget(parent), theme(look)
    {
        connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.fillRect(0, 0, width(), 1, theme.colors().stroke);
        painter.fillRect(0, height() - 1, width(), 1, theme.colors().stroke);
    }

private:
    const Theme& theme;
};

} // namespace

class ExportCollectionPickerView::Row final : public SelectableButton {
public:
    Row(const Theme& theme, const QString& name, const QColor& collectionColor,
        const QString& snippets, QWidget* parent)
        : SelectableButton(theme, name, parent), color(collectionColor), count(snippets)
    {
        setAccessibleName(name % u", " % count);
    }

    [[nodiscard]] QSize sizeHint() const override
    {
        return {0, look().rowHeight(rowHeight, TextStyle::body)};
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        const ColorTokens& token = look().colors();
        const QRectF row = rect();
        QColor fill = token.fill;
        fill.setAlphaF(float(fill.alphaF() * hoverProgress()));
        fillRounded(painter, row, rowRadius, fill);
        paintRing(painter, rowRadius);

        const qreal middle = row.center().y();
        qreal x = row.x() + padding;
        Icon(isSelected() ? QStringLiteral("checkmark.circle.fill") : QStringLiteral("circle"))
            .paint(painter, {x, middle - markSize / 2.0}, markSize,
                   isSelected() ? token.accent : token.textTertiary);
        x += markSize + gap;
        fillRounded(painter, {x, middle - dotSize / 2.0, dotSize, dotSize}, dotSize / 2.0, color);
        x += dotSize + gap;
        const QFont font = look().font(TextStyle::label);
        const qreal wide = std::ceil(QFontMetricsF(font).horizontalAdvance(count)) + 1;
        const qreal right = row.right() - padding;
        paintLine(painter, {right - wide, row.y(), wide, row.height()}, count, font,
                  token.textTertiary, Qt::AlignRight);
        paintLine(painter, {x, row.y(), right - wide - gap - x, row.height()}, text(),
                  look().font(TextStyle::body), token.textPrimary);
    }

private:
    QColor color;
    QString count;
};

ExportCollectionPickerView::ExportCollectionPickerView(Dependencies dependencies, QWidget* parent)
    : ScrollingSheet(dependencies.theme, dependencies.scheduler, sheetWidth, parent),
      services(std::move(dependencies)),
      count(new Label(services.theme, TextStyle::label, &ColorTokens::textSecondary, {},
                      headerWidget())),
      selectAll(
          new Button(services.theme, Button::Kind::link, {}, headerWidget(), Button::Size::small)),
      cancelling(new Button(services.theme, Button::Kind::secondary, QStringLiteral("Cancel"),
                            footerWidget())),
      exporting(new Button(services.theme, Button::Kind::primary, QStringLiteral("Export"),
                           footerWidget()))
{
    setAccessibleName(QStringLiteral("Export Collections"));
    buildHeader();
    auto* column = new QVBoxLayout;
    column->setContentsMargins(listMarginX, listMarginY, listMarginX, listMarginY);
    column->setSpacing(0);
    for (const Collection& collection : std::as_const(services.collections)) {
        auto* row =
            new Row(services.theme, collection.name, services.colorProvider(collection.name),
                    snippetCountText(services.snippetCountProvider(collection.name)), bodyWidget());
        connect(row, &QAbstractButton::clicked, this, [this, name = collection.name] {
            QSet<QString> names = services.selectedCollectionNames;
            if (!names.remove(name))
                names.insert(name);
            change(names);
        });
        column->addWidget(row);
        rows.push_back(row);
    }
    column->addStretch();
    body().addLayout(column);
    setMostBodyHeight(mostRows * rowHeight + 2 * listMarginY);
    addFooter(nullptr, {cancelling, exporting});

    exporting->setDefault(true);
    connect(selectAll, &Button::clicked, this, [this] {
        QSet<QString> names;
        if (!areAllSelected()) {
            for (const Collection& collection : std::as_const(services.collections))
                names.insert(collection.name);
        }
        change(names);
    });
    connect(cancelling, &Button::clicked, this, services.onCancel);
    connect(exporting, &Button::clicked, this, services.onExport);
    showState();
}

void ExportCollectionPickerView::buildHeader()
{
    auto* titles = new QVBoxLayout;
    titles->setContentsMargins(margin, 18, margin, 12);
    titles->setSpacing(2);
    titles->addWidget(new Label(services.theme, TextStyle::sheetTitle, &ColorTokens::textPrimary,
                                QStringLiteral("Export Collections"), headerWidget()));
    titles->addWidget(new Label(services.theme, TextStyle::label, &ColorTokens::textSecondary,
                                QStringLiteral("Select collections to include in the export"),
                                headerWidget()));
    header().addLayout(titles);

    auto* line = new Ruled(services.theme, headerWidget());
    line->setMinimumHeight(countHeight);
    auto* row = new QHBoxLayout(line);
    row->setContentsMargins(margin, 0, padding - Button::ringRoom, 0);
    row->addWidget(count, 1);
    row->addWidget(selectAll);
    header().addWidget(line);
}

QWidget* ExportCollectionPickerView::firstFocus() const
{
    return exporting->isEnabled() ? exporting : selectAll;
}

QAbstractButton* ExportCollectionPickerView::row(const QString& name) const
{
    const auto found =
        std::find_if(rows.begin(), rows.end(), [&](const Row* row) { return row->text() == name; });
    return found == rows.end() ? nullptr : *found;
}

void ExportCollectionPickerView::setSelectedCollectionNames(const QSet<QString>& names)
{
    services.selectedCollectionNames = names;
    showState();
}

void ExportCollectionPickerView::change(const QSet<QString>& names)
{
    setSelectedCollectionNames(names);
    services.onSelectionChange(names);
}

bool ExportCollectionPickerView::areAllSelected() const
{
    return std::all_of(services.collections.begin(), services.collections.end(),
                       [this](const Collection& collection) {
                           return services.selectedCollectionNames.contains(collection.name);
                       });
}

void ExportCollectionPickerView::showState()
{
    const QSet<QString>& names = services.selectedCollectionNames;
    for (Row* row : rows)
        row->setSelected(names.contains(row->text()));
    count->setText(
        QStringLiteral("%1 of %2 selected").arg(names.size()).arg(services.collections.size()));
    selectAll->setText(areAllSelected() ? QStringLiteral("Deselect All")
                                        : QStringLiteral("Select All"));
    selectAll->updateGeometry();
    exporting->setEnabled(!names.isEmpty());
}

} // namespace vellumry
