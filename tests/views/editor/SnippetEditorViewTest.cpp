// The editor's column in the main window, by keys and clicks.

#include "views/editor/EditorFixture.h"

#include <QAccessible>
#include <QLineEdit>
#include <QScrollBar>

namespace vellumry::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

class SnippetEditor : public EditorFixture {
protected:
    static QAction* item(const PopupMenu& menu, const QString& text)
    {
        for (QAction* action : menu.actions()) {
            if (action->text() == text)
                return action;
        }
        return nullptr;
    }
    void choose(PopupMenu* menu, const QString& text)
    {
        const std::unique_ptr<PopupMenu> owned(menu);
        QAction* action = item(*menu, text);
        ASSERT_TRUE(action) << text.toStdString();
        action->trigger();
    }
    /// The list selects it a tenth of a second later.
    void createSnippet()
    {
        model.createSnippet();
        pass(100ms);
        QApplication::processEvents();
    }
    QStringList tagTexts()
    {
        QStringList texts;
        for (const KeywordTag* tag : keywords().keywordTags())
            texts.append(tag->text());
        return texts;
    }
};

// Appearance and focus

TEST_F(SnippetEditor, TheSectionsStandCloseThoughTheirButtonsShowAFocusLine)
{
    openOn(u"text {{name}}"_s);
    focus(text());
    openSearch(u"text"_s);
    QApplication::processEvents();
    const auto place = [this](const QWidget& widget) {
        return QRect(widget.mapTo(&content(), QPoint(0, 0)), widget.size());
    };
    constexpr int ring = Button::ringRoom;
    const QRect box = place(*text().parentWidget());
    EXPECT_EQ(box.top(), 202);
    const QRect fullScreen =
        place(contents().fullScreenButton()).adjusted(ring, ring, -ring, -ring);
    EXPECT_EQ(fullScreen.size(), QSize(28, 28));
    EXPECT_EQ(fullScreen.bottomRight(), QPoint(box.right(), box.top() - 1));
    QList<int> middles;
    for (const Button* button :
         {&search().previousButton(), &search().nextButton(), &search().closeButton()})
        middles.append(place(*button).center().x());
    EXPECT_EQ(middles[1] - middles[0], 28);
    EXPECT_EQ(middles[2] - middles[1], 28);
    EXPECT_EQ(place(search()).topLeft(), box.topLeft() + QPoint(1, 1));
}

TEST_F(SnippetEditor, ShowsTheSnippet)
{
    openOn(u"content of {{what}} One"_s, {{u"what"_s, u"it"_s}});
    EXPECT_EQ(title().titleField().text(), u"One");
    EXPECT_EQ(title().subtitleField().text(), u"first");
    EXPECT_EQ(title().picker().chip().text(), u"Work");
    EXPECT_EQ(text().text(), u"content of {{what}} One");
    EXPECT_EQ(variables().names(), QStringList{u"what"_s});
    EXPECT_FALSE(editorModel().isDirty());
    EXPECT_EQ(title().titleField().placeholderText(), u"Snippet Title");
    EXPECT_EQ(title().subtitleField().placeholderText(), u"Add a subtitle (optional)");
}

TEST_F(SnippetEditor, ADraftIsDirtyAtOnce)
{
    loadFour();
    open();
    editTitle(u"One"_s, u"Changed"_s);
    model.setSelectedSnippetID(u"id-One"_s);
    EXPECT_TRUE(editorModel().isDirty());
    EXPECT_TRUE(editor().toolbar().saysUnsaved());
    EXPECT_EQ(title().titleField().text(), u"Changed");
}

TEST_F(SnippetEditor, ANewSnippetsTitleIsTypedFirst)
{
    loadFour();
    open();
    createSnippet();
    pass(149ms);
    EXPECT_FALSE(title().titleField().hasFocus());
    pass(1ms);
    EXPECT_TRUE(title().titleField().hasFocus());
    EXPECT_EQ(title().titleField().selectedText(), u"New Snippet");
    type(u"Mine"_s);
    EXPECT_EQ(editorModel().title(), u"Mine");
}

TEST_F(SnippetEditor, TheQuestionThatEscapeAsksHasTheKeysThoughTheListTakesThem)
{
    loadFour();
    open();
    createSnippet();
    pass(150ms);
    focus(text());
    type(u"x"_s);
    key(Qt::Key_S, Qt::ControlModifier);
    key(Qt::Key_Escape);
    ASSERT_TRUE(sheets().isPresenting());
    QApplication::processEvents();
    EXPECT_TRUE(sheets().isAncestorOf(content().focusWidget()));
    key(Qt::Key_Escape);
    EXPECT_FALSE(sheets().isPresenting());
    EXPECT_EQ(content().focusWidget(), &cards());
}

TEST_F(SnippetEditor, WhoComesBackToANewSnippetDoesNotTypeItsTitle)
{
    loadFour();
    open();
    createSnippet();
    const QString id = *model.selectedSnippetID();
    pass(150ms);
    clickCard(u"One"_s);
    model.setSelectedSnippetID(id);
    QApplication::processEvents();
    pass(1s);
    EXPECT_FALSE(title().titleField().hasFocus());
}

TEST_F(SnippetEditor, ASelectedSnippetsTitleIsNot)
{
    openOn(u"text"_s);
    pass(1s);
    EXPECT_FALSE(title().titleField().hasFocus());
}

TEST_F(SnippetEditor, NotificationsMoveTheFocus)
{
    openOn(u"text"_s);
    world.notifications.focusSnippetTitle();
    EXPECT_TRUE(title().titleField().hasFocus());
    world.notifications.focusSnippetEditor();
    EXPECT_TRUE(text().hasFocus());
}

TEST_F(SnippetEditor, EscapeInAnyFieldReverts)
{
    openOn(u"text {{v}}"_s);
    int& listFocuses = counted(&N::focusSnippetList);
    int expected = 0;
    QWidget* const fields[] = {&title().titleField(), &title().subtitleField(), &text(),
                               variables().field(u"v"_s), &keywordField()};
    for (QWidget* field : fields) {
        title().titleField().setText(u"x"_s);
        editorModel().setTitle(u"Draft"_s);
        focus(*field);
        key(Qt::Key_Escape);
        EXPECT_EQ(editorModel().title(), u"One");
        EXPECT_EQ(title().titleField().text(), u"One");
        EXPECT_FALSE(editorModel().isDirty());
        EXPECT_TRUE(model.unsavedEdits().isEmpty());
        EXPECT_EQ(listFocuses, ++expected);
    }
}

TEST_F(SnippetEditor, EscapeDeletesANewEmptySnippetAndWhatWasTyped)
{
    loadFour();
    open();
    createSnippet();
    pass(150ms);
    int& listFocuses = counted(&N::focusSnippetList);
    const QString id = *model.selectedSnippetID();
    type(u"Typed"_s);
    key(Qt::Key_Escape);
    EXPECT_TRUE(world.snippet(id).id().isEmpty());
    EXPECT_FALSE(model.isUnsaved(id));
    EXPECT_EQ(listFocuses, 1);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

TEST_F(SnippetEditor, ShiftTabInTitleAndContentGoesToTheList)
{
    openOn(u"text"_s);
    int& listFocuses = counted(&N::focusSnippetList);
    focus(title().titleField());
    key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_FALSE(title().titleField().hasFocus());
    EXPECT_EQ(listFocuses, 0) << "the end of editing comes first";
    pass(0ms);
    EXPECT_EQ(listFocuses, 1);

    focus(text());
    key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(text().text(), u"text");
    EXPECT_EQ(listFocuses, 1);
    pass(0ms);
    EXPECT_EQ(listFocuses, 2);
}

TEST_F(SnippetEditor, TabGoesFromTheTitleToTheSubtitleAndBack)
{
    openOn(u"text"_s);
    focus(title().titleField());
    key(Qt::Key_Tab);
    EXPECT_TRUE(title().subtitleField().hasFocus());
    key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(title().titleField().hasFocus());
}

TEST_F(SnippetEditor, TabReachesEverything)
{
    openOn(u"text {{v}}"_s, {{u"v"_s, u"1"_s}});
    focus(title().subtitleField());
    QList<QWidget*> order;
    for (int i = 0; i < 3; ++i) {
        key(Qt::Key_Tab);
        order.append(content().focusWidget());
    }
    EXPECT_EQ(order.at(0), &contents().fullScreenButton());
    EXPECT_EQ(order.at(1), &text());
    EXPECT_EQ(order.at(2), &text()) << "in the text Tab indents";
    const QString indented = text().text();
    key(Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(content().focusWidget(), &variables().clearButton());
    EXPECT_EQ(text().text(), indented);
    key(Qt::Key_Tab);
    EXPECT_EQ(content().focusWidget(), variables().field(u"v"_s));
    key(Qt::Key_Tab);
    EXPECT_EQ(content().focusWidget(), variables().field(u"v"_s)->clearButton());
    key(Qt::Key_Tab);
    EXPECT_EQ(content().focusWidget(), &keywordField());
}

TEST_F(SnippetEditor, ControlLetsTabAndShiftTabLeaveTheTextForItsNeighbours)
{
    openOn(u"text"_s);
    int& listFocuses = counted(&N::focusSnippetList);
    focus(text());
    key(Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(content().focusWidget(), &keywordField());
    focus(text());
    text().selectAll();
    key(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(content().focusWidget(), &contents().fullScreenButton());
    pass(0ms);
    EXPECT_EQ(listFocuses, 0);
    EXPECT_EQ(text().text(), u"text");
    EXPECT_FALSE(editorModel().isDirty());
}

TEST_F(SnippetEditor, TabReachesVariablesThatWereTypedLaterBeforeTheKeywords)
{
    openOn(u"no placeholder"_s);
    focus(text());
    text().selectAll();
    type(u"{{b}}"_s);
    text().moveCursor(QTextCursor::Start);
    type(u"{{a}}"_s);
    ASSERT_EQ(variables().names(), (QStringList{u"a"_s, u"b"_s}));
    QApplication::processEvents(); // rows that join later are shown on the next turn
    TextField* const a = variables().field(u"a"_s);
    TextField* const b = variables().field(u"b"_s);
    for (TextField* field : {a, b}) {
        focus(*field);
        type(u"value"_s);
    }
    focus(text());
    key(Qt::Key_Tab, Qt::ControlModifier);
    const QList<QWidget*> order{
        &variables().clearButton(), a, a->clearButton(), b, b->clearButton(), &keywordField()};
    for (QWidget* expected : order) {
        EXPECT_EQ(content().focusWidget(), expected) << order.indexOf(expected);
        key(Qt::Key_Tab);
    }
}

// Toolbar

TEST_F(SnippetEditor, SaveSaves)
{
    openOn(u"text"_s);
    Button& save = editor().toolbar().saveButton();
    EXPECT_EQ(save.text(), u"Save");
    EXPECT_EQ(save.symbol(), u"tray.and.arrow.down");
    EXPECT_FALSE(editor().toolbar().saysUnsaved());
    EXPECT_TRUE(editor().toolbar().revertButton().isHidden());
    EXPECT_TRUE(save.isEnabled()) << "also with nothing to save";

    focus(title().titleField());
    key(Qt::Key_End);
    type(u"!"_s);
    EXPECT_TRUE(editor().toolbar().saysUnsaved());
    EXPECT_FALSE(editor().toolbar().revertButton().isHidden());
    EXPECT_EQ(saves(), 0);
    click(&save);
    EXPECT_EQ(stored().title(), u"One!");
    EXPECT_EQ(saves(), 1);
    EXPECT_EQ(save.text(), u"Saved");
    EXPECT_EQ(save.symbol(), u"checkmark");
    EXPECT_FALSE(editor().toolbar().saysUnsaved());
    pass(1499ms);
    EXPECT_EQ(save.text(), u"Saved");
    pass(1ms);
    EXPECT_EQ(save.text(), u"Save");
}

TEST_F(SnippetEditor, SaveLooksAsItsStateIs)
{
    openOn(u"text"_s);
    Button& save = editor().toolbar().saveButton();
    const auto over = [&](const QColor& top, float opacity) {
        const QColor ground = theme.colors().editor;
        const auto mix = [&](float a, float b) { return a * opacity + b * (1 - opacity); };
        return QColor::fromRgbF(mix(top.redF(), ground.redF()), mix(top.greenF(), ground.greenF()),
                                mix(top.blueF(), ground.blueF()));
    };
    const auto colorAt = [&](int x) {
        const QImage image = content().grab().toImage();
        const QPointF place = save.mapTo(&content(), QPoint(x, save.height() / 2));
        return image.pixelColor((place * image.devicePixelRatio()).toPoint());
    };
    const auto isNear = [](const QColor& a, const QColor& b) {
        return std::abs(a.red() - b.red()) < 3 && std::abs(a.green() - b.green()) < 3 &&
               std::abs(a.blue() - b.blue()) < 3;
    };
    constexpr int inFace = Button::ringRoom + 5;
    constexpr int outOfFace = Button::ringRoom - 1;
    EXPECT_TRUE(isNear(colorAt(inFace), over(theme.colors().secondaryMark, 0.35F)));
    const QColor beside = colorAt(outOfFace);
    focus(text());
    type(u"x"_s);
    EXPECT_TRUE(isNear(colorAt(inFace), theme.colors().accentFill));
    EXPECT_FALSE(isNear(colorAt(outOfFace), beside)) << "it has grown";
    click(&save);
    EXPECT_TRUE(isNear(colorAt(inFace), over(theme.colors().successFill, 0.9F)));
    pass(1500ms);
    EXPECT_TRUE(isNear(colorAt(inFace), over(theme.colors().secondaryMark, 0.35F)));
    EXPECT_TRUE(isNear(colorAt(outOfFace), beside));
}

TEST_F(SnippetEditor, TheSaveKeyActsEverywhereInTheWindow)
{
    openOn(u"text"_s);
    for (QWidget* where :
         {static_cast<QWidget*>(&text()), static_cast<QWidget*>(&keywordField()),
          static_cast<QWidget*>(&cards()), static_cast<QWidget*>(&filterField())}) {
        const qsizetype before = saves();
        focus(*where);
        key(Qt::Key_S, Qt::ControlModifier);
        EXPECT_EQ(saves(), before + 1);
    }
}

TEST_F(SnippetEditor, RevertGoesBack)
{
    openOn(u"text"_s);
    EXPECT_EQ(editor().toolbar().revertButton().toolTip(), u"Discard unsaved changes");
    focus(text());
    type(u"more "_s);
    click(&editor().toolbar().revertButton());
    EXPECT_EQ(text().text(), u"text");
    EXPECT_EQ(text().toPlainText(), u"text");
    EXPECT_FALSE(editorModel().isDirty());
    EXPECT_TRUE(model.unsavedEdits().isEmpty());
}

TEST_F(SnippetEditor, RevertInUnsavedKeepsThePanel)
{
    openOn(u"text"_s);
    focus(text());
    type(u"x"_s);
    model.selectUnsaved();
    ASSERT_EQ(shownTitles(), QStringList{u"One"_s});
    model.setSelectedSnippetID(u"id-One"_s);
    SnippetEditorView* before = &editor();
    click(&editor().toolbar().revertButton());
    EXPECT_TRUE(shownTitles().isEmpty());
    EXPECT_EQ(&editor(), before);
}

// Title and subtitle

TEST_F(SnippetEditor, ATitleTakesNoLineBreaksAndSixtyCharacters)
{
    openOn(u"text"_s);
    focus(title().titleField());
    title().titleField().selectAll();
    paste(u"two\r\nlines\n"_s);
    EXPECT_EQ(title().titleField().text(), u"twolines");
    EXPECT_EQ(editorModel().title(), u"twolines");
    title().titleField().selectAll();
    paste(QString(100, u'x'));
    EXPECT_EQ(editorModel().title(), QString(60, u'x'));
    type(u"y"_s);
    EXPECT_EQ(editorModel().title(), QString(60, u'x'));
    EXPECT_EQ(title().titleField().text(), QString(60, u'x'));
    title().titleField().selectAll();
    paste(u"👩‍👩‍👧‍👦"_s.repeated(61));
    EXPECT_EQ(editorModel().title(), u"👩‍👩‍👧‍👦"_s.repeated(60));
}

TEST_F(SnippetEditor, ACutTitleIsAnEdit)
{
    openOn(u"text"_s);
    editorModel().setTitle(QString(60, u'x'));
    editorModel().save();
    focus(title().titleField());
    key(Qt::Key_Home);
    type(u"x"_s);
    EXPECT_TRUE(editorModel().isDirty());
    EXPECT_EQ(title().titleField().cursorPosition(), 1);
}

TEST_F(SnippetEditor, WhatGoesBeyondTheLimitOfATitleCanBeUndone)
{
    openOn(u"text"_s);
    TitleTextField& field = title().titleField();
    const auto undo = [this] { key(Qt::Key_Z, Qt::ControlModifier); };
    const auto redo = [this] { key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier); };
    const auto holds = [&](const QString& expected) {
        EXPECT_EQ(field.text(), expected);
        EXPECT_EQ(editorModel().title(), expected);
    };
    focus(field);
    key(Qt::Key_End);
    const QString tail = u"abcdefghijklmnopqrs"_s.repeated(3);
    ASSERT_EQ(tail.size(), 57);
    const QString full = u"One"_s + tail;
    type(tail + u"yz"_s);
    holds(full);
    EXPECT_EQ(field.cursorPosition(), 60);
    undo();
    holds(u"One"_s);
    redo();
    holds(full);

    // In the middle the last characters give way.
    field.setCursorPosition(3);
    type(u"!"_s);
    holds(u"One!"_s + tail.left(56));
    EXPECT_EQ(field.cursorPosition(), 4);
    type(u"?"_s);
    holds(u"One!?"_s + tail.left(55));
    EXPECT_EQ(field.cursorPosition(), 5);
    undo();
    holds(u"One!"_s + tail.left(56));
    undo();
    holds(full);
    redo();
    holds(u"One!"_s + tail.left(56));

    field.selectAll();
    paste(u"a\n"_s + u"👩‍👩‍👧‍👦"_s.repeated(70));
    holds(u"a"_s + u"👩‍👩‍👧‍👦"_s.repeated(59));
    undo();
    holds(u"One!"_s + tail.left(56));
}

TEST_F(SnippetEditor, WhatAnInputMethodWritesBeyondTheLimitOfATitleCanBeUndone)
{
    openOn(u"text"_s);
    TitleTextField& field = title().titleField();
    focus(field);
    key(Qt::Key_End);
    type(QString(56, u'x'));
    const QString before = u"One"_s + QString(56, u'x');
    field.setCursorPosition(0);
    field.setCursorPosition(59); // a step of its own
    const auto compose = [&](const QString& preedit, const QString& commit) {
        QInputMethodEvent event(preedit, {});
        event.setCommitString(commit);
        QApplication::sendEvent(&field, &event);
    };
    compose(u"ni"_s, {});
    EXPECT_EQ(field.text(), before);
    compose({}, u"你好"_s);
    EXPECT_EQ(field.text(), before + u"你"_s);
    EXPECT_EQ(editorModel().title(), before + u"你"_s);
    EXPECT_EQ(field.cursorPosition(), 60);
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(editorModel().title(), before);
}

TEST_F(SnippetEditor, ReturnInTitleAndSubtitleSaves)
{
    openOn(u"text"_s);
    focus(title().titleField());
    key(Qt::Key_End);
    type(u"1"_s);
    key(Qt::Key_Return);
    EXPECT_EQ(stored().title(), u"One1");
    EXPECT_EQ(saves(), 1);
    focus(title().subtitleField());
    key(Qt::Key_End);
    type(u"2"_s);
    key(Qt::Key_Return);
    EXPECT_EQ(stored().subtitle(), u"first2");
    EXPECT_EQ(saves(), 2);
}

TEST_F(SnippetEditor, TheSubtitleCountsItsLastTwentyCharacters)
{
    openOn(u"text"_s);
    EXPECT_EQ(title().remaining(), u"");
    focus(title().subtitleField());
    title().subtitleField().selectAll();
    paste(QString(179, u'x'));
    EXPECT_EQ(title().remaining(), u"");
    type(u"y"_s);
    EXPECT_EQ(title().remaining(), u"20");
    paste(QString(100, u'z'));
    EXPECT_EQ(title().remaining(), u"0");
    EXPECT_EQ(editorModel().subtitle().size(), 200);
    title().subtitleField().selectAll();
    paste(u"a\nb"_s);
    EXPECT_EQ(editorModel().subtitle(), u"ab") << "the field has removed it before";
}

TEST_F(SnippetEditor, CopyCopies)
{
    openOn(u"Dear {{name}}"_s, {{u"name"_s, u"Ann"_s}});
    Button& copy = title().copyButton();
    EXPECT_EQ(copy.text(), u"Copy");
    EXPECT_EQ(copy.toolTip(), u"Copy to Clipboard");
    EXPECT_EQ(copy.symbol(), u"doc.on.doc");
    focus(text());
    text().moveCursor(QTextCursor::End);
    type(u"!"_s);
    click(&copy);
    EXPECT_EQ(clipboard.texts, QStringList{u"Dear Ann!"_s});
    EXPECT_EQ(stored().content(), u"Dear {{name}}!");
    EXPECT_EQ(stored().usageCount(), 1);
    EXPECT_TRUE(editor().toolbar().saysUnsaved()) << "the editor still says so";
    EXPECT_EQ(copy.text(), u"Copied");
    EXPECT_EQ(copy.symbol(), u"checkmark");
    EXPECT_EQ(editor().bottomBar().copiedText(), u"Copied 1 time");
    pass(2999ms);
    EXPECT_EQ(copy.text(), u"Copied");
    pass(1ms);
    EXPECT_EQ(copy.text(), u"Copy");
}

TEST_F(SnippetEditor, MoreActions)
{
    openOn(u"text"_s);
    EXPECT_EQ(title().moreButton().accessibleName(), u"More Actions");
    const std::unique_ptr<PopupMenu> menu(title().makeMenu());
    ASSERT_EQ(menu->actions().size(), 3);
    EXPECT_EQ(menu->actions().at(0)->text(), u"Duplicate");
    EXPECT_TRUE(menu->actions().at(1)->isSeparator());
    EXPECT_EQ(menu->actions().at(2)->text(), u"Delete");

    editorModel().setTitle(u"Working"_s);
    choose(title().makeMenu(), u"Duplicate"_s);
    EXPECT_TRUE(shownTitles().contains(u"Copy of Working"_s));
}

TEST_F(SnippetEditor, DeleteAsks)
{
    openOn(u"text"_s);
    choose(title().makeMenu(), u"Delete"_s);
    EXPECT_TRUE(model.showDeleteConfirmation());
    EXPECT_EQ(model.snippetIDToDelete(), u"id-One"_s);
}

TEST_F(SnippetEditor, MenusOpenByClickAndKey)
{
    openOn(u"text"_s);
    click(&title().moreButton());
    auto* popup = qobject_cast<PopupMenu*>(QApplication::activePopupWidget());
    ASSERT_TRUE(popup);
    EXPECT_TRUE(item(*popup, u"Duplicate"_s));
    popup->close();
    focus(title().picker().chip());
    key(Qt::Key_Space);
    popup = qobject_cast<PopupMenu*>(QApplication::activePopupWidget());
    ASSERT_TRUE(popup);
    EXPECT_TRUE(item(*popup, u"Home"_s));
    popup->close();
}

// Collection

TEST_F(SnippetEditor, TheCollectionIsChosenAndSaved)
{
    openOn(u"text"_s);
    EXPECT_EQ(title().picker().chip().toolTip(), u"Select Collection");
    const std::unique_ptr<PopupMenu> menu(title().picker().makeMenu());
    QStringList names;
    for (const QAction* action : menu->actions())
        names.append(action->isSeparator() ? u"-"_s : action->text());
    EXPECT_EQ(names, (QStringList{u"Work"_s, u"Home"_s, u"Empty"_s, u"-"_s,
                                  u"+ Create New Collection"_s}));
    EXPECT_TRUE(menu->actions().at(0)->isChecked());
    EXPECT_FALSE(menu->actions().at(1)->isChecked());

    focus(text());
    type(u"new "_s);
    choose(title().picker().makeMenu(), u"Home"_s);
    EXPECT_EQ(stored().collection(), u"Home");
    EXPECT_EQ(stored().content(), u"new text") << "all pending edits go with it";
    EXPECT_EQ(title().picker().chip().text(), u"Home");
    EXPECT_TRUE(editorModel().isDirty()) << "that is not changed by it";
}

TEST_F(SnippetEditor, AnAmpersandInACollectionsNameIsNoKey)
{
    loadFour();
    model.renameCollection(u"Home"_s, u"R&D"_s);
    openOn(world.snippet(u"id-Four"_s));
    model.setSelectedSnippetID(u"id-Four"_s);
    QApplication::processEvents();
    CollectionChip& chip = title().picker().chip();
    EXPECT_EQ(chip.text(), u"R&D");
    key(Qt::Key_D, Qt::AltModifier);
    EXPECT_FALSE(chip.isDown());

    model.setSelectedSnippetID(u"id-One"_s);
    QApplication::processEvents();
    click(&title().picker().chip());
    auto* menu = qobject_cast<PopupMenu*>(QApplication::activePopupWidget());
    ASSERT_TRUE(menu);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(menu)->child(1)->text(QAccessible::Name),
              u"R&D");
    QTest::keyClick(menu, Qt::Key_D);
    EXPECT_EQ(stored().collection(), u"Work");
    menu->actions().at(1)->trigger();
    EXPECT_EQ(stored().collection(), u"R&D");
    menu->close();
}

TEST_F(SnippetEditor, ANewCollectionIsNamed)
{
    openOn(u"text"_s);
    EditorCollectionPicker& picker = title().picker();
    EXPECT_TRUE(picker.nameField().isHidden());
    choose(picker.makeMenu(), u"+ Create New Collection"_s);
    EXPECT_TRUE(editorModel().isAddingNewCollection());
    EXPECT_TRUE(picker.chip().isHidden());
    EXPECT_TRUE(picker.nameField().hasFocus());
    EXPECT_EQ(picker.nameField().placeholderText(), u"Enter collection name");
    type(u"  "_s);
    key(Qt::Key_Return);
    EXPECT_EQ(saves(), 0) << "no name";
    EXPECT_TRUE(editorModel().isAddingNewCollection());
    type(u"Travel "_s);
    key(Qt::Key_Return);
    EXPECT_EQ(stored().collection(), u"Travel");
    EXPECT_FALSE(editorModel().isAddingNewCollection());
    EXPECT_EQ(picker.chip().text(), u"Travel");
    EXPECT_FALSE(picker.chip().isHidden());
    EXPECT_TRUE(picker.chip().hasFocus()) << "in the place of the field";
    EXPECT_TRUE(model.collections().contains(u"Travel"_s));
}

TEST_F(SnippetEditor, TheNewCollectionIsGivenUp)
{
    openOn(u"text"_s);
    EditorCollectionPicker& picker = title().picker();
    for (const bool byKey : {false, true}) {
        choose(picker.makeMenu(), u"+ Create New Collection"_s);
        type(u"Travel"_s);
        EXPECT_EQ(editorModel().newCollectionName(), u"Travel");
        if (byKey)
            key(Qt::Key_Escape);
        else
            click(picker.nameField().clearButton());
        EXPECT_FALSE(editorModel().isAddingNewCollection());
        EXPECT_EQ(editorModel().newCollectionName(), u"");
        EXPECT_EQ(picker.nameField().text(), u"");
        EXPECT_FALSE(picker.chip().isHidden());
        EXPECT_EQ(saves(), 0);
    }
}

TEST_F(SnippetEditor, ARenamedCollectionIsFollowed)
{
    openOn(u"text"_s);
    model.renameCollection(u"Work"_s, u"Office"_s);
    EXPECT_EQ(title().picker().chip().text(), u"Office");
    EXPECT_FALSE(editorModel().isDirty());
}

// Content

TEST_F(SnippetEditor, TypingIsADraft)
{
    openOn(u"text"_s);
    focus(text());
    text().moveCursor(QTextCursor::End);
    type(u"!"_s);
    EXPECT_TRUE(editorModel().isDirty());
    EXPECT_EQ(model.effectiveSnippet(u"id-One"_s)->content(), u"text!");
    EXPECT_EQ(saves(), 0);
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(model.effectiveSnippet(u"id-One"_s)->content(), u"text");
    EXPECT_TRUE(editorModel().isDirty());
}

TEST_F(SnippetEditor, TheTextBoxGrowsUpToTheWindow)
{
    openOn(u"text"_s);
    const auto boxHeight = [&] { return text().parentWidget()->height(); };
    EXPECT_EQ(boxHeight(), 320);
    focus(text());
    text().moveCursor(QTextCursor::End);
    for (int i = 0; i < 14; ++i)
        key(Qt::Key_Return);
    QApplication::processEvents();
    EXPECT_GT(boxHeight(), 320);
    const int grown = boxHeight();
    for (int i = 0; i < 60; ++i)
        key(Qt::Key_Return);
    QApplication::processEvents();
    EXPECT_GT(boxHeight(), grown);
    EXPECT_LT(boxHeight(), content().height());
}

TEST_F(SnippetEditor, SaveAsFileIsForTextFiles)
{
    openOn(u"Dear {{name}}"_s, {{u"name"_s, u"Ann"_s}});
    EXPECT_TRUE(contents().saveAsFileButton().isHidden());
    focus(title().titleField());
    key(Qt::Key_End);
    type(u".tx"_s);
    EXPECT_TRUE(contents().saveAsFileButton().isHidden());
    type(u"T"_s);
    EXPECT_FALSE(contents().saveAsFileButton().isHidden());
    EXPECT_EQ(contents().saveAsFileButton().accessibleName(), u"Save as File");
    click(&contents().saveAsFileButton());
    ASSERT_EQ(dialog.requests.size(), 1);
    EXPECT_EQ(dialog.requests.at(0).title, u"Save Snippet as File");
    EXPECT_EQ(dialog.requests.at(0).fileName, u"One.txT");
    world.files.makeFolder(u"/out"_s);
    dialog.choose(u"/out/One.txt"_s);
    EXPECT_EQ(world.files.bytes(u"/out/One.txt"_s), "Dear {{name}}");
    EXPECT_EQ(saves(), 0);
}

TEST_F(SnippetEditor, FullScreenHelp)
{
    openOn(u"text"_s);
    EXPECT_EQ(contents().fullScreenButton().accessibleName(), u"Full Screen Editing");
    EXPECT_EQ(contents().fullScreenButton().toolTip(), u"Full Screen Editing (Ctrl+Shift+F)");
}

// Search in the content

TEST_F(SnippetEditor, TheSearchIsToggled)
{
    openOn(u"text"_s);
    focus(text());
    key(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(search().isSearchVisible());
    EXPECT_EQ(search().field().placeholderText(), u"Search in content...");
    EXPECT_EQ(search().nextButton().accessibleName(), u"Next Match");
    EXPECT_EQ(search().previousButton().accessibleName(), u"Previous Match");
    EXPECT_EQ(search().closeButton().accessibleName(), u"Close Search");
    EXPECT_FALSE(search().field().hasFocus());
    pass(100ms);
    EXPECT_TRUE(search().field().hasFocus());
    type(u"ex"_s);
    key(Qt::Key_F, Qt::ControlModifier);
    EXPECT_FALSE(search().isSearchVisible());
    EXPECT_EQ(search().searchText(), u"");
    EXPECT_EQ(search().totalMatches(), 0);
    EXPECT_TRUE(text().hasFocus());
    EXPECT_TRUE(search().isHidden());
}

TEST_F(SnippetEditor, TheSearchKeyActsEverywhereInTheWindow)
{
    openOn(u"text"_s);
    focus(cards());
    key(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(search().isSearchVisible());
}

TEST_F(SnippetEditor, MatchesAreCountedAndWalked)
{
    openOn(u"word WORD Word other"_s);
    openSearch(u"word"_s);
    EXPECT_EQ(search().totalMatches(), 3);
    EXPECT_EQ(search().status(), u"1/3");
    key(Qt::Key_Return);
    EXPECT_EQ(search().status(), u"2/3");
    click(&search().nextButton());
    EXPECT_EQ(search().status(), u"3/3");
    click(&search().nextButton());
    EXPECT_EQ(search().status(), u"1/3") << "after the last comes the first";
    click(&search().previousButton());
    EXPECT_EQ(search().status(), u"3/3");
    EXPECT_EQ(text().matchColorAt(10), theme.colors().matchCurrent);
}

TEST_F(SnippetEditor, TheStatusOfASearch)
{
    openOn(u"one two"_s);
    openSearch({});
    EXPECT_EQ(search().status(), u"");
    type(u"x"_s);
    EXPECT_EQ(search().status(), u"No matches");
    key(Qt::Key_Return);
    EXPECT_EQ(search().currentMatchIndex(), 0);
    click(&search().previousButton());
    EXPECT_EQ(search().currentMatchIndex(), 0);
    focus(search().field());
    key(Qt::Key_Backspace);
    EXPECT_EQ(search().status(), u"");
}

TEST_F(SnippetEditor, TheNumberOfTheMatchStaysWhereItCan)
{
    openOn(u"a1 a2 a3 a3"_s);
    openSearch(u"a"_s);
    key(Qt::Key_Return);
    key(Qt::Key_Return);
    EXPECT_EQ(search().status(), u"3/4");
    type(u"3"_s);
    EXPECT_EQ(search().status(), u"1/2") << "past the end it goes back to the first";
    key(Qt::Key_Return);
    key(Qt::Key_Backspace);
    EXPECT_EQ(search().status(), u"2/4");
}

TEST_F(SnippetEditor, TypingKeepsTheCountRight)
{
    openOn(u"word\nword"_s);
    openSearch(u"word"_s);
    key(Qt::Key_Return);
    focus(text());
    text().moveCursor(QTextCursor::End);
    type(u" word"_s);
    EXPECT_EQ(search().status(), u"2/3");
    key(Qt::Key_Backspace);
    text().moveCursor(QTextCursor::Start);
    key(Qt::Key_Delete);
    EXPECT_EQ(search().status(), u"1/1");
    click(&editor().toolbar().revertButton());
    EXPECT_EQ(search().totalMatches(), 2) << "also where nobody typed";
}

TEST_F(SnippetEditor, EscapeInTheSearchClosesItAlone)
{
    openOn(u"text"_s);
    focus(text());
    type(u"x"_s);
    openSearch(u"text"_s);
    key(Qt::Key_Escape);
    EXPECT_FALSE(search().isSearchVisible());
    EXPECT_EQ(search().searchText(), u"");
    EXPECT_TRUE(text().hasFocus());
    EXPECT_TRUE(editorModel().isDirty()) << "nothing is reverted";
    openSearch(u"t"_s);
    click(&search().closeButton());
    EXPECT_FALSE(search().isSearchVisible());
}

// Variables

TEST_F(SnippetEditor, VariablesAreThoseOfTheText)
{
    openOn(u"no placeholder"_s);
    EXPECT_TRUE(variables().isHidden());
    focus(text());
    text().moveCursor(QTextCursor::End);
    type(u" {{a}} {{b}} {{a}}"_s);
    EXPECT_FALSE(variables().isHidden());
    EXPECT_EQ(variables().names(), (QStringList{u"a"_s, u"b"_s}));
    EXPECT_EQ(variables().sectionHeader().count(), u"0 filled");
    EXPECT_TRUE(variables().clearButton().isHidden());

    focus(*variables().field(u"b"_s));
    type(u"value"_s);
    EXPECT_EQ(editorModel().variableValues().value(u"b"_s), u"value");
    EXPECT_EQ(variables().sectionHeader().count(), u"1 filled");
    EXPECT_FALSE(variables().clearButton().isHidden());
    TextField* kept = variables().field(u"b"_s);
    focus(text());
    text().selectAll();
    paste(u"{{b}}"_s);
    EXPECT_EQ(variables().names(), QStringList{u"b"_s});
    EXPECT_EQ(variables().field(u"b"_s), kept) << "its row stays";
    EXPECT_EQ(kept->text(), u"value");
}

TEST_F(SnippetEditor, BlanksFillNoVariable)
{
    openOn(u"{{a}}"_s);
    focus(*variables().field(u"a"_s));
    type(u"  "_s);
    EXPECT_EQ(variables().sectionHeader().count(), u"0 filled");
    EXPECT_FALSE(variables().clearButton().isHidden()) << "there is a value";
}

TEST_F(SnippetEditor, VariablesAreCleared)
{
    openOn(u"{{a}} {{b}}"_s, {{u"a"_s, u"1"_s}, {u"b"_s, u"2"_s}});
    EXPECT_EQ(variables().sectionHeader().count(), u"2 filled");
    TextField& a = *variables().field(u"a"_s);
    EXPECT_EQ(a.text(), u"1");
    ASSERT_TRUE(a.clearButton());
    EXPECT_EQ(a.clearButton()->accessibleName(), u"Clear value for variable a");
    click(a.clearButton());
    EXPECT_EQ(a.text(), u"");
    EXPECT_TRUE(a.clearButton()->isHidden());
    EXPECT_EQ(editorModel().variableValues(), (QMap<QString, QString>{{u"b"_s, u"2"_s}}));
    click(&variables().clearButton());
    EXPECT_TRUE(editorModel().variableValues().isEmpty());
    EXPECT_EQ(variables().field(u"b"_s)->text(), u"");
    EXPECT_TRUE(editorModel().isDirty());
}

// Keywords

TEST_F(SnippetEditor, KeywordsAreAdded)
{
    openOn(u"text"_s);
    EXPECT_EQ(keywords().sectionHeader().count(), u"0");
    EXPECT_EQ(keywordField().placeholderText(),
              u"Optional words you might use to find this snippet.");
    focus(keywordField());
    type(u"Refund"_s);
    key(Qt::Key_Return);
    EXPECT_EQ(tagTexts(), QStringList{u"refund"_s});
    EXPECT_EQ(keywordField().text(), u"");
    EXPECT_EQ(keywordField().placeholderText(), u"Type to add more...");
    EXPECT_EQ(keywords().sectionHeader().count(), u"1");
    type(u"refund,"_s);
    EXPECT_EQ(tagTexts(), QStringList{u"refund"_s}) << "one of it is enough";
    EXPECT_EQ(keywordField().text(), u"");
    type(u"order,"_s);
    EXPECT_EQ(tagTexts(), (QStringList{u"refund"_s, u"order"_s}));
    type(u","_s);
    EXPECT_EQ(tagTexts().size(), 2) << "a lone comma adds nothing";
    EXPECT_EQ(keywordField().text(), u"");
    EXPECT_TRUE(editorModel().isDirty());
    EXPECT_EQ(saves(), 0);
}

TEST_F(SnippetEditor, WhatStandsBehindTheFirstCommaIsDropped)
{
    openOn(u"text"_s);
    focus(keywordField());
    paste(u"one,two,three"_s);
    EXPECT_EQ(tagTexts(), QStringList{u"one"_s});
    EXPECT_EQ(keywordField().text(), u"");
    paste(QString(31, u'x') + u',');
    EXPECT_EQ(tagTexts(), QStringList{u"one"_s}) << "too long";
    EXPECT_EQ(keywordField().text(), u"");
}

TEST_F(SnippetEditor, AKeywordHasThirtyCharactersAndNoLineBreaks)
{
    openOn(u"text"_s);
    focus(keywordField());
    paste(QString(40, u'x'));
    EXPECT_EQ(keywordField().text(), QString(30, u'x'));
    keywordField().selectAll();
    paste(u"a\nb\r"_s);
    EXPECT_EQ(keywordField().text(), u"ab");
}

TEST_F(SnippetEditor, WhatGoesBeyondTheLimitOfAKeywordCanBeUndone)
{
    openOn(u"text"_s);
    focus(keywordField());
    type(QString(31, u'x'));
    EXPECT_EQ(keywordField().text(), QString(30, u'x'));
    key(Qt::Key_Home);
    type(u"y"_s);
    EXPECT_EQ(keywordField().text(), u"y"_s + QString(29, u'x'));
    EXPECT_EQ(keywordField().cursorPosition(), 1);
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(keywordField().text(), QString(30, u'x'));
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(keywordField().text(), u"");
}

TEST_F(SnippetEditor, UndoBringsAKeywordBackWithoutItsComma)
{
    openOn(u"text"_s);
    focus(keywordField());
    type(u"one,"_s);
    EXPECT_EQ(tagTexts(), QStringList{u"one"_s});
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(keywordField().text(), u"one");
    EXPECT_EQ(tagTexts(), QStringList{u"one"_s});
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(keywordField().text(), u"");
    EXPECT_EQ(tagTexts(), QStringList{u"one"_s});
}

TEST_F(SnippetEditor, AnEleventhKeywordIsDropped)
{
    openOn(u"text"_s);
    focus(keywordField());
    for (int i = 0; i < 11; ++i)
        type(u"k%1,"_s.arg(i));
    EXPECT_EQ(tagTexts().size(), 10);
    EXPECT_FALSE(tagTexts().contains(u"k10"_s));
    EXPECT_EQ(keywordField().text(), u"");
}

TEST_F(SnippetEditor, KeywordsAreRemoved)
{
    openOn(u"text"_s);
    focus(keywordField());
    type(u"one,two,three,"_s);
    KeywordTag* tag = keywords().keywordTags().at(1);
    click(*tag, {4, 12});
    EXPECT_EQ(tagTexts().size(), 3) << "beside the cross";
    click(*tag, tag->crossRect().center());
    EXPECT_EQ(tagTexts(), (QStringList{u"one"_s, u"three"_s}));
    focus(*keywords().keywordTags().at(1));
    key(Qt::Key_Delete);
    EXPECT_EQ(tagTexts(), QStringList{u"one"_s});
    EXPECT_TRUE(keywordField().hasFocus());
    EXPECT_EQ(editorModel().keywords(), QStringList{u"one"_s});
}

TEST_F(SnippetEditor, AnAmpersandInAKeywordIsNoKey)
{
    openOn(u"text"_s);
    focus(keywordField());
    type(u"q&a,"_s);
    ASSERT_EQ(tagTexts(), QStringList{u"q&a"_s});
    KeywordTag* tag = keywords().keywordTags().at(0);
    key(Qt::Key_A, Qt::AltModifier);
    EXPECT_FALSE(tag->isDown());
    QAccessibleInterface* access = QAccessible::queryAccessibleInterface(tag);
    ASSERT_TRUE(access);
    EXPECT_EQ(access->text(QAccessible::Name), u"Remove q&a");
    EXPECT_EQ(access->text(QAccessible::Accelerator), u"");
}

TEST_F(SnippetEditor, RemovingTakesEveryEqualKeyword)
{
    loadFour();
    Snippet one = world.snippet(u"id-One"_s);
    one.setKeywords({u"a"_s, u"b"_s, u"a"_s});
    openOn(one);
    EXPECT_EQ(tagTexts(), (QStringList{u"a"_s, u"b"_s, u"a"_s}));
    KeywordTag* tag = keywords().keywordTags().at(0);
    click(*tag, tag->crossRect().center());
    EXPECT_EQ(tagTexts(), QStringList{u"b"_s});
}

TEST_F(SnippetEditor, ManyKeywordsWrap)
{
    openOn(u"text"_s);
    focus(keywordField());
    for (int i = 0; i < 9; ++i)
        type(u"a long keyword number %1,"_s.arg(i));
    QApplication::processEvents();
    const auto& tags = keywords().keywordTags();
    EXPECT_EQ(tags.at(0)->y(), tags.at(1)->y());
    EXPECT_GT(tags.back()->y(), tags.front()->y());
    for (const KeywordTag* tag : tags)
        EXPECT_LE(tag->geometry().right(), tag->parentWidget()->width());
    EXPECT_GE(keywordField().width(), 100);
}

// Bottom bar

TEST_F(SnippetEditor, TheBottomBarTellsTheHistory)
{
    loadFour();
    Snippet one = world.snippet(u"id-One"_s);
    one.setCreatedAt(*parseDate("2025-03-14T09:12:00.000Z"));
    openOn(one);
    EditorBottomBar& bar = editor().bottomBar();
    EXPECT_TRUE(bar.createdText().startsWith(u"Created "_s));
    EXPECT_TRUE(bar.createdText().contains(u"2025"_s));
    EXPECT_EQ(bar.copiedText(), u"Copied 0 times");
    EXPECT_EQ(bar.lastUsedText(), u"Never used");
    click(&title().copyButton());
    EXPECT_EQ(bar.copiedText(), u"Copied 1 time");
    EXPECT_EQ(bar.lastUsedText(), u"Last used just now");
    click(&title().copyButton());
    EXPECT_EQ(bar.copiedText(), u"Copied 2 times");
    world.clock.advance(12min);
    EXPECT_EQ(bar.lastUsedText(), u"Last used 12 mins ago");
    EXPECT_TRUE(bar.accessibleName().contains(u"Copied 2 times"_s));
}

TEST_F(SnippetEditor, TheBottomBarOfANarrowColumnHasTwoLines)
{
    openOn(u"text"_s);
    EXPECT_EQ(editor().bottomBar().height(), 40);
    content().resize(928, 560);
    QApplication::processEvents();
    EXPECT_EQ(editor().bottomBar().height(), 62);
}

// To screen readers

TEST_F(SnippetEditor, EverythingHasANameAndARole)
{
    openOn(u"text {{v}}"_s, {{u"v"_s, u"1"_s}});
    focus(keywordField());
    type(u"word,"_s);
    key(Qt::Key_F, Qt::ControlModifier);
    int checked = 0;
    for (QWidget* widget : editor().findChildren<QWidget*>()) {
        const bool isControl = qobject_cast<QAbstractButton*>(widget) ||
                               qobject_cast<QLineEdit*>(widget) || widget == &text();
        if (!isControl || !widget->isVisible())
            continue;
        QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(widget);
        ASSERT_TRUE(interface);
        EXPECT_FALSE(interface->text(QAccessible::Name).isEmpty())
            << widget->metaObject()->className();
        const QAccessible::Role role = interface->role();
        EXPECT_TRUE(role == QAccessible::Button || role == QAccessible::EditableText) << int(role);
        ++checked;
    }
    EXPECT_GT(checked, 12);
}

TEST_F(SnippetEditor, OtherSnippetsHaveTheirOwnEditor)
{
    openOn(u"text"_s);
    SnippetEditorViewModel* before = &editorModel();
    focus(text());
    type(u"x"_s);
    clickCard(u"Two"_s);
    EXPECT_NE(&editorModel(), before);
    EXPECT_EQ(title().titleField().text(), u"Two");
    EXPECT_FALSE(editorModel().isDirty());
    clickCard(u"One"_s);
    EXPECT_EQ(text().text(), u"xtext");
    EXPECT_TRUE(editorModel().isDirty());
}

} // namespace
} // namespace vellumry::test
