#include "views/settings/HotkeyRecorderButton.h"

#include "views/common/KeyboardText.h"
#include "views/common/Label.h"
#include "views/common/Strokes.h"
#include "views/settings/KeyCapView.h"

#include <QHBoxLayout>
#include <QPainter>

#include <utility>

namespace vellumry {

namespace {

constexpr int boxHeight = 34;
constexpr int boxPadding = 7;
constexpr int endPadding = 10; ///< behind the text
constexpr int radius = 8;
constexpr int capGap = 4;
constexpr int textGap = 8;

} // namespace

HotkeyRecorderButton::HotkeyRecorderButton(const Theme& look,
                                           HotkeyRecorderView::Callbacks callbacks, QWidget* parent)
    : Button(look, Kind::ghost, {}, parent), theme(look),
      recorder(
          new HotkeyRecorderView({.onHotkeyRecorded = std::move(callbacks.onHotkeyRecorded),
                                  .onRecordingCancelled =
                                      [this, cancel = std::move(callbacks.onRecordingCancelled)] {
                                          // A click on the button itself gives the keys back and
                                          // then ends the recording.
                                          if (!hasFocus())
                                              cancel();
                                      },
                                  .onModifiersChanged = std::move(callbacks.onModifiersChanged)},
                                 this)),
      prompt(new Label(theme, TextStyle::labelMedium, &ColorTokens::accent,
                       QStringLiteral("Press shortcut..."), this))
{
    prompt->setAttribute(Qt::WA_TransparentForMouseEvents);
    // A button has another one for its children.
    prompt->setForegroundRole(QPalette::WindowText);
    auto* keys = new QHBoxLayout;
    keys->setSpacing(capGap);
    for (KeyCapView*& cap : caps) {
        cap = new KeyCapView(theme, this);
        keys->addWidget(cap);
    }
    auto* line = new QHBoxLayout(this);
    line->setSpacing(textGap);
    line->addLayout(keys);
    line->addWidget(prompt);
    showCaps();
}

void HotkeyRecorderButton::setState(const State& newState)
{
    if (state == newState)
        return;
    const bool wasRecording = std::exchange(state, newState).isRecording;
    showCaps();
    if (wasRecording != state.isRecording)
        setRecording(state.isRecording);
    update();
}

void HotkeyRecorderButton::setRecording(bool isRecording)
{
    // Else a click on the button would take the focus to whatever is behind it.
    setFocusPolicy(isRecording ? Qt::StrongFocus : Qt::TabFocus);
    if (isRecording) {
        ringBefore = isRingShown();
        recorder->setRecording(true);
        return;
    }
    const QWidget* const focus = window()->focusWidget();
    const bool hadKeys = focus && recorder->isAncestorOf(focus);
    recorder->setRecording(false);
    // Who works with the keyboard goes on from here.
    if (hadKeys && isVisible())
        setFocus(ringBefore ? Qt::OtherFocusReason : Qt::MouseFocusReason);
}

void HotkeyRecorderButton::showCaps()
{
    QStringList keys{state.trigger};
    if (state.isRecording)
        keys = keyboardCaps(HotkeyConfig::modifierSymbols(state.recordingModifiers));
    else if (state.trigger.isEmpty())
        keys = keyboardCaps(state.hotkey.keySymbols());
    QStringList spoken;
    for (size_t i = 0; i < caps.size(); ++i) {
        const QString key = keys.value(qsizetype(i));
        caps[i]->setKey(key, state.isRecording);
        caps[i]->setVisible(!key.isEmpty());
        if (!key.isEmpty())
            spoken.append(spokenCap(key));
    }
    prompt->setVisible(state.isRecording);
    constexpr int start = ringRoom + boxPadding;
    const int end = ringRoom + (state.isRecording ? endPadding : boxPadding);
    layout()->setContentsMargins(start, ringRoom, end, ringRoom);

    const QString combination = spoken.join(u'+');
    setAccessibleName(state.isRecording ? QString(prompt->text() + u' ' + combination).trimmed()
                                        : QStringLiteral("Quick Search, ") + combination);
    recorder->setSpokenText(accessibleName());
    updateGeometry();
}

QSize HotkeyRecorderButton::sizeHint() const
{
    return {layout()->sizeHint().width(),
            theme.rowHeight(boxHeight, TextStyle::captionMedium) + 2 * ringRoom};
}

void HotkeyRecorderButton::focusInEvent(QFocusEvent* event)
{
    Button::focusInEvent(event);
    if (state.isRecording)
        recorder->setRecording(true);
}

void HotkeyRecorderButton::resizeEvent(QResizeEvent* event)
{
    Button::resizeEvent(event);
    recorder->setGeometry(rect());
}

void HotkeyRecorderButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const ColorTokens& token = theme.colors();
    const QRectF box = QRectF(rect()).adjusted(ringRoom, ringRoom, -ringRoom, -ringRoom);
    if (state.isRecording) {
        fillRounded(painter, box, radius, token.accentTint);
    } else {
        fillRounded(painter, box, radius, mixed(token.card, token.cardHover, hoverProgress()));
        strokeRounded(painter, box, radius, token.strokeStrong);
    }
    if (state.isRecording || isRingShown())
        paintRing(painter, box, radius);
}

} // namespace vellumry
