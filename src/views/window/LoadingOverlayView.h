#pragma once

#include "views/common/Theme.h"

#include <QWidget>

namespace vellumry {

class Label;

/// A turning ring over a line of text: the contents of a sheet that nothing cancels, which keeps
/// people from the window while the library is made or moved.
class LoadingOverlayView : public QWidget {
    Q_OBJECT

public:
    /// The theme outlives the view.
    LoadingOverlayView(const Theme& theme, const QString& text, QWidget* parent = nullptr);

    [[nodiscard]] QString text() const;
    void setText(const QString& text);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    class Ring;

    Ring* ring;
    Label* label;
};

} // namespace vellumry
