#include "views/editor/EditorTitleSection.h"

#include "core/Text.h"
#include "library/SnippetEditorViewModel.h"
#include "views/common/Button.h"
#include "views/common/Label.h"
#include "views/common/Motion.h"
#include "views/common/OutsetItem.h"
#include "views/common/PopupMenu.h"
#include "views/editor/EditorCollectionPicker.h"
#include "views/editor/SubtitleTextField.h"
#include "views/editor/TitleTextField.h"

#include <QVBoxLayout>

namespace vellumry {

namespace {

using namespace std::chrono_literals;

constexpr int ring = Button::ringRoom;
constexpr int outset = BareTextField::outset;
constexpr int buttonHeight = 28;
constexpr int symbolSize = 14;
constexpr int moreSymbolSize = 18;
constexpr int titleGap = 8;
constexpr int buttonGap = 6;
constexpr int countGap = 12;
constexpr qsizetype fewRemaining = 20;
constexpr auto popTime = 250ms;
constexpr qreal popFrom = 0.94;
constexpr qreal popOvershoot = 1.1;

} // namespace

EditorTitleSection::EditorTitleSection(const Theme& look, SnippetEditorViewModel& model,
                                       CollectionColors& colors, const Actions& actions,
                                       QWidget* parent)
    : QWidget(parent), theme(look), viewModel(model),
      collection(new EditorCollectionPicker(theme, viewModel, colors, this)),
      copy(new Button(theme, Button::Kind::bordered, QStringLiteral("Copy"), this,
                      Button::Size::small)),
      more(Button::withSymbol(theme, QStringLiteral("ellipsis"), QStringLiteral("More Actions"),
                              this)),
      title(new TitleTextField(theme, this)), subtitle(new SubtitleTextField(theme, this)),
      remainingLabel(new Label(theme, TextStyle::caption, &ColorTokens::textTertiary, {}, this)),
      popping(new QVariantAnimation(this))
{
    copy->setFaceHeight(buttonHeight);
    copy->setToolTip(QStringLiteral("Copy to Clipboard"));
    copy->setAccessibleDescription(copy->toolTip());
    QEasingCurve spring(QEasingCurve::OutBack);
    spring.setOvershoot(popOvershoot);
    popping->setEasingCurve(spring);
    popping->setStartValue(popFrom);
    popping->setEndValue(1.0);

    layOut();
    handleKeys(actions);
    observe();
    title->updateText(viewModel.title());
    subtitle->updateText(viewModel.subtitle());
    copy->setSymbol(QStringLiteral("doc.on.doc"), symbolSize);
    more->setSymbol(QStringLiteral("ellipsis"), moreSymbolSize);
    if (viewModel.showCopySuccess())
        showCopied();
    showRemaining();
}

void EditorTitleSection::layOut()
{
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(0);

    auto* row = new QHBoxLayout;
    row->setContentsMargins(outset - ring, 0, outset - ring, 0);
    row->setSpacing(0);
    row->addWidget(collection, 1);
    row->addSpacing(buttonGap);
    row->addItem(new OutsetItem(copy, {0, 0, 2 * ring - buttonGap, 0}));
    row->addWidget(more);
    column->addLayout(row);
    column->addSpacing(titleGap - ring);
    column->addWidget(title);

    auto* below = new QHBoxLayout;
    below->setContentsMargins(0, 0, outset, 0);
    below->setSpacing(countGap - outset);
    below->addWidget(subtitle, 1);
    below->addWidget(remainingLabel);
    column->addLayout(below);
}

void EditorTitleSection::handleKeys(const Actions& actions)
{
    const auto save = [this] { viewModel.save(); };
    title->setKeys({.onSubmit = save,
                    .onEscape = actions.onEscape,
                    .onTab = [this] { subtitle->setFocus(Qt::TabFocusReason); },
                    .onShiftTab =
                        [this, leave = actions.onShiftTab] {
                            title->clearFocus();
                            leave();
                        }});
    subtitle->setKeys(
        {.onSubmit = save, .onEscape = actions.onEscape, .onTab = {}, .onShiftTab = [this] {
             title->setFocus(Qt::BacktabFocusReason);
         }});
}

void EditorTitleSection::observe()
{
    connect(title, &BareTextField::edited, this,
            [this](const QString& text) { viewModel.setTitle(text); });
    connect(subtitle, &BareTextField::edited, this,
            [this](const QString& text) { viewModel.setSubtitle(text); });
    connect(copy, &Button::clicked, this, [this] { viewModel.copyToClipboard(); });
    connect(more, &Button::clicked, this, [this] {
        PopupMenu* menu = makeMenu();
        connect(menu, &QMenu::aboutToHide, menu, &QObject::deleteLater);
        menu->popup(more->mapToGlobal(
            QPoint(more->width() - ring - menu->sizeHint().width(), more->height() - ring + 3)));
    });

    using M = SnippetEditorViewModel;
    connect(&viewModel, &M::titleChanged, this, [this] { title->updateText(viewModel.title()); });
    connect(&viewModel, &M::subtitleChanged, this, [this] {
        subtitle->updateText(viewModel.subtitle());
        showRemaining();
    });
    connect(&viewModel, &M::showCopySuccessChanged, this, &EditorTitleSection::showCopied);
    connect(popping, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& scale) { copy->setFaceScale(scale.toReal()); });
}

void EditorTitleSection::showCopied()
{
    const bool isCopied = viewModel.showCopySuccess();
    copy->setText(isCopied ? QStringLiteral("Copied") : QStringLiteral("Copy"));
    copy->setSymbol(isCopied ? QStringLiteral("checkmark") : QStringLiteral("doc.on.doc"),
                    symbolSize);
    copy->setKind(isCopied ? Button::Kind::confirmed : Button::Kind::bordered);
    popping->setDuration(int(animationTime(*this, popTime).count()));
    popping->start();
}

QString EditorTitleSection::remaining() const
{
    const qsizetype left = SubtitleTextField::longest - characterCount(viewModel.subtitle());
    return left <= fewRemaining ? QString::number(left) : QString();
}

void EditorTitleSection::showRemaining()
{
    remainingLabel->setText(remaining());
    remainingLabel->setVisible(!remaining().isEmpty());
}

PopupMenu* EditorTitleSection::makeMenu()
{
    auto* menu = new PopupMenu(theme, this);
    menu->addItem(QStringLiteral("doc.on.doc"), QStringLiteral("Duplicate"),
                  [this] { viewModel.duplicate(); });
    menu->addSeparator();
    menu->addDestructiveItem(QStringLiteral("trash"), QStringLiteral("Delete"),
                             [this] { viewModel.requestDelete(); });
    return menu;
}

} // namespace vellumry
