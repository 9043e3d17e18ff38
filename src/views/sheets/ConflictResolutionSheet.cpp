#include "views/sheets/ConflictResolutionSheet.h"

#include "views/common/Button.h"
#include "views/common/Label.h"
#include "views/common/NoteView.h"
#include "views/common/Strokes.h"
#include "views/common/SymbolView.h"
#include "views/sheets/ConflictFileRow.h"

#include <QPainter>
#include <QVBoxLayout>

#include <utility>

namespace vellumry {

namespace {

constexpr int sheetWidth = 560;
constexpr int margin = 20;
constexpr int ring = SelectableButton::ringRoom;
constexpr int warningSize = 26;

/// A group of rows with lines between them.
class RowGroup final : public QWidget {
public:
    RowGroup(const Theme& look, QWidget* parent) : QWidget(parent), theme(look)
    {
        auto* column = new QVBoxLayout(this);
        column->setContentsMargins(1, 1, 1, 1);
        column->setSpacing(1);
        connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        constexpr int radius = 8;
        QPainter painter(this);
        const ColorTokens& token = theme.colors();
        fillRounded(painter, rect(), radius, token.group);
        strokeRounded(painter, rect(), radius, token.stroke);
        for (int i = 1; i < layout()->count(); ++i)
            painter.fillRect(0, layout()->itemAt(i)->geometry().y() - 1, width(), 1, token.stroke);
    }

private:
    const Theme& theme;
};

QVBoxLayout* insetColumn(QBoxLayout& into, int above)
{
    auto* column = new QVBoxLayout;
    column->setContentsMargins(margin, above, margin, 0);
    column->setSpacing(0);
    into.addLayout(column);
    return column;
}

} // namespace

StrategyOptionRow::StrategyOptionRow(const Theme& theme, ConflictMergeStrategy strategy,
                                     std::function<void()> action, QWidget* parent)
    : OptionRow(
          theme,
          {.symbol = symbol(strategy),
           .title = titleOf(strategy),
           .detail = vellumry::description(strategy),
           .badge = badge(strategy)},
          {.height = 46, .symbolSize = 20, .markSize = 18, .plainMark = QStringLiteral("circle")},
          std::move(action), parent),
      offered(strategy)
{
}

ConflictResolutionSheet::ConflictResolutionSheet(const Dependencies& dependencies, QWidget* parent)
    : ScrollingSheet(dependencies.theme, dependencies.scheduler, sheetWidth, parent),
      theme(dependencies.theme), state(dependencies.scheduler, dependencies.onResolve),
      error(NoteView::forErrors(theme, bodyWidget())),
      ignore(new Button(theme, Button::Kind::secondary, QStringLiteral("Ignore for Now"),
                        footerWidget())),
      resolve(new Button(theme, Button::Kind::primary, QStringLiteral("Resolve Conflict"),
                         footerWidget()))
{
    const QString title = QStringLiteral("Sync Conflict Detected");
    setAccessibleName(title);
    auto* head = new QHBoxLayout;
    head->setContentsMargins(margin, 16, margin, 12);
    head->setSpacing(12);
    head->addWidget(new SymbolView(theme, QStringLiteral("exclamationmark.triangle.fill"),
                                   warningSize, &ColorTokens::warningFill, headerWidget()));
    head->addWidget(
        new Label(theme, TextStyle::sheetTitle, &ColorTokens::textPrimary, title, headerWidget()),
        1);
    header().addLayout(head);

    insetColumn(body(), 0)->addWidget(new NoteView(
        theme, NoteView::Kind::warning,
        {.symbol = QStringLiteral("info.circle.fill"),
         .headline = QStringLiteral("Multiple versions of your data were found"),
         .text = QStringLiteral("This usually happens when changes are made on multiple devices "
                                "before syncing completes.")},
        bodyWidget()));
    buildFiles(dependencies.conflicts, dependencies.fileViewer);
    buildStrategies();
    error->setContentsMargins(0, 6 - ring, 0, 0);
    insetColumn(body(), 0)->addWidget(error);
    body().addSpacing(14 - ring);
    body().addStretch();
    addFooter(nullptr, {ignore, resolve});

    resolve->setDefault(true);
    connect(ignore, &Button::clicked, &state, &ConflictChoice::ignore);
    connect(resolve, &Button::clicked, &state, &ConflictChoice::resolveConflict);
    connect(&state, &ConflictChoice::changed, this, &ConflictResolutionSheet::showState);
    connect(&state, &ConflictChoice::dismissed, this, dependencies.onDismiss);
    showState();
}

void ConflictResolutionSheet::buildFiles(const QList<ConflictFile>& conflicts,
                                         FileViewer& fileViewer)
{
    auto* heading = new QHBoxLayout;
    heading->setSpacing(7);
    heading->addWidget(new SymbolView(theme, QStringLiteral("doc.badge.ellipsis"), 16,
                                      &ColorTokens::textSecondary, bodyWidget()));
    heading->addWidget(new Label(theme, TextStyle::bodyStrong, &ColorTokens::textPrimary,
                                 QStringLiteral("Conflict Files (%1)").arg(conflicts.size()),
                                 bodyWidget()),
                       1);
    QVBoxLayout* column = insetColumn(body(), 16);
    column->addLayout(heading);
    column->addSpacing(6);
    auto* group = new RowGroup(theme, bodyWidget());
    for (const ConflictFile& conflict : conflicts) {
        auto* row = new ConflictFileRow(
            theme, conflict, fileViewer, [this, id = conflict.id] { state.toggle(id); }, group);
        group->layout()->addWidget(row);
        files.push_back(row);
    }
    column->addWidget(group);
}

void ConflictResolutionSheet::buildStrategies()
{
    insetColumn(body(), 14)
        ->addWidget(new Label(theme, TextStyle::bodyStrong, &ColorTokens::textPrimary,
                              QStringLiteral("Resolution Strategy"), bodyWidget()));
    auto* column = new QVBoxLayout;
    column->setContentsMargins(margin - ring, 6 - ring, margin - ring, 0);
    column->setSpacing(0);
    for (const ConflictMergeStrategy strategy : allConflictMergeStrategies) {
        auto* row = new StrategyOptionRow(
            theme, strategy, [this, strategy] { state.selectStrategy(strategy); }, bodyWidget());
        column->addWidget(row);
        strategies.push_back(row);
    }
    body().addLayout(column);
}

QWidget* ConflictResolutionSheet::firstFocus() const
{
    return resolve;
}

void ConflictResolutionSheet::showState()
{
    for (ConflictFileRow* row : files)
        row->setExpanded(state.expandedConflictID() == row->conflict().id);
    for (StrategyOptionRow* row : strategies)
        row->setSelected(state.selectedStrategy() == row->strategy());
    resolve->setEnabled(!state.isProcessing());
    resolve->setText(state.isProcessing() ? QStringLiteral("Resolving...")
                                          : QStringLiteral("Resolve Conflict"));
    resolve->updateGeometry();
    error->setText(state.errorMessage().value_or(QString()));
    error->setVisible(state.errorMessage().has_value());
}

} // namespace vellumry
