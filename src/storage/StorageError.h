#pragma once

#include <QString>

#include <exception>
#include <utility>

namespace vellumry {

/// A load or save that failed, in words for a person: what, where and why.
class StorageError : public std::exception {
public:
    explicit StorageError(QString text) : words(std::move(text)), bytes(words.toUtf8()) {}

    [[nodiscard]] const QString& description() const { return words; }
    [[nodiscard]] const char* what() const noexcept override { return bytes.constData(); }

private:
    QString words;
    QByteArray bytes;
};

} // namespace vellumry
