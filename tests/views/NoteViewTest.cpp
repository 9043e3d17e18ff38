#include "views/common/NoteView.h"

#include "views/AccessibleEvents.h"

#include <QCoreApplication>
#include <QShowEvent>
#include <QTest>
#include <gtest/gtest.h>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;

class NoteViewTest : public testing::Test {
protected:
    Theme theme{ColorScheme::light, 1};
    AccessibleEvents events;
};

TEST_F(NoteViewTest, IsAnnouncedWhenItComesUpAndWhenItSaysSomethingElse)
{
    NoteView note(theme, NoteView::Kind::warning, {.symbol = u"info.circle.fill"_s}, nullptr);
    note.setText(u"first"_s);
    EXPECT_EQ(events.take(&note, QAccessible::Alert), 0) << "it is not seen yet";
    note.show();
    EXPECT_EQ(events.take(&note, QAccessible::Alert), 1);
    note.setText(u"first"_s);
    EXPECT_EQ(events.take(&note, QAccessible::Alert), 0);
    note.setText(u"second"_s);
    EXPECT_EQ(events.take(&note, QAccessible::Alert), 1);
    note.hide();
    note.show();
    EXPECT_EQ(events.take(&note, QAccessible::Alert), 1);
}

TEST_F(NoteViewTest, AWindowThatIsMinimisedNoMoreAnnouncesNothing)
{
    NoteView note(theme, NoteView::Kind::error, {.symbol = u"info.circle.fill"_s, .text = u"no"_s},
                  nullptr);
    note.show();
    EXPECT_EQ(events.take(&note, QAccessible::Alert), 1);
    QShowEvent again;
    QSpontaneKeyEvent::setSpontaneous(&again);
    QCoreApplication::instance()->notify(&note, &again);
    EXPECT_EQ(events.take(&note, QAccessible::Alert), 0);
}

TEST_F(NoteViewTest, ARemarkAnnouncesNothing)
{
    NoteView note(theme, NoteView::Kind::information,
                  {.symbol = u"info.circle.fill"_s, .text = u"so it is"_s}, nullptr);
    note.show();
    EXPECT_EQ(events.take(&note, QAccessible::Alert), 0);
}

TEST_F(NoteViewTest, IsReadWithItsHeadline)
{
    NoteView note(theme, NoteView::Kind::warning,
                  {.symbol = u"info.circle.fill"_s, .headline = u"Conflict"_s}, nullptr);
    EXPECT_EQ(note.accessibleName(), u"Conflict");
    note.setText(u"2 files"_s);
    EXPECT_EQ(note.accessibleName(), u"Conflict, 2 files");
    EXPECT_EQ(note.text(), u"2 files");
    const NoteView plain(theme, NoteView::Kind::warning,
                         {.symbol = u"info.circle.fill"_s, .text = u"3 files"_s}, nullptr);
    EXPECT_EQ(plain.accessibleName(), u"3 files");
}

} // namespace
} // namespace vellumry::test
