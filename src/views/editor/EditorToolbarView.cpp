#include "views/editor/EditorToolbarView.h"

#include "library/SnippetEditorViewModel.h"
#include "views/common/Button.h"
#include "views/common/Label.h"
#include "views/common/Motion.h"
#include "views/common/Strokes.h"
#include "views/common/SymbolView.h"

#include <QHBoxLayout>
#include <QPainter>

namespace vellumry {

namespace {

using namespace std::chrono_literals;

constexpr int barHeight = 48;
constexpr int leftMargin = 24;
constexpr int rightMargin = 16;
constexpr int dotSize = 10;
constexpr int dotGap = 7;
constexpr int smallSymbol = 14;
constexpr qreal grownScale = 1.02;
constexpr auto growTime = 150ms;

} // namespace

EditorToolbarView::EditorToolbarView(const Theme& look, SnippetEditorViewModel& model,
                                     QWidget* parent)
    : QWidget(parent), theme(look), viewModel(model), unsaved(new QWidget(this)),
      revert(new Button(theme, Button::Kind::ghost, QStringLiteral("Revert"), this,
                        Button::Size::small)),
      save(new Button(theme, Button::Kind::rest, QStringLiteral("Save"), this)),
      growing(new QVariantAnimation(this))
{
    auto* said = new QHBoxLayout(unsaved);
    said->setContentsMargins({});
    said->setSpacing(dotGap);
    said->addWidget(new SymbolView(theme, QStringLiteral("circle.fill"), dotSize,
                                   &ColorTokens::draft, unsaved));
    said->addWidget(new Label(theme, TextStyle::label, &ColorTokens::textSecondary,
                              QStringLiteral("Unsaved changes"), unsaved));

    revert->setSymbol(QStringLiteral("arrow.uturn.backward"), smallSymbol);
    revert->setToolTip(QStringLiteral("Discard unsaved changes"));
    revert->setAccessibleDescription(revert->toolTip());

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(leftMargin, 0, rightMargin - Button::ringRoom, 0);
    row->setSpacing(Button::ringRoom);
    row->addWidget(unsaved);
    row->addWidget(revert);
    row->addStretch();
    row->addWidget(save);
    setFixedHeight(barHeight);

    growing->setStartValue(1.0);
    growing->setEndValue(grownScale);
    growing->setEasingCurve(QEasingCurve::OutCubic);
    connect(growing, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& scale) { save->setFaceScale(scale.toReal()); });

    connect(revert, &Button::clicked, this, [this] { viewModel.revertChanges(); });
    connect(save, &Button::clicked, this, [this] { viewModel.save(); });
    using M = SnippetEditorViewModel;
    connect(&viewModel, &M::isDirtyChanged, this, &EditorToolbarView::showState);
    connect(&viewModel, &M::showSaveSuccessChanged, this, &EditorToolbarView::showState);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
    showState();
}

bool EditorToolbarView::saysUnsaved() const
{
    return !unsaved->isHidden();
}

void EditorToolbarView::showState()
{
    const bool isDirty = viewModel.isDirty();
    unsaved->setVisible(isDirty);
    revert->setVisible(isDirty);

    const bool isSaved = viewModel.showSaveSuccess();
    save->setText(isSaved ? QStringLiteral("Saved") : QStringLiteral("Save"));
    save->setSymbol(isSaved ? QStringLiteral("checkmark") : QStringLiteral("tray.and.arrow.down"));
    save->setKind(isSaved   ? Button::Kind::done
                  : isDirty ? Button::Kind::primary
                            : Button::Kind::rest);
    growing->setDirection(isDirty ? QAbstractAnimation::Forward : QAbstractAnimation::Backward);
    growing->setDuration(int(animationTime(*this, growTime).count()));
    growing->start();
}

void EditorToolbarView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const qreal line = lineWidth(painter);
    painter.fillRect(QRectF(0, height() - line, width(), line), theme.colors().stroke);
}

} // namespace vellumry
