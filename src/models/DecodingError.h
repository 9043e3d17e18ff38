#pragma once

#include <QString>

#include <exception>

namespace vellumry {

/// A text that is no JSON, or JSON that is not the wanted record.
class DecodingError : public std::exception {
public:
    /// `reason` in words; `path` is where in the document, such as "snippets[3].updatedAt".
    explicit DecodingError(QString reason, QString path = {});

    /// The reason alone.
    [[nodiscard]] const QString& debugDescription() const { return reason; }

    /// Where and why, for the diagnostic lines.
    [[nodiscard]] QString description() const;

    /// The same error seen from one level further out.
    [[nodiscard]] DecodingError within(const QString& outerPath) const;

    [[nodiscard]] const char* what() const noexcept override;

private:
    QString reason;
    QString path;
    QByteArray text;
};

} // namespace vellumry
