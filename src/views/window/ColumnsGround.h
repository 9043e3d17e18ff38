#pragma once

#include <QWidget>

namespace vellumry {

class Theme;

/// What stands in the main window before its contents are made: the colours of the three columns.
/// It needs neither the library nor a font, so that a window that shows it is there at once.
class ColumnsGround : public QWidget {
    Q_OBJECT

public:
    explicit ColumnsGround(const Theme& theme, QWidget* parent = nullptr);

Q_SIGNALS:
    /// It has been painted for the first time, in a turn after that.
    void painted();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& theme;
    bool isPainted = false;
};

} // namespace vellumry
