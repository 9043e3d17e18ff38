// The states of the settings as pictures. With VELLUMRY_SCREENSHOTS set to a folder they are
// written there, to be looked at; in any case each must show what it is about.

#include "views/SettingsFixture.h"

#include <QAbstractButton>
#include <QDir>
#include <QImage>
#include <QSet>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;

class SettingsPictures : public SettingsFixture {
protected:
    /// Takes the picture in both looks; each must have each of the colours.
    void picture(const QString& name, const QList<QColor ColorTokens::*>& colors = {})
    {
        for (const auto scheme : {ColorScheme::light, ColorScheme::dark}) {
            theme.setScheme(scheme);
            QApplication::processEvents();
            const QImage image = window->grab().toImage();
            QSet<QRgb> found;
            for (int y = 0; y < image.height(); ++y)
                for (int x = 0; x < image.width(); ++x)
                    found.insert(image.pixel(x, y));
            EXPECT_GT(found.size(), 20) << "a blank picture";
            for (const auto color : colors)
                EXPECT_TRUE(found.contains((colorTokens(scheme).*color).rgb())) << qPrintable(name);
            save(image, name + (scheme == ColorScheme::dark ? u"-dark"_s : u"-light"_s));
        }
        theme.setScheme(ColorScheme::light);
    }

    /// In full, also on a screen that is lower.
    void openInFull()
    {
        open();
        window->resize(view().sizeHint());
        QApplication::processEvents();
    }

    static void save(const QImage& image, const QString& name)
    {
        const QString folder = qEnvironmentVariable("VELLUMRY_SCREENSHOTS");
        if (folder.isEmpty())
            return;
        EXPECT_TRUE(QDir().mkpath(folder));
        EXPECT_TRUE(image.save(folder + u'/' + name + u".png"_s));
    }
};

TEST_F(SettingsPictures, Settings)
{
    world.service().startFileWatching();
    openInFull();
    picture(u"settings"_s, {&ColorTokens::sheet, &ColorTokens::group, &ColorTokens::accentFill,
                            &ColorTokens::cardSelected, &ColorTokens::keycap});
}

TEST_F(SettingsPictures, Recording)
{
    world.service().startFileWatching();
    openInFull();
    startRecording();
    press(Qt::Key_Control);
    press(Qt::Key_Shift, Qt::ControlModifier);
    picture(u"settings-recording"_s, {&ColorTokens::focusRing});
}

TEST_F(SettingsPictures, ShortcutConflict)
{
    world.service().startFileWatching();
    openInFull();
    startRecording();
    key(Qt::Key_3, Qt::ControlModifier | Qt::ShiftModifier);
    picture(u"settings-shortcut-conflict"_s, {&ColorTokens::warning});
}

TEST_F(SettingsPictures, SyncConflict)
{
    programs.append(u"dropbox"_s);
    files.makeFolder(home + u"/Dropbox"_s);
    files.makeFolder(home + u"/Dropbox/Apps/Vellumry"_s);
    world.setFolder(home + u"/Dropbox/Apps/Vellumry"_s);
    files.replace(world.folder + u"/Work.json"_s, "{}");
    files.replace(world.folder + u"/Work (conflicted copy 2024-01-31).json"_s, "{}");
    world.service().startFileWatching();
    openInFull();
    picture(u"settings-sync-conflict"_s, {&ColorTokens::warning});
}

TEST_F(SettingsPictures, WithoutLaunchAtLoginAndWithAProblem)
{
    hasLoginItem = false;
    openInFull();
    click(view().storageSection().revealButton());
    fileViewer.fail(u"no file manager answers, and xdg-open cannot be started"_s);
    view().recorderButton()->setFocus(Qt::TabFocusReason);
    picture(u"settings-problems"_s, {&ColorTokens::focusRing, &ColorTokens::danger});
}

TEST_F(SettingsPictures, LargeText)
{
    theme.setTextScale(1.6);
    world.setFolder(home + u"/a folder/with a very long path/that does not fit/into its line/at "
                           "all/Vellumry"_s);
    files.makeFolder(world.folder);
    world.service().startFileWatching();
    openInFull();
    startRecording();
    press(Qt::Key_Control);
    press(Qt::Key_Shift, Qt::ControlModifier);
    press(Qt::Key_Alt, Qt::ControlModifier | Qt::ShiftModifier);
    press(Qt::Key_Super_L, Qt::ControlModifier | Qt::ShiftModifier | Qt::AltModifier);
    picture(u"settings-large-text"_s);
    for (const auto* button : view().findChildren<QAbstractButton*>()) {
        const QRect place(button->mapTo(&view(), QPoint()), button->size());
        EXPECT_TRUE(!button->isVisible() || place.right() < view().width())
            << qPrintable(button->text());
    }
}

TEST_F(SettingsPictures, LowWindow)
{
    open();
    window->resize(500, 400);
    QApplication::processEvents();
    picture(u"settings-low"_s);
}

} // namespace
} // namespace vellumry::test
