#include "hotkey/KeyCombo.h"

#include "hotkey/HotKeysController.h"

#include <limits>

namespace vellumry::hotkey {

namespace {

constexpr const char* keyCodeName = "keyCode";
constexpr const char* modifiersName = "modifiers";

std::optional<std::uint32_t> integerOf(const KeyCombo::Dictionary& dictionary, const char* name)
{
    const auto entry = dictionary.find(name);
    if (entry == dictionary.end())
        return std::nullopt;
    const auto* value = std::get_if<std::int64_t>(&entry->second);
    if (value == nullptr || *value < 0 || *value > std::numeric_limits<std::uint32_t>::max())
        return std::nullopt;
    return static_cast<std::uint32_t>(*value);
}

void append(std::vector<KeyCombo>& combos, const std::vector<KeyCombo>& more)
{
    combos.insert(combos.end(), more.begin(), more.end());
}

} // namespace

KeyCombo::KeyCombo(Key key, ModifierFlags modifiers)
    : carbonKeyCode(hotkey::carbonKeyCode(key)), carbonModifiers(modifiers.carbonFlags())
{
}

KeyCombo::KeyCombo(std::uint32_t code, std::uint32_t modifierMask)
    : carbonKeyCode(code), carbonModifiers(modifierMask)
{
}

std::optional<Key> KeyCombo::key() const
{
    return keyFromCarbonKeyCode(carbonKeyCode);
}

void KeyCombo::setKey(Key key)
{
    carbonKeyCode = hotkey::carbonKeyCode(key);
}

ModifierFlags KeyCombo::modifiers() const
{
    return ModifierFlags::fromCarbon(carbonModifiers);
}

void KeyCombo::setModifiers(ModifierFlags modifiers)
{
    carbonModifiers = modifiers.carbonFlags();
}

KeyCombo::Dictionary KeyCombo::dictionary() const
{
    return {{keyCodeName, std::int64_t{carbonKeyCode}},
            {modifiersName, std::int64_t{carbonModifiers}}};
}

std::optional<KeyCombo> KeyCombo::fromDictionary(const Dictionary& dictionary)
{
    const auto code = integerOf(dictionary, keyCodeName);
    const auto modifierMask = integerOf(dictionary, modifiersName);
    if (!code || !modifierMask)
        return std::nullopt;
    return KeyCombo(*code, *modifierMask);
}

std::string KeyCombo::description() const
{
    std::string text = modifiers().description();
    if (const auto named = key())
        text += hotkey::description(*named);
    return text;
}

std::vector<KeyCombo> KeyCombo::systemKeyCombos()
{
    std::vector<KeyCombo> combos;
    const auto reserved = HotKeysController::backend().copySymbolicHotKeys();
    if (!reserved)
        return combos;
    for (const SymbolicHotKey& entry : *reserved) {
        if (entry.isEnabled == true && entry.keyCode && entry.modifiers)
            combos.emplace_back(*entry.keyCode, *entry.modifiers);
    }
    return combos;
}

std::vector<KeyCombo> KeyCombo::keyCombos(const Menu& menu)
{
    std::vector<KeyCombo> combos;
    for (const MenuItem& item : menu.items) {
        if (const auto named = keyFromString(item.keyEquivalent))
            combos.emplace_back(*named, item.modifiers);
        append(combos, keyCombos(item.subMenu));
    }
    return combos;
}

std::vector<KeyCombo> KeyCombo::mainMenuKeyCombos()
{
    const auto menu = Menu::main ? Menu::main() : std::nullopt;
    return menu ? keyCombos(*menu) : std::vector<KeyCombo>{};
}

std::vector<KeyCombo> KeyCombo::standardKeyCombos()
{
    std::vector<KeyCombo> combos = systemKeyCombos();
    append(combos, mainMenuKeyCombos());
    return combos;
}

} // namespace vellumry::hotkey
