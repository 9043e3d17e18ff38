#pragma once

#include "views/common/Theme.h"

#include <QWidget>

class QHBoxLayout;
class QLayoutItem;

namespace vellumry {

/// The line above a part of the editor: a symbol, a title, perhaps a count, and buttons at the end.
class SectionHeader : public QWidget {
    Q_OBJECT

public:
    /// The theme outlives the header.
    SectionHeader(const Theme& theme, const QString& symbol, const QString& title,
                  QWidget* parent = nullptr);

    /// What stands in the pill; empty for none.
    void setCount(const QString& text);
    [[nodiscard]] const QString& count() const { return counted; }
    void addButton(QWidget* button);

    /// For the layout of the section: the header's place there is as high as its buttons, whose
    /// focus lines reach beyond it. Raises the header.
    [[nodiscard]] QLayoutItem* makeLayoutItem();

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& theme;
    QString symbol;
    QString title;
    QString counted;
    QHBoxLayout* row;
};

} // namespace vellumry
