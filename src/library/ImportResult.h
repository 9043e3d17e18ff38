#pragma once

#include <QString>

#include <optional>

namespace vellumry {

/// How an import ended, and how the pill of the main window tells it.
class ImportResult {
public:
    /// `count` snippets are new or updated.
    [[nodiscard]] static ImportResult success(qsizetype count);
    [[nodiscard]] static ImportResult failure(const QString& message);

    /// Nothing for a failure.
    [[nodiscard]] const std::optional<qsizetype>& count() const { return imported; }
    /// Why the import failed; empty for a success.
    [[nodiscard]] const QString& message() const { return reason; }

    /// The line of the pill.
    [[nodiscard]] QString text() const;
    /// The name of its symbol.
    [[nodiscard]] QString symbol() const;

    friend bool operator==(const ImportResult&, const ImportResult&) = default;

private:
    std::optional<qsizetype> imported;
    QString reason;
};

} // namespace vellumry
