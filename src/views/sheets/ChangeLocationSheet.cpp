#include "views/sheets/ChangeLocationSheet.h"

#include "views/common/Button.h"
#include "views/common/Icon.h"
#include "views/common/Label.h"
#include "views/common/NoteView.h"
#include "views/common/PlainText.h"
#include "views/common/Strokes.h"
#include "views/common/TextPainting.h"
#include "views/common/WrappingLabel.h"
#include "views/sheets/CustomLocationChooser.h"
#include "views/sheets/MigrationProgressView.h"

#include <QEvent>
#include <QPainter>
#include <QVBoxLayout>

#include <initializer_list>

namespace vellumry {

namespace {

constexpr int sheetWidth = 520;
constexpr int margin = 20;
constexpr int ring = SelectableButton::ringRoom;

/// The folder of the library at present, which is not to be chosen here.
class CurrentLocation final : public QWidget {
public:
    CurrentLocation(const Theme& look, const QString& shownPath, QWidget* parent)
        : QWidget(parent), theme(look), path(shownPath)
    {
        setAccessibleName(path);
        setToolTip(toolTipText(path));
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        connect(&theme, &Theme::changed, this, [this] {
            updateGeometry();
            update();
        });
    }

    [[nodiscard]] QSize sizeHint() const override
    {
        return {0, theme.rowHeight(designedHeight, TextStyle::path)};
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        const ColorTokens& token = theme.colors();
        fillRounded(painter, rect(), radius, token.group);
        strokeRounded(painter, rect(), radius, token.stroke);
        constexpr int padding = 12;
        constexpr int symbolSize = 16;
        constexpr int gap = 10;
        Icon(QStringLiteral("folder.fill"))
            .paint(painter, {padding, (height() - symbolSize) / 2.0}, symbolSize,
                   token.textSecondary);
        const int x = padding + symbolSize + gap;
        paintLine(painter, QRectF(x, 0, width() - x - padding, height()), path,
                  theme.font(TextStyle::path), token.textSecondary);
    }

private:
    static constexpr int designedHeight = 40;
    static constexpr int radius = 8;

    const Theme& theme;
    QString path;
};

} // namespace

ChangeLocationSheet::ChangeLocationSheet(const Dependencies& dependencies, QWidget* parent)
    : ScrollingSheet(dependencies.theme, dependencies.scheduler, sheetWidth, parent),
      theme(dependencies.theme), homeFolder(dependencies.homeFolder),
      onDismiss(dependencies.onDismiss), state(dependencies.choice),
      close(addTitleWithClose(QStringLiteral("Change Data Location"))),
      remark(new NoteView(
          theme, NoteView::Kind::information,
          {.symbol = QStringLiteral("info.circle.fill"),
           .text = QStringLiteral("Your data will be copied to the new location.\n"
                                  "After successful transfer, the old location will be cleared.")},
          bodyWidget())),
      error(NoteView::forErrors(theme, bodyWidget())),
      moving(new MigrationProgressView(theme, bodyWidget())),
      cancelling(
          new Button(theme, Button::Kind::secondary, QStringLiteral("Cancel"), footerWidget())),
      move(new Button(theme, Button::Kind::primary, QStringLiteral("Move Data"), footerWidget()))
{
    setAccessibleName(QStringLiteral("Change Data Location"));
    state.appear();
    build();
    move->setDefault(true);
    connect(close, &Button::clicked, this, &ChangeLocationSheet::cancel);
    connect(cancelling, &Button::clicked, this, &ChangeLocationSheet::cancel);
    connect(move, &Button::clicked, &state, &LocationChoice::applyChanges);
    connect(&state, &LocationChoice::changed, this, &ChangeLocationSheet::showState);
    connect(&state, &LocationChoice::finished, this, onDismiss);
    showState();
}

void ChangeLocationSheet::build()
{
    auto* column = new QVBoxLayout;
    column->setContentsMargins(margin - ring, 0, margin - ring, 16);
    column->setSpacing(0);
    body().addLayout(column);
    body().addStretch();
    const auto inset = [&](std::initializer_list<QWidget*> widgets, int above) {
        auto* row = new QVBoxLayout;
        row->setContentsMargins(ring, above, ring, 0);
        row->setSpacing(0);
        for (QWidget* widget : widgets)
            row->addWidget(widget);
        column->addLayout(row);
    };
    inset({new Label(theme, TextStyle::bodyStrong, &ColorTokens::textPrimary,
                     QStringLiteral("Current Location"), bodyWidget())},
          0);
    inset({new CurrentLocation(theme, state.currentLocationDisplayName(), bodyWidget())}, 8);
    inset({new Label(theme, TextStyle::bodyStrong, &ColorTokens::textPrimary,
                     QStringLiteral("Select New Location"), bodyWidget())},
          16);
    inset({new WrappingLabel(
              theme, TextStyle::label, &ColorTokens::textSecondary,
              QStringLiteral("Choose a location for your snippets. Cloud drive folders enable "
                             "automatic sync across devices."),
              bodyWidget())},
          2);
    column->addSpacing(8 - ring);
    for (const DetectedCloudDrive& drive : state.detectedDrives()) {
        auto* row = new CloudDriveSelectionRow(
            theme, drive, homeFolder,
            [this, path = drive.programFolderPath()] { state.select(path); }, bodyWidget());
        column->addWidget(row);
        drives.push_back(row);
    }
    local = new LocalLocationRowWithChoose(
        theme, state.defaultLocation(),
        {.isCloudDrivePath = [this](const QString& path) { return state.isCloudDrivePath(path); },
         .onSelectDefault = [this] { state.select(state.defaultLocation()); },
         .onSelectCustom = [this] { state.select(*state.customSelectedPath()); },
         .onChoose = [this] { state.chooseCustomFolder(); }},
        bodyWidget());
    column->addWidget(local);
    // One of them at a time.
    inset({remark, error, moving}, 4);
    addFooter(nullptr, {cancelling, move});
}

QWidget* ChangeLocationSheet::firstFocus() const
{
    return drives.empty() ? static_cast<QWidget*>(&local->defaultRow()) : drives.front();
}

void ChangeLocationSheet::cancel()
{
    if (!state.isMigrating())
        onDismiss();
}

void ChangeLocationSheet::showState()
{
    const bool isIdle = !state.isMigrating();
    for (qsizetype i = 0; i < state.detectedDrives().size(); ++i) {
        CloudDriveSelectionRow* row = drives[size_t(i)];
        row->setSelected(state.selectedPath() == state.detectedDrives().at(i).programFolderPath());
        row->setEnabled(isIdle);
    }
    local->setPaths({.customPath = state.customSelectedPath(),
                     .selectedPath = state.selectedPath(),
                     .homeFolder = homeFolder});
    local->setEnabled(isIdle);
    close->setEnabled(isIdle);
    cancelling->setEnabled(isIdle);
    move->setEnabled(isIdle && state.selectedPath());
    move->setText(isIdle ? QStringLiteral("Move Data") : QStringLiteral("Moving..."));
    move->updateGeometry();

    const bool hasError = isIdle && state.errorMessage();
    const bool isNews = isIdle ? hasError && error->isHidden() : moving->isHidden();
    moving->setProgress(state.migrationProgress());
    error->setText(state.errorMessage().value_or(QString()));
    moving->setVisible(!isIdle);
    error->setVisible(hasError);
    remark->setVisible(isIdle && !hasError);
    if (isNews)
        reveal(isIdle ? static_cast<QWidget*>(error) : moving);
}

void ChangeLocationSheet::showEvent(QShowEvent* event)
{
    ScrollingSheet::showEvent(event);
    window()->installEventFilter(this);
}

bool ChangeLocationSheet::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Close && watched == window() && state.isMigrating()) {
        event->ignore();
        return true;
    }
    return ScrollingSheet::eventFilter(watched, event);
}

} // namespace vellumry
