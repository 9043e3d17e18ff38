#pragma once

#include "views/common/Theme.h"

#include <QWidget>

#include <functional>

namespace vellumry {

class TextField;

/// A placeholder's name with the field of its value.
class EditorVariableRow : public QWidget {
    Q_OBJECT

public:
    struct Actions {
        std::function<void(const QString& value)> onChange; ///< by the person
        std::function<void()> onEscape;
    };

    /// The theme outlives the row.
    EditorVariableRow(const Theme& theme, const QString& name, Actions actions,
                      QWidget* parent = nullptr);

    [[nodiscard]] const QString& name() const { return variable; }
    void setValue(const QString& value);
    /// Of all rows but the first.
    void setHasLineAbove(bool hasLine);
    [[nodiscard]] TextField& field() const { return *input; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void applyTheme();
    [[nodiscard]] int roomForName() const;

    const Theme& theme;
    QString variable;
    Actions actions;
    TextField* input;
    bool hasLineAbove = false;
};

} // namespace vellumry
