#pragma once

#include <QStringView>
#include <QWidget>

#include <array>

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
    /// From left to right.
    static constexpr std::array<DarkKeyboardHint, 3> hints{
        {{u"↵", u"Copy"}, {u"→", u"Open"}, {u"esc", u"Close"}},
    };

    explicit PaletteFooter(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace vellumry
