#include "settings/HotkeyService.h"

#include "core/Log.h"
#include "hotkey/HotKey.h"
#include "hotkey/HotKeysController.h"

#include <QPointer>

#include <algorithm>
#include <array>
#include <utility>

namespace vellumry {

namespace {

using hotkey::Key;
using hotkey::ModifierFlags;

constexpr QStringView typeName = u"HotkeyService";

struct NamedKey {
    QStringView name;
    Key key;
};

constexpr std::array<NamedKey, 64> keyTable = {{
    {u"a", Key::a},
    {u"b", Key::b},
    {u"c", Key::c},
    {u"d", Key::d},
    {u"e", Key::e},
    {u"f", Key::f},
    {u"g", Key::g},
    {u"h", Key::h},
    {u"i", Key::i},
    {u"j", Key::j},
    {u"k", Key::k},
    {u"l", Key::l},
    {u"m", Key::m},
    {u"n", Key::n},
    {u"o", Key::o},
    {u"p", Key::p},
    {u"q", Key::q},
    {u"r", Key::r},
    {u"s", Key::s},
    {u"t", Key::t},
    {u"u", Key::u},
    {u"v", Key::v},
    {u"w", Key::w},
    {u"x", Key::x},
    {u"y", Key::y},
    {u"z", Key::z},
    {u"0", Key::zero},
    {u"1", Key::one},
    {u"2", Key::two},
    {u"3", Key::three},
    {u"4", Key::four},
    {u"5", Key::five},
    {u"6", Key::six},
    {u"7", Key::seven},
    {u"8", Key::eight},
    {u"9", Key::nine},
    {u"space", Key::space},
    {u"return", Key::return_},
    {u"tab", Key::tab},
    {u"delete", Key::delete_},
    {u"escape", Key::escape},
    {u"-", Key::minus},
    {u"=", Key::equal},
    {u"[", Key::leftBracket},
    {u"]", Key::rightBracket},
    {u"\\", Key::backslash},
    {u";", Key::semicolon},
    {u"'", Key::quote},
    {u",", Key::comma},
    {u".", Key::period},
    {u"/", Key::slash},
    {u"`", Key::grave},
    {u"f1", Key::f1},
    {u"f2", Key::f2},
    {u"f3", Key::f3},
    {u"f4", Key::f4},
    {u"f5", Key::f5},
    {u"f6", Key::f6},
    {u"f7", Key::f7},
    {u"f8", Key::f8},
    {u"f9", Key::f9},
    {u"f10", Key::f10},
    {u"f11", Key::f11},
    {u"f12", Key::f12},
}};

/// Whether the window system has taken the hot key; one that it refuses stays without a reference.
bool isInForce(const hotkey::HotKey& hotKey)
{
    return std::ranges::any_of(hotkey::HotKeysController::hotKeys, [&hotKey](const auto& entry) {
        return entry.second.hotKey == &hotKey && entry.second.carbonEventHotKey.has_value();
    });
}

} // namespace

HotkeyService::HotkeyService(std::function<HotkeyConfig()> setting, QObject* parent)
    : HotkeyServiceProtocol(parent), currentSetting(std::move(setting))
{
    hotkey::HotKeysController::backend().observeDesktopShortcut([service = QPointer(this)] {
        if (!service)
            return;
        service->logDesktopShortcut();
        Q_EMIT service->desktopShortcutChanged();
    });
}

HotkeyService::~HotkeyService() = default;

std::optional<hotkey::DesktopShortcut> HotkeyService::desktopShortcut() const
{
    return hotkey::HotKeysController::backend().desktopShortcut();
}

void HotkeyService::logDesktopShortcut() const
{
    using State = hotkey::DesktopShortcut::State;
    const auto shortcut = desktopShortcut();
    if (!shortcut)
        return;
    switch (shortcut->state) {
    case State::asked:
        break;
    case State::granted:
        log(typeName, QStringLiteral("the desktop has bound the hot key: ") +
                          QString::fromStdString(shortcut->trigger));
        break;
    case State::refused:
        log(typeName, u"the desktop has not allowed the hot key");
        break;
    case State::unavailable:
        log(typeName, u"the desktop has no portal for hot keys");
        break;
    }
}

std::optional<Key> HotkeyService::keyFromString(const QString& name)
{
    const QString lower = name.toLower();
    const auto* found = std::find_if(keyTable.begin(), keyTable.end(),
                                     [&](const NamedKey& entry) { return entry.name == lower; });
    if (found == keyTable.end())
        return std::nullopt;
    return found->key;
}

void HotkeyService::registerGlobalHotkey(const QString& newKey, ModifierFlags newModifiers,
                                         std::function<void()> action)
{
    key = newKey;
    modifiers = newModifiers;
    callback = std::move(action);
    paused = false;
    performRegistration({newKey, newModifiers});
}

void HotkeyService::performRegistration(const HotkeyConfig& config)
{
    releaseHotKey();
    const auto named = keyFromString(config.key);
    if (!named) {
        log(typeName, QStringLiteral("无效的按键 '%1'").arg(config.key));
        return;
    }
    hotKey = std::make_unique<hotkey::HotKey>(*named, config.modifiers & allModifiers);
    hotKey->keyDownHandler = [service = QPointer(this)] {
        if (!service)
            return;
        // A copy, since the action may register another one.
        if (const auto action = service->callback)
            action();
    };
    log(typeName, QStringLiteral("已注册热键 ") + config.displayString());
    if (!isInForce(*hotKey))
        log(typeName, config.displayString() +
                          QStringLiteral(" has no effect: another program holds it, or the window "
                                         "system gives out no hot keys"));
}

void HotkeyService::releaseHotKey()
{
    if (!hotKey)
        return;
    hotKey->keyDownHandler = nullptr;
    hotKey.reset();
}

void HotkeyService::unregisterHotkey()
{
    key.reset();
    modifiers.reset();
    callback = nullptr;
    releaseHotKey();
}

void HotkeyService::pauseHotkey()
{
    if (paused)
        return;
    paused = true;
    releaseHotKey();
    log(typeName, u"热键已暂停");
}

void HotkeyService::resumeHotkey()
{
    if (!paused)
        return;
    paused = false;
    const HotkeyConfig setting = currentSetting();
    key = setting.key;
    modifiers = setting.modifiers;
    performRegistration(setting);
    log(typeName, QStringLiteral("热键已恢复 ") + setting.displayString());
}

} // namespace vellumry
