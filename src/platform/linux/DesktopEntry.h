#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>

#include <optional>
#include <utility>

namespace vellumry {

/// The text of a desktop entry file, see the Desktop Entry Specification. The values of its main
/// group can be changed; every other line stays as it is: comments, translations, foreign keys,
/// further groups. Values are as they stand in the file, escaped.
class DesktopEntry {
public:
    /// An entry without values.
    DesktopEntry();

    /// Reads a file. Nothing when it is no desktop entry, that is, when it says something but has
    /// no main group.
    [[nodiscard]] static std::optional<DesktopEntry> parse(QByteArrayView bytes);

    /// Of a key that stands more than once the last value, as the desktops read it.
    [[nodiscard]] std::optional<QByteArray> value(const QByteArray& key) const;
    void set(const QByteArray& key, const QByteArray& value);
    void remove(const QByteArray& key);

    [[nodiscard]] QByteArray bytes() const;

    /// The value of "Exec" that starts a program without arguments.
    [[nodiscard]] static QByteArray command(const QString& programPath);
    /// The value of "TryExec" that names a file.
    [[nodiscard]] static QByteArray file(const QString& absolutePath);

private:
    explicit DesktopEntry(QList<QByteArray> text) : lines(std::move(text)) {}

    [[nodiscard]] qsizetype groupStart() const;
    [[nodiscard]] qsizetype groupEnd() const;

    QList<QByteArray> lines;
};

} // namespace vellumry
