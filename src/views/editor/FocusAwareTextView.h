#pragma once

#include <QPlainTextEdit>

#include <functional>

namespace vellumry {

/// A plain text with the keys of an editor: Tab and Shift-Tab indent, Escape and Shift-Tab leave.
/// Ctrl-Tab and Ctrl-Shift-Tab do what Tab and Shift-Tab do elsewhere: go to what stands next.
class FocusAwareTextView : public QPlainTextEdit {
    Q_OBJECT

public:
    /// What Tab inserts.
    static constexpr QStringView indentString = u"    ";

    /// Any may be empty. The last two are called when the view has given up the focus.
    struct Callbacks {
        std::function<void(bool hasFocus)> onFocusChange;
        std::function<void()> onEscape;
        std::function<void()> onShiftTab;
    };

    explicit FocusAwareTextView(QWidget* parent = nullptr);

    void setCallbacks(Callbacks handlers) { callbacks = std::move(handlers); }

    /// Indents each line of a selection over several lines, or else inserts the indentation.
    void insertTab();
    /// Takes a tab or up to four leading blanks from each line of a selection over several lines,
    /// or else leaves the view.
    void insertBacktab();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    [[nodiscard]] bool selectsSeveralLines() const;
    void changeSelectedLines(const std::function<QString(const QString& line)>& change);

    Callbacks callbacks;
};

} // namespace vellumry
