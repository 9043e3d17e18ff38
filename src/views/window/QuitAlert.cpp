#include "views/window/QuitAlert.h"

#include "views/common/AlertCard.h"
#include "views/common/SheetHost.h"

#include <QEventLoop>
#include <QPointer>

#include <array>

namespace vellumry {

namespace {

/// The looks of the answers: to save, to discard, to stay.
constexpr std::array answerKinds{Button::Kind::primary, Button::Kind::quietDanger,
                                 Button::Kind::secondary};

} // namespace

std::optional<qsizetype> askBeforeQuit(SheetHost& sheets, const Theme& theme,
                                       const QuitQuestion& question)
{
    QEventLoop loop;
    std::optional<qsizetype> answer;
    const auto giveAnswer = [&](qsizetype position) {
        answer = position;
        loop.quit();
    };
    AlertCard::Question card{.symbol = QStringLiteral("exclamationmark.triangle.fill"),
                             .symbolColor = &ColorTokens::draft,
                             .title = question.title,
                             .message = question.informativeText,
                             .answers = {}};
    for (qsizetype i = 0; i < question.buttons.size(); ++i)
        card.answers.push_back({.text = question.buttons[i],
                                .kind = answerKinds.at(static_cast<size_t>(i)),
                                .action = [giveAnswer, i] { giveAnswer(i); },
                                .isFocused = i == 0});
    const QPointer<AlertCard> alert = new AlertCard(theme, card);
    QObject::connect(alert, &QObject::destroyed, &loop, &QEventLoop::quit);
    const QPointer<SheetHost> host = &sheets;
    sheets.present(
        alert, {.onCancel = [giveAnswer, last = question.buttons.size() - 1] { giveAnswer(last); },
                .firstFocus = alert->firstFocus()});
    loop.exec();
    if (host && alert)
        host->dismiss(alert);
    return answer;
}

} // namespace vellumry
