#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace vellumry {

/// The per-user store of settings: small values under plain text keys. A value of another type
/// than the one asked for counts as missing. Safe to use from any thread.
class PreferencesStore {
public:
    virtual ~PreferencesStore() = default;

    [[nodiscard]] virtual std::optional<bool> boolean(const QString& key) const = 0;
    [[nodiscard]] virtual std::optional<qint64> integer(const QString& key) const = 0;
    [[nodiscard]] virtual std::optional<QString> string(const QString& key) const = 0;
    [[nodiscard]] virtual std::optional<QByteArray> data(const QString& key) const = 0;

    /// Whether there is a value of whatever type.
    [[nodiscard]] virtual bool contains(const QString& key) const = 0;

    virtual void setBoolean(const QString& key, bool value) = 0;
    virtual void setInteger(const QString& key, qint64 value) = 0;
    virtual void setString(const QString& key, const QString& value) = 0;
    virtual void setData(const QString& key, const QByteArray& value) = 0;

    /// Whether everything that was set so far will be there in the next process. False from the
    /// first failure on.
    [[nodiscard]] virtual bool isSaved() const { return true; }

    /// The store of the running user.
    [[nodiscard]] static PreferencesStore& standard();
};

} // namespace vellumry
