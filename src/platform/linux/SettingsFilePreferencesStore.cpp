#include "platform/linux/SettingsFilePreferencesStore.h"

#include <QStandardPaths>

namespace vellumry {

SettingsFilePreferencesStore::SettingsFilePreferencesStore(const QString& filePath)
    : settings(filePath, QSettings::IniFormat)
{
}

std::optional<bool> SettingsFilePreferencesStore::boolean(const QString& key) const
{
    // An INI file holds text; only what setBoolean writes is a truth value.
    const QString text = value(key).toString();
    if (text == QLatin1StringView("true"))
        return true;
    if (text == QLatin1StringView("false"))
        return false;
    return std::nullopt;
}

std::optional<qint64> SettingsFilePreferencesStore::integer(const QString& key) const
{
    bool isNumber = false;
    const qint64 number = value(key).toString().toLongLong(&isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

std::optional<QString> SettingsFilePreferencesStore::string(const QString& key) const
{
    const QVariant stored = value(key);
    // What is no text, such as the list that a comma makes, would become an empty one.
    return stored.typeId() == QMetaType::QString ? std::optional(stored.toString()) : std::nullopt;
}

std::optional<QByteArray> SettingsFilePreferencesStore::data(const QString& key) const
{
    const QVariant stored = value(key);
    return stored.isValid() ? std::optional(stored.toByteArray()) : std::nullopt;
}

bool SettingsFilePreferencesStore::contains(const QString& key) const
{
    const std::lock_guard lock(mutex);
    return settings.contains(key);
}

void SettingsFilePreferencesStore::setBoolean(const QString& key, bool value)
{
    setValue(key, value);
}

void SettingsFilePreferencesStore::setInteger(const QString& key, qint64 value)
{
    setValue(key, value);
}

void SettingsFilePreferencesStore::setString(const QString& key, const QString& value)
{
    setValue(key, value);
}

void SettingsFilePreferencesStore::setData(const QString& key, const QByteArray& value)
{
    setValue(key, value);
}

bool SettingsFilePreferencesStore::isSaved() const
{
    const std::lock_guard lock(mutex);
    return settings.status() == QSettings::NoError;
}

QVariant SettingsFilePreferencesStore::value(const QString& key) const
{
    const std::lock_guard lock(mutex);
    return settings.value(key);
}

void SettingsFilePreferencesStore::setValue(const QString& key, const QVariant& newValue)
{
    const std::lock_guard lock(mutex);
    settings.setValue(key, newValue);
    settings.sync();
}

PreferencesStore& PreferencesStore::standard()
{
    static SettingsFilePreferencesStore store(
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
        QStringLiteral("/vellumry/vellumry.conf"));
    return store;
}

} // namespace vellumry
