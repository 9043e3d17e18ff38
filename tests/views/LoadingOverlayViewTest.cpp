#include "views/window/LoadingOverlayView.h"

#include "views/SheetFixture.h"

#include <QLineEdit>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;

class LoadingOverlayViewTest : public SheetFixture {
protected:
    LoadingOverlayView& open(const QString& text)
    {
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        auto* view = new LoadingOverlayView(theme, text);
        host.present(view, {});
        settle();
        return *view;
    }
};

TEST_F(LoadingOverlayViewTest, showsItsLine)
{
    LoadingOverlayView& view = open(u"Loading..."_s);
    EXPECT_EQ(labelTexts(view), QStringList({u"Loading..."_s}));
    const int narrow = view.width();
    view.setText(u"Migrating your data, which may take its time..."_s);
    settle();
    EXPECT_EQ(view.text(), u"Migrating your data, which may take its time..."_s);
    EXPECT_EQ(view.accessibleName(), view.text());
    EXPECT_GT(view.width(), narrow);
}

TEST_F(LoadingOverlayViewTest, keepsPeopleFromTheWindow)
{
    auto* field = new QLineEdit(&window);
    field->resize(200, 30);
    LoadingOverlayView& view = open(u"Loading..."_s);
    for (const Qt::Key each : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Tab, Qt::Key_A})
        key(each);
    EXPECT_TRUE(host.isPresenting());
    EXPECT_TRUE(field->text().isEmpty());
    EXPECT_EQ(window.childAt(20, 10), host.childAt(20, 10));
    host.dismiss(&view);
    settle();
    EXPECT_FALSE(host.isVisible());
}

TEST_F(LoadingOverlayViewTest, Picture)
{
    open(u"Migrating your data..."_s);
    picture(u"loading-overlay"_s);
}

} // namespace
} // namespace vellumry::test
