#pragma once

#include <QStringView>
#include <QWidget>

namespace vellumry {

/// A key and what it does.
struct DarkKeyboardHint {
    QStringView key;
    QStringView label;
};

/// The palette's foot: the program's name, and the keys.
class PaletteFooter : public QWidget {
    Q_OBJECT

public:
    explicit PaletteFooter(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace vellumry
