#pragma once

#include <QStringView>
#include <QWidget>

#include <array>

namespace vellumry {

class Theme;

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

    /// The theme outlives the view.
    explicit PaletteFooter(const Theme& theme, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& theme;
};

} // namespace vellumry
