#pragma once

#include "models/ConflictFile.h"
#include "views/sheets/SelectableButton.h"

#include <QWidget>

#include <functional>

namespace vellumry {

class Button;
class FileViewer;
class NoteView;

/// A conflict copy: its name, and on demand when it was changed, where it lies and a way there.
class ConflictFileRow : public QWidget {
    Q_OBJECT

public:
    /// Theme and viewer outlive the row.
    ConflictFileRow(const Theme& theme, const ConflictFile& conflict, FileViewer& fileViewer,
                    const std::function<void()>& onToggle, QWidget* parent);

    void setExpanded(bool isExpanded);
    [[nodiscard]] bool isExpanded() const { return details != nullptr; }
    [[nodiscard]] const ConflictFile& conflict() const { return shown; }
    /// The line that opens and closes the row.
    [[nodiscard]] QAbstractButton& headLine() const;
    /// None while the row is closed.
    [[nodiscard]] Button* revealButton() const { return reveal; }
    /// Tells that the file could not be shown. None while the row is closed.
    [[nodiscard]] NoteView* problemNote() const { return problem; }

private:
    class Head;

    void openDetails();
    void revealFile();

    const Theme& theme;
    ConflictFile shown;
    FileViewer& viewer;
    Head* head;
    QWidget* details = nullptr; ///< made when they are wanted
    Button* reveal = nullptr;
    NoteView* problem = nullptr;
};

} // namespace vellumry
