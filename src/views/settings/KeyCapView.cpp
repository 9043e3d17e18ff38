#include "views/settings/KeyCapView.h"

#include "views/common/KeyCaps.h"
#include "views/common/KeyboardText.h"

#include <QPainter>

namespace vellumry {

namespace {

constexpr int side = 22;

} // namespace

KeyCapView::Colors KeyCapView::Colors::of(const ColorTokens& token)
{
    return {.normalBackground = token.keycap,
            .normalBorder = token.keycapStroke,
            .normalText = token.keycapText,
            .recordingBackground = token.keycap,
            .recordingBorder = token.accentStroke,
            .recordingText = token.accent};
}

KeyCapView::KeyCapView(const Theme& look, QWidget* parent) : QWidget(parent), theme(look)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(&theme, &Theme::changed, this, [this] {
        updateGeometry();
        update();
    });
}

void KeyCapView::setKey(const QString& symbol, bool isRecording)
{
    text = symbol;
    recording = isRecording;
    setAccessibleName(spokenCap(symbol));
    updateGeometry();
    update();
}

QSize KeyCapView::sizeHint() const
{
    return KeyCaps::capSize(theme, text, side);
}

void KeyCapView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const Colors colors = Colors::of(theme.colors());
    const KeyCaps::CapColors normal{.background = colors.normalBackground,
                                    .border = colors.normalBorder,
                                    .text = colors.normalText};
    const KeyCaps::CapColors whileRecording{.background = colors.recordingBackground,
                                            .border = colors.recordingBorder,
                                            .text = colors.recordingText};
    KeyCaps::paintCap(painter, theme, rect(), text, recording ? whileRecording : normal);
}

} // namespace vellumry
