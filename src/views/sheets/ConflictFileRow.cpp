#include "views/sheets/ConflictFileRow.h"

#include "platform/FileViewer.h"
#include "views/common/Button.h"
#include "views/common/DateText.h"
#include "views/common/Icon.h"
#include "views/common/Label.h"
#include "views/common/NoteView.h"
#include "views/common/PlainText.h"
#include "views/common/Strokes.h"
#include "views/common/TextPainting.h"
#include "views/common/WrappingLabel.h"
#include "views/sheets/DriveLook.h"

#include <QPainter>
#include <QVBoxLayout>

#include <utility>

namespace vellumry {

namespace {

constexpr int rowHeight = 38;
constexpr int padding = 12;
constexpr int gap = 12;
constexpr int tileSide = 26;
constexpr int chevronSize = 14;
constexpr int radius = 8;

QString nameOf(const ConflictFile& conflict)
{
    return conflict.url.section(u'/', -1);
}

} // namespace

class ConflictFileRow::Head final : public SelectableButton {
public:
    Head(const Theme& theme, const ConflictFile& file, QWidget* parent)
        : SelectableButton(theme, nameOf(file), parent), drive(file.cloudDriveType)
    {
        setToolTip(toolTipText(text()));
    }

    [[nodiscard]] QSize sizeHint() const override
    {
        return {0, look().rowHeight(rowHeight, TextStyle::bodyMedium)};
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        const ColorTokens& token = look().colors();
        const QRectF row = rect();
        if (hoverProgress() > 0) {
            QColor fill = token.fill;
            fill.setAlphaF(float(fill.alphaF() * hoverProgress()));
            fillRounded(painter, row, radius, fill);
        }
        paintRing(painter, radius);
        const qreal middle = row.center().y();
        const QRectF tile(padding, middle - tileSide / 2.0, tileSide, tileSide);
        paintTile(painter, look(), tile, drive ? driveSymbol(*drive) : QStringLiteral("doc.fill"),
                  drive ? std::optional(driveColor(*drive)) : std::nullopt);
        const QPointF chevron(row.right() - padding - chevronSize, middle - chevronSize / 2.0);
        Icon(isSelected() ? QStringLiteral("chevron.up") : QStringLiteral("chevron.down"))
            .paint(painter, chevron, chevronSize, token.textTertiary);
        const qreal x = tile.right() + gap;
        paintLine(painter, {x, row.y(), chevron.x() - gap - x, row.height()}, text(),
                  look().font(TextStyle::bodyMedium), token.textPrimary);
    }

private:
    std::optional<CloudDriveType> drive;
};

ConflictFileRow::ConflictFileRow(const Theme& look, const ConflictFile& conflict,
                                 FileViewer& fileViewer, const std::function<void()>& onToggle,
                                 QWidget* parent)
    : QWidget(parent), theme(look), shown(conflict), viewer(fileViewer),
      head(new Head(theme, conflict, this))
{
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(head);
    connect(head, &QAbstractButton::clicked, this, onToggle);
}

QAbstractButton& ConflictFileRow::headLine() const
{
    return *head;
}

void ConflictFileRow::setExpanded(bool isExpanded)
{
    head->setSelected(isExpanded);
    if (isExpanded == this->isExpanded())
        return;
    if (isExpanded) {
        openDetails();
    } else {
        delete std::exchange(details, nullptr);
        reveal = nullptr;
        problem = nullptr;
    }
}

void ConflictFileRow::openDetails()
{
    details = new QWidget(this);
    auto* column = new QVBoxLayout(details);
    constexpr int ring = Button::ringRoom;
    column->setContentsMargins(padding + tileSide + gap, 2, padding - ring, padding - ring);
    column->setSpacing(2);
    const auto line = [&](const QString& text) {
        return new Label(theme, TextStyle::label, &ColorTokens::textSecondary, text, details);
    };
    column->addWidget(line(QStringLiteral("Modified: ") + mediumDateTime(shown.modifiedDate)));
    column->addWidget(line(QStringLiteral("Full path:")));
    auto* row = new QHBoxLayout;
    row->setSpacing(gap - ring);
    auto* path =
        new WrappingLabel(theme, TextStyle::path, &ColorTokens::textPrimary, shown.url, details);
    row->addWidget(path, 1);
    reveal = new Button(theme, Button::Kind::bordered, QStringLiteral("Reveal in Finder"), details,
                        Button::Size::small);
    connect(reveal, &Button::clicked, this, &ConflictFileRow::revealFile);
    row->addWidget(reveal, 0, Qt::AlignBottom);
    column->addLayout(row);
    problem = NoteView::forErrors(theme, details);
    problem->hide();
    column->addWidget(problem);
    layout()->addWidget(details);
    details->show();
}

void ConflictFileRow::revealFile()
{
    problem->hide();
    // The answer may come when the row has been closed.
    viewer.showItem(shown.url, details, [note = problem](const QString& reason) {
        note->setText(QStringLiteral("The file cannot be shown: ") + reason);
        note->show();
    });
}

} // namespace vellumry
