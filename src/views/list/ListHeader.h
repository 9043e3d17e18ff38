#pragma once

#include "views/common/Theme.h"

#include <QWidget>

#include <optional>

namespace vellumry {

class Button;

/// The header of the list: what is listed, how much of it, and the button for a new snippet.
class ListHeader : public QWidget {
    Q_OBJECT

public:
    struct Contents {
        QString title;
        std::optional<QColor> collectionColor; ///< none for all snippets, which have a symbol
        qsizetype count = 0;
    };

    /// The theme outlives the header.
    explicit ListHeader(const Theme& theme, QWidget* parent = nullptr);

    void setContents(const Contents& contents);
    [[nodiscard]] const Contents& contents() const { return shown; }
    [[nodiscard]] Button* addButton() const { return add; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    const Theme& theme;
    Contents shown;
    Button* add;
};

} // namespace vellumry
