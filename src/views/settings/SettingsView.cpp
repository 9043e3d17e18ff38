#include "views/settings/SettingsView.h"

#include "settings/HotkeyConflictChecker.h"
#include "settings/HotkeyServiceProtocol.h"
#include "settings/SettingsService.h"
#include "views/common/Button.h"
#include "views/common/Label.h"
#include "views/common/NoteView.h"
#include "views/common/OverlayScrollBar.h"
#include "views/common/Strokes.h"
#include "views/common/SymbolView.h"
#include "views/settings/AppearanceModeButton.h"
#include "views/settings/HotkeyRecorderButton.h"
#include "views/settings/SettingsParts.h"
#include "views/settings/SettingsSwitch.h"
#include "views/settings/StorageSettingsSection.h"

#include <QBoxLayout>
#include <QHideEvent>
#include <QPainter>
#include <QScrollArea>

#include <utility>

namespace vellumry {

namespace {

constexpr QSize firstSize(500, 720);
constexpr int leastHeight = 240;
constexpr int ring = Button::ringRoom;
constexpr int bodySide = 20;
constexpr int bodyTop = 14;
constexpr int headingHeight = 28;
constexpr int headingInset = 2;
constexpr int sectionGap = 18;
constexpr int rowSide = 14;
constexpr int noteBelow = 12;
constexpr int helpGap = 5;
constexpr int restartHeight = 36;
constexpr int restartSymbol = 15;
constexpr int restartGap = 8;
constexpr int noticeSymbol = 13;
constexpr int noticeGap = 5;
constexpr int footerHeight = 56;
constexpr int ghostPadding = 12;
constexpr int leastDoneWidth = 76;

/// The margins of a row whose button, with what shows the focus around it, reaches up into them,
/// or down as well.
QMargins ringed(const QMargins& margins, bool isBelow)
{
    return margins - QMargins(0, ring, 0, isBelow ? ring : 0);
}

/// A symbol and a text behind it.
QHBoxLayout* makeRemark(const Theme& theme, const QString& symbol, int symbolSize,
                        Label::Color color, Label* text)
{
    auto* line = new QHBoxLayout;
    line->addWidget(new SymbolView(theme, symbol, symbolSize, color, text->parentWidget()));
    line->addWidget(text, 1);
    return line;
}

/// What the person has to know where the desktop, which decides, has not put the hot key in force.
QString remarkOn(const hotkey::DesktopShortcut& shortcut)
{
    using State = hotkey::DesktopShortcut::State;
    switch (shortcut.state) {
    case State::asked:
        break;
    case State::granted:
        if (shortcut.trigger.empty())
            return QStringLiteral("The desktop has no key for this shortcut yet. Choose one in its "
                                  "keyboard settings.");
        break;
    case State::refused:
        return QStringLiteral(
            "The desktop has not allowed this shortcut. Choose another one here, or let a key in "
            "the desktop's keyboard settings run \"vellumry --toggle-palette\".");
    case State::unavailable:
        return QStringLiteral(
            "This desktop gives programs no shortcuts. Let a key in its keyboard settings run "
            "\"vellumry --toggle-palette\", or call ActivateAction of org.freedesktop.Application "
            "with \"toggle-palette\" over D-Bus.");
    }
    return {};
}

} // namespace

SettingsView::SettingsView(const Dependencies& dependencies, QWidget* parent)
    : QWidget(parent), services(dependencies), area(new QScrollArea(this)),
      scrollBar(new OverlayScrollBar(*area, {}, services.scheduler)), footer(new QWidget(this))
{
    setAccessibleName(QStringLiteral("Settings"));
    auto* body = new QWidget(area);
    auto* sections = new QVBoxLayout(body);
    sections->setContentsMargins(bodySide, bodyTop, bodySide, bodySide);
    sections->setSpacing(0);
    addGeneralSection(*sections, body);
    addKeyboardSection(*sections, body);
    addStorageSection(*sections, body);
    sections->addStretch();

    area->setWidget(body);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFocusPolicy(Qt::NoFocus);
    area->viewport()->setAutoFillBackground(false);
    body->setAutoFillBackground(false);
    buildFooter();

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(0);
    column->addWidget(area, 1);
    column->addWidget(footer);
    observe();
    applyTheme();
    showAppearanceMode();
    showRecorder();
}

SettingsView::~SettingsView()
{
    onDisappear();
}

// Sections

void SettingsView::addHeading(QVBoxLayout& column, const QString& text, QWidget* body) const
{
    if (column.count() > 0)
        column.addSpacing(sectionGap);
    auto* heading =
        new Label(services.theme, TextStyle::section, &ColorTokens::textTertiary, text, body);
    heading->setContentsMargins(headingInset, 0, 0, 0);
    heading->setMinimumHeight(headingHeight);
    column.addWidget(heading);
}

void SettingsView::addGeneralSection(QVBoxLayout& column, QWidget* body)
{
    const Theme& theme = services.theme;
    const QString title = QStringLiteral("GENERAL");
    addHeading(column, title, body);
    auto* group = new SettingsGroup(theme, title, body);

    auto* appearance = new QWidget(group);
    QHBoxLayout* appearanceLine = makeSettingsRow(appearance);
    appearanceLine->setContentsMargins(ringed(appearanceLine->contentsMargins(), true));
    const QString appearanceHelp = QStringLiteral("Choose the color scheme for the interface");
    appearanceLine->addLayout(
        makeSettingsTexts(theme, QStringLiteral("Appearance"), appearanceHelp, appearance), 1);
    auto* choice = new QHBoxLayout;
    choice->setSpacing(0);
    for (const AppearanceMode mode : allAppearanceModes) {
        auto* button = new AppearanceModeButton(
            theme, mode, [this, mode] { services.settings.setAppearanceMode(mode); }, appearance);
        button->setAccessibleDescription(appearanceHelp);
        choice->addWidget(button);
        modes.append(button);
    }
    appearanceLine->addLayout(choice);
    group->addRow(appearance);

    auto* login = new QWidget(group);
    QHBoxLayout* loginLine = makeSettingsRow(login);
    const QString loginTitle = QStringLiteral("Launch at Login");
    const QString loginHelp = QStringLiteral("Automatically start Vellumry when you log in");
    auto* loginTexts = new QVBoxLayout;
    loginTexts->setSpacing(noticeGap);
    loginTexts->addLayout(makeSettingsTexts(theme, loginTitle, loginHelp, login));
    launchProblem = new QWidget(login);
    QHBoxLayout* notice = makeRemark(
        theme, QStringLiteral("exclamationmark.triangle.fill"), noticeSymbol, &ColorTokens::warning,
        new Label(theme, TextStyle::caption, &ColorTokens::warning,
                  QStringLiteral("Requires macOS 13.0 or later"), launchProblem));
    notice->setContentsMargins({});
    notice->setSpacing(noticeGap);
    launchProblem->setLayout(notice);
    loginTexts->addWidget(launchProblem);
    loginLine->addLayout(loginTexts, 1);
    launch = new SettingsSwitch(theme, loginTitle, login);
    launch->setAccessibleDescription(loginHelp);
    launch->setChecked(services.settings.launchAtLogin());
    loginLine->addWidget(launch);
    group->addRow(login, SettingsGroup::Line::above);

    const bool isAvailable = services.settings.isLaunchAtLoginAvailable();
    launch->setEnabled(isAvailable);
    launchProblem->setVisible(!isAvailable);
    column.addWidget(group);
}

void SettingsView::addKeyboardSection(QVBoxLayout& column, QWidget* body)
{
    const Theme& theme = services.theme;
    const QString title = QStringLiteral("KEYBOARD SHORTCUTS");
    addHeading(column, title, body);
    auto* group = new SettingsGroup(theme, title, body);

    auto* search = new QWidget(group);
    QHBoxLayout* line = makeSettingsRow(search);
    line->setContentsMargins(ringed(line->contentsMargins(), false));
    line->addLayout(makeSettingsTexts(theme, QStringLiteral("Quick Search"),
                                      QStringLiteral("Open the command palette from anywhere"),
                                      search),
                    1);
    recorder =
        new HotkeyRecorderButton(theme,
                                 {.onHotkeyRecorded =
                                      [this](const QString& key, hotkey::ModifierFlags pressed) {
                                          handleHotkeyRecorded(key, pressed);
                                      },
                                  .onRecordingCancelled = [this] { cancelRecording(); },
                                  .onModifiersChanged =
                                      [this](hotkey::ModifierFlags pressed) {
                                          modifiers = pressed;
                                          showRecorder();
                                      }},
                                 search);
    help = new Label(theme, TextStyle::caption, &ColorTokens::textTertiary, {}, search);
    help->setContentsMargins(0, 0, ring, 0);
    auto* button = new QVBoxLayout;
    button->setSpacing(helpGap - ring);
    button->addWidget(recorder, 0, Qt::AlignRight);
    button->addWidget(help, 0, Qt::AlignRight);
    line->addLayout(button);
    group->addRow(search);

    note = addNote(*group, noteRow);
    desktop = addNote(*group, desktopRow);

    auto* restart = new QWidget(group);
    restart->setMinimumHeight(restartHeight);
    QHBoxLayout* remark =
        makeRemark(theme, QStringLiteral("arrow.clockwise.circle.fill"), restartSymbol,
                   &ColorTokens::textSecondary,
                   new Label(theme, TextStyle::label, &ColorTokens::textSecondary,
                             QStringLiteral("Restart the app after changing shortcut"), restart));
    remark->setContentsMargins(rowSide, 0, rowSide, 0);
    remark->setSpacing(restartGap);
    restart->setLayout(remark);
    group->addRow(restart, SettingsGroup::Line::above);
    column.addWidget(group);
    recorderRow = line;
    connect(recorder, &Button::clicked, this, &SettingsView::toggleRecording);
}

/// For a remark on the hot key, hidden.
NoteView* SettingsView::addNote(SettingsGroup& group, QWidget*& row) const
{
    row = new QWidget(&group);
    auto* layout = new QVBoxLayout(row);
    layout->setContentsMargins(rowSide, 0, rowSide, noteBelow);
    auto* made = new NoteView(services.theme, NoteView::Kind::warning,
                              {.symbol = QStringLiteral("exclamationmark.triangle.fill")}, row);
    layout->addWidget(made);
    row->hide();
    group.addRow(row);
    return made;
}

void SettingsView::addStorageSection(QVBoxLayout& column, QWidget* body)
{
    const QString title = QStringLiteral("STORAGE");
    addHeading(column, title, body);
    storage = new StorageSettingsSection({.locationManager = services.locationManager,
                                          .cloudDriveService = services.cloudDriveService,
                                          .conflictDetection = services.conflictDetection,
                                          .collectionStorage = services.collectionStorage,
                                          .notifications = services.notifications,
                                          .fileViewer = services.fileViewer,
                                          .theme = services.theme},
                                         title, body);
    column.addWidget(storage);
    connect(storage, &StorageSettingsSection::changeLocationRequested, this,
            &SettingsView::changeLocationRequested);
    connect(storage, &StorageSettingsSection::resolveConflictsRequested, this,
            &SettingsView::resolveConflictsRequested);
}

void SettingsView::buildFooter()
{
    auto* row = new QHBoxLayout(footer);
    row->setContentsMargins(bodySide - ghostPadding - ring, 1, bodySide - ring, 0);
    row->setSpacing(0);
    reset = new Button(services.theme, Button::Kind::ghost, QStringLiteral("Reset to Defaults"),
                       footer);
    done = new Button(services.theme, Button::Kind::primary, QStringLiteral("Done"), footer);
    done->setMinimumWidth(leastDoneWidth + 2 * ring);
    done->setDefault(true);
    row->addWidget(reset);
    row->addStretch();
    row->addWidget(done);
    connect(reset, &Button::clicked, this, &SettingsView::resetToDefaults);
    connect(done, &Button::clicked, this, &SettingsView::dismissSettings);
}

void SettingsView::observe()
{
    using S = SettingsService;
    connect(launch, &Button::clicked, this,
            [this](bool isOn) { services.settings.setLaunchAtLogin(isOn); });
    connect(&services.settings, &S::launchAtLoginChanged, this,
            [this] { launch->setChecked(services.settings.launchAtLogin()); });
    connect(&services.settings, &S::appearanceModeChanged, this, &SettingsView::showAppearanceMode);
    connect(&services.settings, &S::quickSearchHotkeyChanged, this, &SettingsView::showRecorder);
    connect(&services.hotkeyService, &HotkeyServiceProtocol::desktopShortcutChanged, this,
            &SettingsView::showRecorder);
    connect(&services.theme, &Theme::changed, this, &SettingsView::applyTheme);
}

// Looks

QSize SettingsView::sizeHint() const
{
    return firstSize;
}

QSize SettingsView::minimumSizeHint() const
{
    return {firstSize.width(), leastHeight};
}

void SettingsView::applyTheme()
{
    const ColorTokens& token = services.theme.colors();
    setPalette(services.theme.palette());
    scrollBar->setLook({.handle = token.scrollHandle, .handleHovered = token.scrollHandleHover});
    footer->setFixedHeight(services.theme.rowHeight(footerHeight, TextStyle::bodyMedium));
    foldSettingsRow(*recorderRow);
    update();
}

void SettingsView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    // A sheet has the ground of its card, with round corners.
    if (parentWidget() == nullptr || parentWidget()->isWindow())
        painter.fillRect(rect(), services.theme.colors().sheet);
    painter.fillRect(QRectF(0, footer->y(), width(), lineWidth(painter)),
                     services.theme.colors().stroke);
}

void SettingsView::showAppearanceMode()
{
    for (AppearanceModeButton* button : std::as_const(modes))
        button->setSelected(button->mode() == services.settings.appearanceMode());
}

void SettingsView::showRecorder()
{
    help->setText(recording ? QStringLiteral("Press Esc to cancel")
                            : QStringLiteral("Click to change shortcut"));
    recorder->setAccessibleDescription(help->text());
    const auto shortcut = services.hotkeyService.desktopShortcut();
    const QString remark = shortcut ? remarkOn(*shortcut) : QString();
    desktop->setText(remark);
    desktopRow->setVisible(!remark.isEmpty());
    recorder->setState({.hotkey = services.settings.quickSearchHotkey(),
                        .trigger = shortcut ? QString::fromStdString(shortcut->trigger) : QString(),
                        .isRecording = recording,
                        .recordingModifiers = modifiers});
    foldSettingsRow(*recorderRow);
}

void SettingsView::setConflictWarning(const std::optional<QString>& text)
{
    warning = text;
    if (text)
        note->setText(*text);
    noteRow->setVisible(text.has_value());
}

// On the screen

void SettingsView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (!event->spontaneous())
        onAppear();
}

void SettingsView::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    // In a minimised window the view is still there.
    if (!event->spontaneous())
        onDisappear();
}

void SettingsView::onAppear()
{
    appeared = true;
    showRecorder();
    services.hotkeyService.pauseHotkey();
}

void SettingsView::onDisappear()
{
    if (!std::exchange(appeared, false))
        return;
    // The window may be on its way out: nothing is built any more, to be shown or not.
    recording = false;
    modifiers = {};
    services.hotkeyService.resumeHotkey();
}

// The recording

void SettingsView::toggleRecording()
{
    if (recording) {
        cancelRecording();
        return;
    }
    services.hotkeyService.pauseHotkey();
    recording = true;
    showRecorder();
}

void SettingsView::stopRecording()
{
    recording = false;
    modifiers = {};
    showRecorder();
}

void SettingsView::cancelRecording()
{
    stopRecording();
    services.hotkeyService.resumeHotkey();
}

void SettingsView::handleHotkeyRecorded(const QString& key, hotkey::ModifierFlags pressed)
{
    stopRecording();
    setConflictWarning(services.conflictChecker.check(key, pressed));
    if (warning)
        return;
    services.settings.setQuickSearchHotkey({.key = key, .modifiers = pressed});
    // The change has just put the key back on the system.
    services.scheduler.after(std::chrono::milliseconds(0), this, [this] {
        if (appeared)
            services.hotkeyService.pauseHotkey();
    });
}

// Footer

void SettingsView::resetToDefaults()
{
    if (recording)
        cancelRecording();
    services.settings.setQuickSearchHotkey(SettingsService::defaultQuickSearchHotkey());
    services.settings.setAppearanceMode(AppearanceMode::system);
    setConflictWarning(std::nullopt);
}

void SettingsView::dismissSettings()
{
    // Whatever takes keys does so no more.
    setFocus(Qt::OtherFocusReason);
    Q_EMIT dismissed();
}

} // namespace vellumry
