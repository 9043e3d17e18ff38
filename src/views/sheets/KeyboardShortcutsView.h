#pragma once

#include "models/HotkeyConfig.h"
#include "views/sheets/BentoCard.h"
#include "views/sheets/ScrollingSheet.h"

#include <functional>
#include <vector>

class QGridLayout;

namespace vellumry {

/// The sheet that lists the keys of the main window. Main thread only.
class KeyboardShortcutsView : public ScrollingSheet {
    Q_OBJECT

public:
    /// Theme and scheduler outlive the view. `hotkey` is the one at present, which raises the
    /// palette.
    KeyboardShortcutsView(const Theme& theme, Scheduler& scheduler, const HotkeyConfig& hotkey,
                          std::function<void()> onClose, QWidget* parent = nullptr);

    /// What Escape does.
    void cancel() { onClose(); }
    [[nodiscard]] QWidget* firstFocus() const override;

    [[nodiscard]] const std::vector<BentoCard*>& cards() const { return shown; }
    [[nodiscard]] Button& closeButton() const { return *close; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void buildHeader();
    /// In two columns, or in one where large text needs the room.
    void arrange(int wide);

    const Theme& theme;
    std::function<void()> onClose;
    Button* close;
    std::vector<BentoCard*> shown;
    QGridLayout* grid;
    int columns = 0;
};

} // namespace vellumry
