#pragma once

#include "core/Date.h"
#include "core/Scheduler.h"
#include "views/palette/PaletteRows.h"

#include <QColor>
#include <QWidget>

#include <functional>

namespace vellumry {

class CommandPaletteViewModel;
class DarkPaletteEmptyState;
class DarkSearchFieldView;
class NotificationCenter;
class PaletteListView;
class Theme;

/// The palette's contents: search field, list of rows, footer. Shows the model's state and
/// forwards input to it. Main thread only.
class CommandPaletteView : public QWidget {
    Q_OBJECT

public:
    /// What the view works with; all outlive it.
    struct Dependencies {
        CommandPaletteViewModel& viewModel;
        NotificationCenter& notifications;
        Scheduler& scheduler;
        const Clock& clock;
        const Theme& theme; ///< for the fonts; the palette is dark in every scheme
        std::function<QColor(const QString& collection)> collectionColor;
    };

    explicit CommandPaletteView(const Dependencies& dependencies, QWidget* parent = nullptr);
    ~CommandPaletteView() override;

    /// Whether the panel is showing, as its owner says. Each time it becomes true, and when the
    /// view is first shown, the model's onAppear runs.
    [[nodiscard]] bool isPresented() const { return presented; }
    void setPresented(bool isPresented);

    [[nodiscard]] DarkSearchFieldView& searchField() const { return *field; }
    [[nodiscard]] PaletteListView& list() const { return *listView; }

    /// The lines of the list, as they follow from the model's state.
    [[nodiscard]] const PaletteRows& rows() const { return currentRows; }

protected:
    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void appear();
    void updateRows();
    void scrollToSelected();
    void rowClicked(const PaletteRow& row);

    Dependencies services;
    DarkSearchFieldView* field;
    PaletteListView* listView;
    DarkPaletteEmptyState* emptyState;
    PaletteRows currentRows;
    bool presented = false;
    bool hasAppeared = false;
};

} // namespace vellumry
