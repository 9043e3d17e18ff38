#pragma once

namespace vellumry {

/// How rows that are widgets of their own tell a screen reader that they are rows, and which one is
/// selected.
class AccessibleRow {
public:
    /// The property of a row widget that tells whether it is selected.
    static constexpr auto selectedKey = "isSelectedRow";

    /// Makes it so for every widget that has this property. Once for the program.
    static void install();
};

} // namespace vellumry
