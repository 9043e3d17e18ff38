// The states of the editor as pictures. With VELLUMRY_SCREENSHOTS set to a folder they are written
// there, to be looked at; in any case each must show what it is about.

#include "views/editor/EditorFixture.h"

#include <QDir>
#include <QImage>
#include <QScrollBar>

namespace vellumry::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

class EditorPictures : public EditorFixture {
protected:
    Snippet refund()
    {
        SnippetFields fields;
        fields.id = u"id-One"_s;
        fields.title = u"Refund confirmation"_s;
        fields.subtitle = u"Polite reply after an approved refund"_s;
        fields.collection = u"Work"_s;
        fields.content = u"Hi {{first name}},\n\nGood news: your refund of {{amount}} for order "
                         "{{order number}} has been approved. It will reach your {{payment "
                         "method}} within 3 to 5 working days.\n\nIf anything looks off, just "
                         "reply to this message and I will put it right.\n\nKind "
                         "regards,\n{{signature}}"_s;
        fields.keywords = {u"refund"_s, u"money back"_s, u"order"_s, u"apology"_s};
        fields.variables = {{u"first name"_s, u"Maren"_s},
                            {u"amount"_s, u"€48.00"_s},
                            {u"order number"_s, u"A-20417"_s},
                            {u"payment method"_s, u"credit card"_s}};
        fields.createdAt = *parseDate("2025-03-14T09:12:00.000Z");
        fields.updatedAt = fields.createdAt;
        fields.lastUsedAt = world.clock.now() - 12min;
        fields.usageCount = 128;
        fields.displayOrder = 0;
        return Snippet(fields);
    }
    Snippet queries()
    {
        Snippet snippet = refund();
        snippet.setTitle(u"Slowest queries today"_s);
        snippet.setContent(u"-- Slowest statements since {{since}}\nSELECT query, calls,\n       "
                           "round(total_ms / calls, 1) AS mean_ms,\n       round(total_ms) AS "
                           "total_ms\nFROM   statement_stats\nWHERE  calls > {{minimum "
                           "calls}}\n  AND  last_call >= '{{since}}'\nORDER  BY total_ms "
                           "DESC\nLIMIT  20;"_s);
        snippet.setVariables({{u"since"_s, u"2025-11-20 00:00"_s}, {u"minimum calls"_s, u"50"_s}});
        return snippet;
    }
    void show(const Snippet& snippet, const QSize& size = {1280, 920})
    {
        loadFour();
        world.colors.saveColors({{u"Work"_s, u"blue"_s}, {u"Home"_s, u"purple"_s}});
        content().collectionColors().refresh();
        model.updateSnippet(snippet);
        open(size);
        model.setSelectedSnippetID(snippet.id());
        QApplication::processEvents();
    }
    /// The window in both schemes; `isAbout` tells whether the picture shows what it is for.
    void picture(const QString& name, const std::function<bool(const QImage&)>& isAbout)
    {
        for (const auto scheme : {ColorScheme::light, ColorScheme::dark}) {
            theme.setScheme(scheme);
            QApplication::processEvents();
            const QImage image = content().grab().toImage();
            EXPECT_TRUE(isAbout(image)) << name.toStdString();
            save(image, name + (scheme == ColorScheme::dark ? u"-dark"_s : u"-light"_s));
        }
        theme.setScheme(ColorScheme::light);
    }
    static void save(const QImage& image, const QString& name)
    {
        const QString folder = qEnvironmentVariable("VELLUMRY_SCREENSHOTS");
        if (folder.isEmpty())
            return;
        EXPECT_TRUE(QDir().mkpath(folder));
        EXPECT_TRUE(image.save(folder + u'/' + name + u".png"_s));
    }
    /// Whether the colour stands somewhere in the widget's place.
    bool has(const QImage& image, const QWidget& widget, const QColor& color)
    {
        const qreal ratio = image.devicePixelRatio();
        const QPoint at = widget.mapTo(&content(), QPoint(0, 0));
        const QRect place(at * ratio, widget.size() * ratio);
        const QRect seen = place.intersected(image.rect());
        for (int y = seen.top(); y <= seen.bottom(); ++y)
            for (int x = seen.left(); x <= seen.right(); ++x)
                if (image.pixel(x, y) == color.rgb())
                    return true;
        return false;
    }
    [[nodiscard]] const ColorTokens& token() const { return theme.colors(); }
};

TEST_F(EditorPictures, MainWindow)
{
    show(refund());
    picture(u"editor"_s, [&](const QImage& image) {
        return has(image, text(), token().accent) && has(image, text(), token().textPrimary) &&
               !has(image, editor().toolbar(), token().draft);
    });
}

TEST_F(EditorPictures, Unsaved)
{
    show(refund(), {1024, 680});
    focus(text());
    text().moveCursor(QTextCursor::End);
    type(u"!"_s);
    text().clearFocus();
    picture(u"editor-unsaved"_s, [&](const QImage& image) {
        return has(image, editor().toolbar(), token().draft) &&
               has(image, editor().toolbar().saveButton(), token().accentFill);
    });
}

TEST_F(EditorPictures, Search)
{
    show(queries(), {1024, 680});
    openSearch(u"calls"_s);
    key(Qt::Key_Return);
    picture(u"editor-search"_s, [&](const QImage& image) {
        return has(image, search(), token().focusRing) && search().status() == u"2/4";
    });
}

TEST_F(EditorPictures, NewSnippetInANewCollection)
{
    loadFour();
    open();
    model.createSnippet();
    pass(100ms);
    QApplication::processEvents();
    pass(150ms);
    editorModel().setIsAddingNewCollection(true);
    focus(title().picker().nameField());
    type(u"Onboarding"_s);
    picture(u"editor-new"_s, [&](const QImage& image) {
        return has(image, title().picker().nameField(), token().focusRing);
    });
}

TEST_F(EditorPictures, FocusedFields)
{
    show(refund());
    const auto focusedPicture = [&](const QString& name, QWidget& field, QWidget& frame) {
        focus(field);
        picture(name, [&](const QImage& image) { return has(image, frame, token().focusRing); });
    };
    focusedPicture(u"editor-focus-title"_s, title().titleField(), title().titleField());
    title().subtitleField().setText(QString(190, u's'));
    focus(title().subtitleField());
    type(u"x"_s);
    focusedPicture(u"editor-focus-subtitle"_s, title().subtitleField(), title().subtitleField());
    focusedPicture(u"editor-focus-content"_s, text(), *text().parentWidget());
    focusedPicture(u"editor-focus-variable"_s, *variables().field(u"amount"_s),
                   *variables().field(u"amount"_s));
    focusedPicture(u"editor-focus-tag"_s, *keywords().keywordTags().at(1),
                   *keywords().keywordTags().at(1));
    focusedPicture(u"editor-focus-keyword"_s, keywordField(), *keywordField().parentWidget());
    title().picker().chip().setFocus(Qt::TabFocusReason);
    focusedPicture(u"editor-focus-chip"_s, title().picker().chip(), title().picker().chip());
}

TEST_F(EditorPictures, SavedAndCopied)
{
    show(refund(), {1024, 680});
    click(&title().copyButton());
    click(&editor().toolbar().saveButton());
    picture(u"editor-saved-copied"_s,
            [&](const QImage& image) { return has(image, title().copyButton(), token().success); });
}

TEST_F(EditorPictures, Menus)
{
    show(refund(), {1024, 680});
    for (const auto scheme : {ColorScheme::light, ColorScheme::dark}) {
        theme.setScheme(scheme);
        const QString tail = scheme == ColorScheme::dark ? u"-dark"_s : u"-light"_s;
        std::unique_ptr<PopupMenu> more(title().makeMenu());
        more->popup({0, 0});
        const QImage actions = more->grab().toImage();
        save(actions, u"editor-more-menu"_s + tail);
        std::unique_ptr<PopupMenu> choice(title().picker().makeMenu());
        choice->popup({0, 0});
        choice->setActiveAction(choice->actions().at(1));
        const QImage image = choice->grab().toImage();
        save(image, u"editor-collection-menu"_s + tail);
        // The swatches stand behind the marks.
        const QRect row = choice->actionGeometry(choice->actions().at(0));
        const QPoint swatch(row.x() + 9 + 16 + 9 + 8, row.center().y());
        EXPECT_EQ(image.pixelColor(swatch * image.devicePixelRatio()).rgb(),
                  content().collectionColors().color(u"Work"_s).rgb());
    }
}

TEST_F(EditorPictures, FullScreen)
{
    Snippet snippet = queries();
    snippet.setTitle(u"Release checklist.md"_s);
    show(snippet, {1024, 680});
    picture(u"editor-save-as-file"_s,
            [&](const QImage&) { return contents().saveAsFileButton().isVisible(); });
    click(&contents().fullScreenButton());
    pass(100ms);
    openSearch(u"calls"_s);
    FullScreenEditorView& view = *contents().fullScreenEditor();
    picture(u"full-screen-editor"_s, [&](const QImage& image) {
        return has(image, view, token().accentFill) && has(image, view.search(), token().focusRing);
    });
}

TEST_F(EditorPictures, MinimumSize)
{
    show(refund(), {928, 560});
    picture(u"editor-minimum-size"_s,
            [&](const QImage& image) { return has(image, text(), token().accent); });
}

TEST_F(EditorPictures, LargeText)
{
    theme.setTextScale(1.6);
    show(refund(), {1024, 680});
    EXPECT_EQ(text().verticalScrollBar()->value(), 0) << "it begins with its beginning";
    picture(u"editor-large-text"_s,
            [&](const QImage& image) { return has(image, text(), token().accent); });
}

TEST_F(EditorPictures, TextsOfTheWorld)
{
    Snippet snippet = refund();
    snippet.setTitle(u"日本語のタイトル 🎉"_s);
    snippet.setSubtitle(u"שלום עולם"_s);
    snippet.setContent(u"日本語のテキスト、{{名前}} 様\nשלום {{שם}} "
                       u"עולם\n🎉👩‍👩‍👧‍👦🇩🇪 "
                       u"-> "
                       u"!= "
                       "signs\nمرحبا بالعالم"_s);
    snippet.setVariables({{u"名前"_s, u"山田"_s}, {u"שם"_s, u"דוד"_s}});
    snippet.setKeywords({u"返金"_s, u"שלום"_s, u"🎉"_s});
    show(snippet);
    picture(u"editor-world"_s,
            [&](const QImage& image) { return has(image, text(), token().textPrimary); });
}

} // namespace
} // namespace vellumry::test
