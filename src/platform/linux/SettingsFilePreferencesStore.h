#pragma once

#include "platform/PreferencesStore.h"

#include <QSettings>

#include <mutex>

namespace vellumry {

/// Preferences in an INI file under the user's configuration folder (XDG_CONFIG_HOME).
class SettingsFilePreferencesStore final : public PreferencesStore {
public:
    /// A store in the given file.
    explicit SettingsFilePreferencesStore(const QString& filePath);

    [[nodiscard]] std::optional<bool> boolean(const QString& key) const override;
    [[nodiscard]] std::optional<qint64> integer(const QString& key) const override;
    [[nodiscard]] std::optional<QString> string(const QString& key) const override;
    [[nodiscard]] std::optional<QByteArray> data(const QString& key) const override;
    [[nodiscard]] bool contains(const QString& key) const override;
    void setBoolean(const QString& key, bool value) override;
    void setInteger(const QString& key, qint64 value) override;
    void setString(const QString& key, const QString& value) override;
    void setData(const QString& key, const QByteArray& value) override;
    [[nodiscard]] bool isSaved() const override;

private:
    [[nodiscard]] QVariant value(const QString& key) const;
    void setValue(const QString& key, const QVariant& newValue);

    mutable std::mutex mutex;
    QSettings settings;
};

} // namespace vellumry
