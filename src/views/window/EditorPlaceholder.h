#pragma once

#include "views/common/Theme.h"

#include <QWidget>

namespace vellumry {

/// What the editor's column shows while no snippet is open.
class EditorPlaceholder : public QWidget {
    Q_OBJECT

public:
    /// The theme outlives the placeholder.
    explicit EditorPlaceholder(const Theme& theme, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& theme;
};

} // namespace vellumry
