#include "views/sheets/FirstLaunchView.h"

#include "views/common/Button.h"
#include "views/common/Label.h"
#include "views/common/NoteView.h"
#include "views/common/SymbolView.h"
#include "views/common/WrappingLabel.h"
#include "views/sheets/DriveLook.h"
#include "views/sheets/ModeCard.h"
#include "views/sheets/StorageLocationRow.h"

#include <QVBoxLayout>

#include <utility>

namespace vellumry {

namespace {

using Step = FirstLaunchSetup::OnboardingStep;
using Mode = FirstLaunchSetup::SetupMode;

constexpr int sheetWidth = 540;
constexpr int marginX = 32;
constexpr int footerMarginY = 14;
constexpr int bottomMargin = 24;
constexpr int errorGap = 12;
constexpr int bigLogo = 72;
constexpr int smallLogo = 44;
constexpr int ring = SelectableButton::ringRoom;

constexpr QStringView logo = u"vellumry";
constexpr QStringView tagline = u"A local-first snippet manager that puts you in control.";

QVBoxLayout* columnIn(QWidget* page, int top, int bottom)
{
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(marginX - ring, top, marginX - ring, bottom);
    column->setSpacing(0);
    return column;
}

} // namespace

FirstLaunchView::FirstLaunchView(const Dependencies& dependencies, QWidget* parent)
    : ScrollingSheet(dependencies.theme, dependencies.scheduler, sheetWidth, parent),
      theme(dependencies.theme), defaultLocation(dependencies.defaultLocation),
      homeFolder(dependencies.homeFolder), state(dependencies.setup),
      modes(new QWidget(bodyWidget())), locations(new QWidget(bodyWidget())),
      error(NoteView::forErrors(theme, bodyWidget())),
      back(new Button(theme, Button::Kind::secondary, QStringLiteral("Back"), footerWidget(),
                      Button::Size::alert)),
      proceed(new Button(theme, Button::Kind::primary, QStringLiteral("Continue"), footerWidget(),
                         Button::Size::alert))
{
    setAccessibleName(QStringLiteral("Vellumry"));
    state.appear();
    buildModes();
    buildLocations();
    body().addWidget(modes);
    body().addWidget(locations);
    error->setContentsMargins(marginX, 0, marginX, bottomMargin);
    body().addWidget(error);
    body().addStretch();
    addFooter(back, {proceed}, marginX, footerMarginY);
    proceed->setDefault(true);

    connect(back, &Button::clicked, &state, &FirstLaunchSetup::goBack);
    connect(proceed, &Button::clicked, &state, &FirstLaunchSetup::handleContinue);
    connect(&state, &FirstLaunchSetup::changed, this, &FirstLaunchView::showState);
    connect(&state, &FirstLaunchSetup::dismissed, this, dependencies.onDismiss);
    showState();
}

QWidget* FirstLaunchView::firstFocus() const
{
    return startFresh;
}

void FirstLaunchView::buildModes()
{
    QVBoxLayout* column = columnIn(modes, 28, bottomMargin - ring);
    column->addWidget(new SymbolView(theme, logo.toString(), bigLogo, &ColorTokens::accent, modes),
                      0, Qt::AlignHCenter);
    column->addSpacing(12);
    column->addWidget(new Label(theme, TextStyle::hero, &ColorTokens::textPrimary,
                                QStringLiteral("Vellumry"), modes),
                      0, Qt::AlignHCenter);
    column->addSpacing(4);
    auto* promise = new WrappingLabel(theme, TextStyle::body, &ColorTokens::textSecondary,
                                      tagline.toString(), modes);
    promise->setAlignment(Qt::AlignHCenter);
    column->addWidget(promise);
    column->addSpacing(24 - ring);

    startFresh = new ModeCard(
        theme,
        {.icon = QStringLiteral("plus.circle.fill"),
         .iconColor = &ColorTokens::accent,
         .title = QStringLiteral("Start Fresh"),
         .description = QStringLiteral("Create a new snippet library from scratch")},
        [this] { state.selectMode(Mode::startFresh); }, modes);
    useExisting = new ModeCard(
        theme,
        {.icon = QStringLiteral("folder.fill"),
         .iconColor = &ColorTokens::warningFill,
         .title = QStringLiteral("Use Existing Data"),
         .description = QStringLiteral("I already have Vellumry data on another device")},
        [this] { state.selectMode(Mode::useExisting); }, modes);
    auto* cards = new QHBoxLayout;
    cards->setSpacing(12 - 2 * ring);
    cards->addWidget(startFresh, 1);
    cards->addWidget(useExisting, 1);
    column->addLayout(cards);
}

void FirstLaunchView::buildLocations()
{
    QVBoxLayout* column = columnIn(locations, 22, bottomMargin - ring);
    const auto inset = [column](QLayout* row) {
        row->setContentsMargins(ring, 0, ring, 0);
        column->addItem(row);
    };
    auto* head = new QHBoxLayout;
    head->setSpacing(14);
    head->addWidget(
        new SymbolView(theme, logo.toString(), smallLogo, &ColorTokens::accent, locations));
    auto* titles = new QVBoxLayout;
    titles->setSpacing(2);
    titles->addWidget(new WrappingLabel(theme, TextStyle::sheetTitle, &ColorTokens::textPrimary,
                                        QStringLiteral("Choose where to store your data"),
                                        locations));
    titles->addWidget(new WrappingLabel(theme, TextStyle::label, &ColorTokens::textSecondary,
                                        tagline.toString(), locations));
    head->addLayout(titles, 1);
    inset(head);

    auto* texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addSpacing(18);
    texts->addWidget(new WrappingLabel(theme, TextStyle::bodyStrong, &ColorTokens::textPrimary,
                                       QStringLiteral("Choose a storage location"), locations));
    texts->addWidget(new WrappingLabel(
        theme, TextStyle::label, &ColorTokens::textSecondary,
        QStringLiteral("For multi-device sync, select a cloud drive folder. Your snippets will "
                       "automatically sync across all devices."),
        locations));
    inset(texts);

    const auto addHeading = [&](const QString& text) {
        auto* row = new QVBoxLayout;
        row->addSpacing(18);
        row->addWidget(new WrappingLabel(theme, TextStyle::section, &ColorTokens::textTertiary,
                                         text, locations));
        row->addSpacing(6 - ring);
        row->setSpacing(0);
        inset(row);
    };
    if (!state.detectedDrives().isEmpty())
        addHeading(QStringLiteral("Recommended - Cloud Drives"));
    for (const DetectedCloudDrive& drive : state.detectedDrives()) {
        const auto contents = driveRowContents(drive, homeFolder);
        auto* row = new StorageLocationRow(
            theme,
            {.icon = contents.symbol,
             .iconColor = contents.tileColor,
             .title = contents.title,
             .path = contents.detail},
            [this, path = drive.programFolderPath()] { state.selectStorageLocation(path); },
            locations);
        column->addWidget(row);
        drives.push_back(row);
    }
    addHeading(QStringLiteral("Other Options"));
    local = new LocalStorageRowWithChange(
        theme, [this] { state.selectStorageLocation(defaultLocation); },
        [this] { state.selectStorageLocation(*state.customSelectedPath()); },
        [this] { state.pickFolder(); }, locations);
    column->addWidget(local);
}

void FirstLaunchView::showState()
{
    const bool isFirst = state.currentStep() == Step::chooseMode;
    const bool isOtherStep = std::exchange(shownStep, state.currentStep()) != state.currentStep();
    // What goes loses the focus: first there must be something to take it.
    (isFirst ? modes : locations)->show();
    startFresh->setSelected(state.selectedMode() == Mode::startFresh);
    useExisting->setSelected(state.selectedMode() == Mode::useExisting);
    for (qsizetype i = 0; i < state.detectedDrives().size(); ++i)
        drives[size_t(i)]->setSelected(state.selectedStorageLocation() ==
                                       state.detectedDrives().at(i).programFolderPath());
    local->setPaths({.customPath = state.customSelectedPath(),
                     .defaultPath = defaultLocation,
                     .selectedPath = state.selectedStorageLocation(),
                     .homeFolder = homeFolder});
    proceed->setText(isFirst ? QStringLiteral("Continue") : QStringLiteral("Get Started"));
    proceed->updateGeometry();
    proceed->setEnabled(state.canContinue());
    back->setVisible(!isFirst);
    if (isOtherStep) {
        QWidget* next = isFirst ? static_cast<QWidget*>(startFresh) : proceed;
        if (!isFirst && !proceed->isEnabled())
            next = drives.empty() ? &local->defaultRow() : drives.front();
        next->setFocus(Qt::OtherFocusReason);
    }
    (isFirst ? locations : modes)->hide();

    if (isOtherStep)
        earlierError = state.errorMessage();
    const bool hasError = state.errorMessage() && (isFirst || state.errorMessage() != earlierError);
    const bool isNews = hasError && error->isHidden();
    error->setText(state.errorMessage().value_or(QString()));
    error->setVisible(hasError);
    for (QWidget* page : {modes, locations}) {
        QMargins margins = page->layout()->contentsMargins();
        margins.setBottom((hasError ? errorGap : bottomMargin) - ring);
        page->layout()->setContentsMargins(margins);
    }
    if (isNews)
        reveal(error);
}

} // namespace vellumry
