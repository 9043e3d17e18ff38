#pragma once

#include <QString>

#include <exception>

namespace vellumry {

/// Why a library could not be carried to another folder. The description is shown to the user as
/// it stands.
class MigrationHelperError : public std::exception {
public:
    /// Of these only copyFailed is raised: the copied folder lacks the metadata file.
    enum class Kind { noValidDataAtDestination, copyFailed, dataIntegrityCheckFailed };

    explicit MigrationHelperError(Kind kind);

    [[nodiscard]] Kind kind() const { return errorKind; }
    [[nodiscard]] QString description() const;
    [[nodiscard]] const char* what() const noexcept override;

private:
    Kind errorKind;
};

} // namespace vellumry
