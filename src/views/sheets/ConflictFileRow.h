#pragma once

#include "models/ConflictFile.h"
#include "views/sheets/SelectableButton.h"

#include <QWidget>

#include <functional>

namespace vellumry {

class Button;

/// A conflict copy: its name, and on demand when it was changed, where it lies and a way there.
class ConflictFileRow : public QWidget {
    Q_OBJECT

public:
    struct Actions {
        std::function<void()> onToggle;
        std::function<void(const QString& path)> onReveal; ///< shows a file in the file manager
    };

    /// The theme outlives the row.
    ConflictFileRow(const Theme& theme, const ConflictFile& conflict, Actions actions,
                    QWidget* parent);

    void setExpanded(bool isExpanded);
    [[nodiscard]] bool isExpanded() const { return details != nullptr; }
    [[nodiscard]] const ConflictFile& conflict() const { return shown; }
    /// The line that opens and closes the row.
    [[nodiscard]] QAbstractButton& headLine() const;
    /// None while the row is closed.
    [[nodiscard]] Button* revealButton() const { return reveal; }

private:
    class Head;

    void openDetails();

    const Theme& theme;
    ConflictFile shown;
    Actions actions;
    Head* head;
    QWidget* details = nullptr; ///< made when they are wanted
    Button* reveal = nullptr;
};

} // namespace vellumry
