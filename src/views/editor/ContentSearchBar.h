#pragma once

#include "core/Scheduler.h"
#include "views/common/Theme.h"

#include <QVariantAnimation>
#include <QWidget>

namespace vellumry {

class Button;
class Label;
class MacTextEditor;
class SearchTextField;

/// The search in a text that is being edited: the bar above it, and the steps from match to match.
/// Not shown at first.
class ContentSearchBar : public QWidget {
    Q_OBJECT

public:
    struct Look {
        int sideMargin; ///< where the symbol begins
        int radius;     ///< of the upper corners
        int reach = 0;  ///< how far it lies over the focus line of a box that it stands in
    };

    /// All outlive the bar.
    ContentSearchBar(const Theme& theme, Scheduler& scheduler, MacTextEditor& text, Look look,
                     QWidget* parent = nullptr);

    [[nodiscard]] bool isSearchVisible() const { return shown; }
    [[nodiscard]] QString searchText() const;
    [[nodiscard]] qsizetype currentMatchIndex() const { return currentIndex; }
    [[nodiscard]] qsizetype totalMatches() const { return total; }
    /// What the bar says of the search; empty while nothing is looked for.
    [[nodiscard]] QString status() const;

    void toggleSearch();
    /// Hides the bar, forgets what was looked for and gives the focus back to the text.
    void closeSearch();
    void nextMatch();
    void previousMatch();

    [[nodiscard]] SearchTextField& field() const { return *input; }
    [[nodiscard]] Button& nextButton() const { return *next; }
    [[nodiscard]] Button& previousButton() const { return *previous; }
    [[nodiscard]] Button& closeButton() const { return *close; }

    /// How high the bar is when it is wholly shown.
    [[nodiscard]] int fullHeight() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void layOut();
    void updateMatchCount();
    void showMatch();
    void slide(bool in);
    void applyHeight();

    const Theme& theme;
    Scheduler& timing;
    MacTextEditor& text;
    Look look;
    SearchTextField* input;
    Label* statusLabel;
    Button* previous;
    Button* next;
    Button* close;
    QVariantAnimation* sliding;
    bool shown = false;
    qsizetype currentIndex = 0;
    qsizetype total = 0;
};

} // namespace vellumry
