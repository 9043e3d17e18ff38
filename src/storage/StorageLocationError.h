#pragma once

#include <QString>

#include <exception>

namespace vellumry {

/// Why a folder cannot hold the library. The description is shown to the user as it stands.
class StorageLocationError : public std::exception {
public:
    enum class Kind { notADirectory, notWritable, cannotCreateDirectory, writeTestFailed };

    [[nodiscard]] static StorageLocationError notADirectory(const QString& location);
    [[nodiscard]] static StorageLocationError notWritable(const QString& location);
    /// `cause` is the description of the error behind this one, here and below.
    [[nodiscard]] static StorageLocationError cannotCreateDirectory(const QString& location,
                                                                    const QString& cause);
    [[nodiscard]] static StorageLocationError writeTestFailed(const QString& location,
                                                              const QString& cause);

    [[nodiscard]] Kind kind() const { return errorKind; }
    [[nodiscard]] const QString& location() const { return folder; }
    [[nodiscard]] const QString& description() const { return words; }
    [[nodiscard]] const char* what() const noexcept override { return bytes.constData(); }

private:
    StorageLocationError(Kind errorKind, const QString& location, const QString& text);

    Kind errorKind;
    QString folder;
    QString words;
    QByteArray bytes;
};

} // namespace vellumry
