#pragma once

#include "views/common/Theme.h"

#include <QWidget>

namespace vellumry {

class WrappingLabel;

/// A remark on a coloured ground, with a symbol. An error is announced to a screen reader when it
/// shows.
class NoteView : public QWidget {
    Q_OBJECT

public:
    enum class Kind { information, warning, error };

    /// The theme outlives the note. `headline` stands above the text, if it is not empty.
    NoteView(const Theme& theme, Kind kind, const QString& text, QWidget* parent,
             const QString& headline = {});

    void setText(const QString& text);
    [[nodiscard]] QString text() const;
    /// The name of its symbol.
    [[nodiscard]] QString symbol() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    const Theme& theme;
    Kind kind;
    WrappingLabel* label;
};

} // namespace vellumry
