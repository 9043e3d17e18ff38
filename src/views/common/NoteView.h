#pragma once

#include "views/common/Theme.h"

#include <QWidget>

class QHBoxLayout;

namespace vellumry {

class WrappingLabel;

/// A remark on a coloured ground: a symbol, and beside it a text that wraps. A warning or an error
/// is announced to a screen reader when it comes up and whenever it says something else. Its
/// contents margins are room around the ground, which goes with the note when it is hidden.
class NoteView : public QWidget {
    Q_OBJECT

public:
    enum class Kind { information, warning, error };

    struct Contents {
        QString symbol;
        int symbolSize = 16;
        QString headline = {}; ///< above the text, or none
        QString text = {};
    };

    /// The theme outlives the note.
    NoteView(const Theme& theme, Kind kind, const Contents& contents, QWidget* parent);

    /// One that tells what went wrong, with the usual symbol.
    [[nodiscard]] static NoteView* forErrors(const Theme& theme, QWidget* parent);

    void setText(const QString& text);
    [[nodiscard]] QString text() const;
    [[nodiscard]] const QString& symbol() const { return symbolName; }
    /// Puts a button at the end of the line.
    void addButton(QWidget* button);

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void nameByTexts();
    void announceProblem();

    const Theme& theme;
    Kind kind;
    QString symbolName;
    QString headline;
    QHBoxLayout* line;
    WrappingLabel* message;
};

} // namespace vellumry
