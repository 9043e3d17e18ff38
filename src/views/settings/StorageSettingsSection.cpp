#include "views/settings/StorageSettingsSection.h"

#include "notifications/NotificationCenter.h"
#include "platform/FileViewer.h"
#include "storage/CollectionFileStorageService.h"
#include "storage/StorageLocationManager.h"
#include "sync/CloudDriveDetectionService.h"
#include "sync/ConflictDetectionService.h"
#include "views/common/Button.h"
#include "views/common/Fonts.h"
#include "views/common/Label.h"
#include "views/common/NoteView.h"
#include "views/common/PlainText.h"
#include "views/common/Strokes.h"
#include "views/common/TextPainting.h"
#include "views/sheets/DriveLook.h"

#include <QBoxLayout>
#include <QPainter>
#include <QShowEvent>

namespace vellumry {

namespace {

constexpr int ring = Button::ringRoom;
constexpr int side = 14;
constexpr int bottom = 12;
constexpr int tileGap = 12;
constexpr int textX = 58; ///< behind the tile
constexpr int locationHeight = 56;
constexpr int dotSide = 7;
constexpr int dotGap = 7;
constexpr int conflictSymbol = 20;
constexpr qreal pathSize = 11.5;

/// The mark before a state that is well.
class Dot final : public QWidget {
public:
    Dot(const Theme& look, QWidget* parent) : QWidget(parent), theme(look)
    {
        setFixedSize(dotSide, dotSide);
        connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        fillRounded(painter, rect(), dotSide / 2.0, theme.colors().success);
    }

private:
    const Theme& theme;
};

} // namespace

/// The path of the folder, cut in the middle where the room ends.
class StorageSettingsSection::PathLabel final : public QWidget {
public:
    PathLabel(const Theme& look, QWidget* parent) : QWidget(parent), theme(look)
    {
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        connect(&theme, &Theme::changed, this, [this] {
            updateGeometry();
            update();
        });
    }

    void setPath(const QString& shownPath, const QString& fullPath)
    {
        shown = singleLine(shownPath);
        setAccessibleName(shownPath);
        setToolTip(toolTipText(fullPath));
        update();
    }

    [[nodiscard]] QSize sizeHint() const override
    {
        return {0, theme.lineHeight(TextStyle::label)};
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        const QFont font = monoFont(qRound(pathSize * theme.textScale()));
        const QString text =
            QFontMetricsF(font).elidedText(shown, Qt::ElideMiddle, width(), Qt::TextSingleLine);
        paintLine(painter, rect(), text, font, theme.colors().textSecondary);
    }

private:
    const Theme& theme;
    QString shown;
};

StorageSettingsSection::StorageSettingsSection(const Dependencies& dependencies,
                                               const QString& name, QWidget* parent)
    : SettingsGroup(dependencies.theme, name, parent), services(dependencies)
{
    addLocation();
    addProblem();
    addConflictWarning();
    addSyncHint();
    using Storage = CollectionFileStorageService;
    for (const auto signal :
         {&Storage::isWatchingEnabledChanged, &Storage::detectedConflictsChanged})
        connect(&services.collectionStorage, signal, this, &StorageSettingsSection::refresh);
    connect(&services.notifications, &NotificationCenter::storageLocationDidChange, this,
            &StorageSettingsSection::refresh);
    refresh();
}

void StorageSettingsSection::addLocation()
{
    const Theme& look = services.theme;
    auto* location = new QWidget(this);
    location->setMinimumHeight(locationHeight);
    auto* line = new QHBoxLayout(location);
    line->setContentsMargins(side, bottom, side, 2);
    line->setSpacing(tileGap);
    tile = new SettingsTile(look, location);
    line->addWidget(tile);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(1);
    texts->addStretch();
    texts->addWidget(new Label(look, TextStyle::bodyMedium, &ColorTokens::textPrimary,
                               QStringLiteral("Data Location"), location));
    path = new PathLabel(look, location);
    texts->addWidget(path);
    texts->addStretch();
    line->addLayout(texts, 1);
    addRow(location);

    auto* actions = new QWidget(this);
    auto* row = new QHBoxLayout(actions);
    row->setContentsMargins(textX, 0, side - ring, bottom - ring);
    row->setSpacing(0);
    watchingMark = new QWidget(actions);
    auto* mark = new QHBoxLayout(watchingMark);
    mark->setContentsMargins({});
    mark->setSpacing(dotGap);
    mark->addWidget(new Dot(look, watchingMark));
    mark->addWidget(new Label(look, TextStyle::label, &ColorTokens::textSecondary,
                              QStringLiteral("Watching for changes"), watchingMark));
    row->addWidget(watchingMark);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(0);
    buttons->addStretch();
    const auto addButton = [&](const QString& text) {
        auto* button = new Button(look, Button::Kind::bordered, text, actions, Button::Size::small);
        buttons->addWidget(button);
        return button;
    };
    reveal = addButton(QStringLiteral("Reveal in Finder"));
    change = addButton(QStringLiteral("Change..."));
    row->addLayout(buttons, 1);
    actionsRow = row;
    connect(&look, &Theme::changed, this, [this] { foldSettingsRow(*actionsRow); });
    connect(reveal, &Button::clicked, this, &StorageSettingsSection::revealFolder);
    connect(change, &Button::clicked, this, &StorageSettingsSection::changeLocationRequested);
    addRow(actions);
}

void StorageSettingsSection::addProblem()
{
    problemRow = new QWidget(this);
    auto* row = new QVBoxLayout(problemRow);
    row->setContentsMargins(side, 0, side, side);
    problem = NoteView::forErrors(services.theme, problemRow);
    row->addWidget(problem);
    problemRow->hide();
    addRow(problemRow);
}

void StorageSettingsSection::addSyncHint()
{
    const Theme& look = services.theme;
    syncRow = new QWidget(this);
    auto* line = new QHBoxLayout(syncRow);
    line->setContentsMargins(side, bottom, side, bottom);
    line->setSpacing(tileGap);
    auto* cloud = new SettingsTile(look, syncRow);
    cloud->setSymbol(QStringLiteral("cloud"), false);
    line->addWidget(cloud, 0, Qt::AlignTop);
    line->addLayout(makeSettingsTexts(
                        look, QStringLiteral("Sync Across Devices"),
                        QStringLiteral("To sync your snippets across devices, click \"Change\" and "
                                       "select a cloud drive folder (Dropbox, iCloud Drive, Google "
                                       "Drive, etc.). Your data will be automatically "
                                       "transferred."),
                        syncRow),
                    1);
    addRow(syncRow, Line::above);
}

void StorageSettingsSection::addConflictWarning()
{
    conflictRow = new QWidget(this);
    auto* row = new QVBoxLayout(conflictRow);
    row->setContentsMargins(side, 0, side, side);
    conflicts = new NoteView(services.theme, NoteView::Kind::warning,
                             {.symbol = QStringLiteral("exclamationmark.triangle.fill"),
                              .symbolSize = conflictSymbol,
                              .headline = QStringLiteral("Sync Conflict Detected")},
                             conflictRow);
    resolve = new Button(services.theme, Button::Kind::bordered, QStringLiteral("Resolve..."),
                         conflicts, Button::Size::small);
    conflicts->addButton(resolve);
    row->addWidget(conflicts);
    addRow(conflictRow);
    connect(resolve, &Button::clicked, this, [this] {
        Q_EMIT resolveConflictsRequested(services.collectionStorage.detectedConflicts());
    });
}

std::optional<DetectedCloudDrive> StorageSettingsSection::currentCloudDrive() const
{
    const QString location = services.locationManager.currentLocation();
    for (const DetectedCloudDrive& drive :
         services.cloudDriveService.detectInstalledCloudDrives()) {
        if (location.startsWith(drive.syncFolderPath))
            return drive;
    }
    return std::nullopt;
}

void StorageSettingsSection::showEvent(QShowEvent* event)
{
    SettingsGroup::showEvent(event);
    if (event->spontaneous())
        return;
    services.collectionStorage.setDetectedConflicts(
        services.conflictDetection.detectConflicts(services.locationManager.currentLocation()));
    refresh();
}

void StorageSettingsSection::refresh()
{
    path->setPath(services.locationManager.currentLocationDisplayName(),
                  services.locationManager.currentLocation());
    const auto drive = currentCloudDrive();
    if (drive) {
        tile->setSymbol(driveSymbol(drive->type), driveColor(drive->type));
        tile->setAccessibleName(rawValue(drive->type));
    } else {
        tile->setSymbol(QStringLiteral("folder.fill"), true);
        tile->setAccessibleName({});
    }
    syncRow->setVisible(!drive);
    watchingMark->setVisible(services.collectionStorage.isWatchingEnabled());

    const qsizetype count = services.collectionStorage.detectedConflicts().size();
    if (count > 0)
        conflicts->setText(QStringLiteral("%1 conflict file(s) found").arg(count));
    conflictRow->setVisible(count > 0);
    foldSettingsRow(*actionsRow);
    update();
}

void StorageSettingsSection::revealFolder()
{
    problemRow->hide();
    services.fileViewer.showFolder(
        services.locationManager.currentLocation(), this, [this](const QString& reason) {
            problem->setText(QStringLiteral("The folder cannot be shown: ") + reason);
            problemRow->show();
        });
}

} // namespace vellumry
