#pragma once

#include "platform/PreferencesStore.h"

#include <QHash>
#include <QVariant>

#include <mutex>

namespace vellumry::test {

/// Preferences that live as long as the object. As safe to use from any thread as the real ones.
class MemoryPreferences final : public PreferencesStore {
public:
    [[nodiscard]] std::optional<bool> boolean(const QString& key) const override
    {
        return value<bool>(key);
    }
    [[nodiscard]] std::optional<qint64> integer(const QString& key) const override
    {
        return value<qint64>(key);
    }
    [[nodiscard]] std::optional<QString> string(const QString& key) const override
    {
        return value<QString>(key);
    }
    [[nodiscard]] std::optional<QByteArray> data(const QString& key) const override
    {
        return value<QByteArray>(key);
    }

    [[nodiscard]] bool contains(const QString& key) const override
    {
        const std::lock_guard lock(mutex);
        return values.contains(key);
    }

    void setBoolean(const QString& key, bool newValue) override { setValue(key, newValue); }
    void setInteger(const QString& key, qint64 newValue) override { setValue(key, newValue); }
    void setString(const QString& key, const QString& newValue) override
    {
        setValue(key, newValue);
    }
    void setData(const QString& key, const QByteArray& newValue) override
    {
        setValue(key, newValue);
    }

    /// Whether it all would outlast the process.
    bool lasts = true;
    [[nodiscard]] bool isSaved() const override { return lasts; }

    /// Whether nothing was ever stored.
    [[nodiscard]] bool isEmpty() const
    {
        const std::lock_guard lock(mutex);
        return values.isEmpty();
    }

private:
    template <typename T>
    std::optional<T> value(const QString& key) const
    {
        const std::lock_guard lock(mutex);
        const QVariant stored = values.value(key);
        if (stored.metaType() != QMetaType::fromType<T>())
            return std::nullopt;
        return stored.value<T>();
    }

    template <typename T>
    void setValue(const QString& key, const T& newValue)
    {
        const std::lock_guard lock(mutex);
        values.insert(key, QVariant::fromValue(newValue));
    }

    mutable std::mutex mutex;
    QHash<QString, QVariant> values;
};

} // namespace vellumry::test
