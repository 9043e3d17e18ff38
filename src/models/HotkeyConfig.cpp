#include "models/HotkeyConfig.h"

#include <QStringView>

#include <algorithm>
#include <array>

namespace vellumry {

namespace {

struct KeyEquivalent {
    QStringView name;
    Qt::Key key;
};

constexpr std::array<KeyEquivalent, 21> keyEquivalents{{
    {u"space", Qt::Key_Space},
    {u"return", Qt::Key_Return},
    {u"enter", Qt::Key_Return},
    {u"tab", Qt::Key_Tab},
    {u"delete", Qt::Key_Backspace},
    {u"backspace", Qt::Key_Backspace},
    {u"escape", Qt::Key_Escape},
    {u"esc", Qt::Key_Escape},
    {u"up", Qt::Key_Up},
    {u"uparrow", Qt::Key_Up},
    {u"down", Qt::Key_Down},
    {u"downarrow", Qt::Key_Down},
    {u"left", Qt::Key_Left},
    {u"leftarrow", Qt::Key_Left},
    {u"right", Qt::Key_Right},
    {u"rightarrow", Qt::Key_Right},
    {u"home", Qt::Key_Home},
    {u"end", Qt::Key_End},
    {u"pageup", Qt::Key_PageUp},
    {u"pagedown", Qt::Key_PageDown},
    {u"clear", Qt::Key_Clear},
}};

struct KeySymbol {
    QStringView name;
    QStringView symbol;
};

constexpr std::array<KeySymbol, 5> keySymbolTable{{
    {u"space", u"␣"},
    {u"return", u"↩"},
    {u"tab", u"⇥"},
    {u"delete", u"⌫"},
    {u"escape", u"⎋"},
}};

} // namespace

Qt::Key HotkeyConfig::keyEquivalent() const
{
    const QString name = key.toLower();
    const auto* known = std::ranges::find(keyEquivalents, QStringView(name), &KeyEquivalent::name);
    if (known != keyEquivalents.end())
        return known->key;
    // A character may be written as a letter and its accent; Qt's keys are code points in capitals.
    const auto characters = name.normalized(QString::NormalizationForm_C).toUcs4();
    if (characters.size() == 1)
        return static_cast<Qt::Key>(QChar::toUpper(characters.front()));
    return Qt::Key_T;
}

QString HotkeyConfig::displayString() const
{
    return modifierSymbols(modifiers).join(QString()) + key.toUpper();
}

QStringList HotkeyConfig::keySymbols() const
{
    const QString name = key.toLower();
    const auto* known = std::ranges::find(keySymbolTable, QStringView(name), &KeySymbol::name);
    QStringList symbols = modifierSymbols(modifiers);
    symbols.append(known == keySymbolTable.end() ? key.toUpper() : known->symbol.toString());
    return symbols;
}

QStringList HotkeyConfig::modifierSymbols(hotkey::ModifierFlags from)
{
    QStringList symbols;
    const QString text = QString::fromStdString(from.description());
    for (const QChar symbol : text)
        symbols.append(symbol);
    return symbols;
}

} // namespace vellumry
