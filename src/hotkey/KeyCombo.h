#pragma once

#include "hotkey/Key.h"
#include "hotkey/Menu.h"
#include "hotkey/ModifierFlags.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace vellumry::hotkey {

/// A key with modifiers, as Carbon's key code and modifier mask. The code need not name a Key.
class KeyCombo {
public:
    /// The stored form: "keyCode" and "modifiers", both integers. A text stands for whatever else
    /// a foreign map may hold.
    using Dictionary = std::map<std::string, std::variant<std::int64_t, std::string>>;

    KeyCombo(Key key, ModifierFlags modifiers = {});
    KeyCombo(std::uint32_t code, std::uint32_t modifierMask);

    std::uint32_t carbonKeyCode;
    std::uint32_t carbonModifiers;

    /// The key that the code names, if any.
    [[nodiscard]] std::optional<Key> key() const;
    void setKey(Key key);

    [[nodiscard]] ModifierFlags modifiers() const;
    void setModifiers(ModifierFlags modifiers);

    [[nodiscard]] Dictionary dictionary() const;
    /// Nothing when one of the two is missing, is no integer or does not fit into 32 bits.
    [[nodiscard]] static std::optional<KeyCombo> fromDictionary(const Dictionary& dictionary);

    /// The modifiers' text, then the key's if the code names one: "⌥T".
    [[nodiscard]] std::string description() const;

    /// The combinations that the operating system reserves and has switched on.
    [[nodiscard]] static std::vector<KeyCombo> systemKeyCombos();
    /// The combinations of a menu and its sub-menus, in the order in which they are read.
    [[nodiscard]] static std::vector<KeyCombo> keyCombos(const Menu& menu);
    /// Those of Menu::main.
    [[nodiscard]] static std::vector<KeyCombo> mainMenuKeyCombos();
    /// The system's, then the main menu's.
    [[nodiscard]] static std::vector<KeyCombo> standardKeyCombos();

    friend bool operator==(const KeyCombo&, const KeyCombo&) = default;
};

} // namespace vellumry::hotkey
