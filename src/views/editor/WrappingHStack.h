#pragma once

#include <QLayout>

#include <memory>
#include <vector>

namespace vellumry {

/// A row that goes on in the next line where its room ends. The last item takes what is left of
/// its line.
class WrappingHStack : public QLayout {
    Q_OBJECT

public:
    WrappingHStack(int margin, int spacing, QWidget* parent);
    ~WrappingHStack() override;

    /// Puts a widget before the one at this place.
    void insertWidget(int index, QWidget* widget);

    void addItem(QLayoutItem* item) override;
    [[nodiscard]] int count() const override;
    [[nodiscard]] QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSize() const override;
    [[nodiscard]] Qt::Orientations expandingDirections() const override { return {}; }
    void setGeometry(const QRect& rect) override;

private:
    /// Places the items, or only measures them; the height that they take.
    int arrange(const QRect& rect, bool isMeasuring) const;

    std::vector<std::unique_ptr<QLayoutItem>> items;
};

} // namespace vellumry
