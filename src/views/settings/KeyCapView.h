#pragma once

#include "views/common/Theme.h"

#include <QWidget>

namespace vellumry {

/// A key as its cap, with another look while a shortcut is being recorded.
class KeyCapView final : public QWidget {
    Q_OBJECT

public:
    struct Colors {
        QColor normalBackground;
        QColor normalBorder;
        QColor normalText;
        QColor recordingBackground;
        QColor recordingBorder;
        QColor recordingText;

        [[nodiscard]] static Colors of(const ColorTokens& token);
    };

    /// The theme outlives the view.
    explicit KeyCapView(const Theme& theme, QWidget* parent = nullptr);

    /// `symbol` is what stands on the cap.
    void setKey(const QString& symbol, bool isRecording);
    [[nodiscard]] const QString& symbol() const { return text; }
    [[nodiscard]] bool isRecording() const { return recording; }
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& theme;
    QString text;
    bool recording = false;
};

} // namespace vellumry
