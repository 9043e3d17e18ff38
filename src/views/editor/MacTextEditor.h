#pragma once

#include "core/Scheduler.h"
#include "views/common/Theme.h"
#include "views/editor/FocusAwareTextView.h"
#include "views/editor/TextMatches.h"

#include <QSet>
#include <QTextLayout>

class QTextBlock;

namespace vellumry {

class OverlayScrollBar;
class SpacedTextLayout;

/// The view in which a snippet's text is typed. What it marks, the placeholders and the matches of
/// a search, it paints beneath the letters of the lines that are seen: neither the text nor its
/// layout knows of it. A key costs the touched lines and one copy of the text, however long that
/// is.
///
/// The text keeps its line breaks as they are: only what is typed ends with a line feed.
class MacTextEditor : public FocusAwareTextView {
    Q_OBJECT

public:
    /// The theme and the scheduler outlive the view.
    MacTextEditor(const Theme& theme, Scheduler& scheduler, int margin, QWidget* parent = nullptr);

    [[nodiscard]] const QString& text() const { return source; }
    /// Only what differs is replaced, in one step that can be undone. The first text is not a step.
    void setText(const QString& text);

    /// The placeholders of these names are marked as filled.
    void setFilledVariables(const QSet<QString>& names);

    void setSearchTerm(const QString& term);
    [[nodiscard]] qsizetype matchCount() const { return matches.count(); }
    /// The match that stands out, from 0.
    void setCurrentMatchIndex(qsizetype index);
    /// Scrolls the current match into view, unless it was shown there last.
    void updateSearchHighlighting();

    /// The height that shows the whole text, or `most`.
    [[nodiscard]] int heightForText(int most) const;

    /// The colour of the text under which a match is, as painted; for an unmarked place none.
    [[nodiscard]] QColor matchColorAt(int position) const;

Q_SIGNALS:
    /// The text is another one, by the person, by undo or by setText.
    void textEdited(const vellumry::TextEdit& edit);
    /// Likewise, but only where the person did it.
    void typed();
    /// The height of the text may be another one.
    void heightChanged();
    /// What is of interest now is here, in coordinates of this view.
    void revealed(const QRect& rect);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    /// A marked part of a line.
    struct Mark {
        enum class Kind { filledPlaceholder, emptyPlaceholder, match, currentMatch };
        int start;
        int length;
        Kind kind;

        [[nodiscard]] bool isMatch() const
        {
            return kind == Kind::match || kind == Kind::currentMatch;
        }
    };

    void applyTheme();
    void chooseFont();
    void noteScripts(QStringView text);
    void follow(int position, int removed, int added);
    [[nodiscard]] qsizetype sourceOffset(int position, qsizetype from = 0) const;
    [[nodiscard]] int documentPosition(qsizetype offset) const;
    [[nodiscard]] QList<Mark> marks(const QTextBlock& block, qsizetype begin) const;
    [[nodiscard]] QList<QTextLayout::FormatRange> letterColors(const QList<Mark>& marked) const;
    void paintMarks(QPainter& painter, const QTextBlock& block, const QPointF& origin,
                    const QList<Mark>& marked) const;
    void reveal(int position, int length);

    const Theme& theme;
    SpacedTextLayout* spacedLayout;
    OverlayScrollBar* scrollBar;
    QString source;
    bool hasWideBreaks = false; ///< a break of two characters, which is one in the document
    int documentLength = 0;
    bool isSettingText = false;
    bool hasText = false;      ///< the first was set
    bool needsShaping = false; ///< letters of the text change with their neighbours
    QSet<QString> filled;
    TextMatches matches;
    qsizetype currentMatch = 0;
    QString lastSearchTerm;
    qsizetype lastMatchIndex = -1;
};

} // namespace vellumry
