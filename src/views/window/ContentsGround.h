#pragma once

#include <QWidget>

namespace vellumry {

class Theme;

/// What stands in the main window before its contents are made: the colours of the three columns,
/// or, where it will be a welcome, that of the welcome. It needs neither the library nor a font, so
/// that a window that shows it is there at once.
class ContentsGround : public QWidget {
    Q_OBJECT

public:
    enum class Kind { columns, welcome };

    ContentsGround(const Theme& theme, Kind kind, QWidget* parent = nullptr);

Q_SIGNALS:
    /// It has been painted for the first time, in a turn after that.
    void painted();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintColumns();

    const Theme& theme;
    const Kind kind;
    bool isPainted = false;
};

} // namespace vellumry
