#pragma once

#include "library/DriveWorld.h"
#include "library/FolderQuestion.h"
#include "storage/StorageWorld.h"
#include "support/LogCapture.h"
#include "support/ManualBackgroundRunner.h"
#include "views/MainFixture.h"
#include "views/sheets/ScrollingSheet.h"

#include <QCursor>
#include <QDir>
#include <QImage>
#include <QLabel>
#include <QScrollArea>
#include <QSet>

#include <functional>

namespace vellumry::test {

/// A window in which sheets are shown, over files in memory, with time and background work in the
/// test's hands.
class SheetFixture : public testing::Test {
protected:
    SheetFixture()
    {
        // The pointer is over none of it.
        QCursor::setPos({5000, 5000});
        window.resize(1024, 680);
    }

    /// Shows a sheet as the program does. Escape is its own affair.
    template <typename Sheet>
    Sheet& present(Sheet* contents, const std::function<void()>& onCancel)
    {
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        host.present(contents, {.onCancel = onCancel, .firstFocus = contents->firstFocus()});
        settle();
        return *contents;
    }

    /// Lets what was asked for in later turns happen.
    static void settle()
    {
        for (int turn = 0; turn < 4; ++turn)
            QApplication::processEvents();
    }

    /// A key for whatever has the focus.
    void key(Qt::Key which, Qt::KeyboardModifiers modifiers = {})
    {
        QWidget* focus = window.focusWidget();
        QTest::keyClick(focus ? focus : &window, which, modifiers);
        settle();
    }

    static void click(QAbstractButton& button)
    {
        QTest::mouseClick(&button, Qt::LeftButton, {}, button.rect().center());
        settle();
    }

    /// What has the focus, by its name.
    [[nodiscard]] QString focused() const
    {
        const QWidget* focus = window.focusWidget();
        if (!focus)
            return {};
        if (const auto* button = qobject_cast<const QAbstractButton*>(focus);
            button && !button->text().isEmpty())
            return button->text();
        return focus->accessibleName();
    }

    /// The way of the focus from where it is, by Tab, until it comes round.
    QStringList tabWay()
    {
        QStringList way;
        for (QString name = focused(); !way.contains(name); name = focused()) {
            way.append(name);
            key(Qt::Key_Tab);
        }
        return way;
    }

    /// All texts that labels show at present.
    static QStringList labelTexts(const QWidget& sheet)
    {
        QStringList texts;
        for (const QLabel* label : sheet.findChildren<QLabel*>())
            if (label->isVisible())
                texts.append(label->text());
        return texts;
    }

    /// A picture of the window in both schemes. With VELLUMRY_SCREENSHOTS set to a folder it is
    /// written there, to be looked at. `isWhole` holds the sheet to be seen without scrolling.
    void picture(const QString& name, bool isWhole = true)
    {
        for (const auto scheme : {ColorScheme::light, ColorScheme::dark}) {
            theme.setScheme(scheme);
            QPalette colors = theme.palette();
            window.setPalette(colors);
            settle();
            const QImage image = window.grab().toImage();
            QSet<QRgb> seen;
            for (int y = 0; y < image.height(); y += 3)
                for (int x = 0; x < image.width(); x += 3)
                    seen.insert(image.pixel(x, y));
            EXPECT_GT(seen.size(), 20) << "a blank picture";
            const auto* sheet = qobject_cast<ScrollingSheet*>(host.presented());
            if (sheet) {
                EXPECT_LE(sheet->scrollArea().widget()->width(), sheet->width())
                    << qPrintable(name);
            }
            if (sheet && isWhole) {
                EXPECT_LE(sheet->scrollArea().widget()->height(),
                          sheet->scrollArea().viewport()->height())
                    << qPrintable(name);
            }
            const QString folder = qEnvironmentVariable("VELLUMRY_SCREENSHOTS");
            if (!folder.isEmpty()) {
                EXPECT_TRUE(QDir().mkpath(folder));
                EXPECT_TRUE(
                    image.save(folder + u'/' + name +
                               (scheme == ColorScheme::dark ? QStringLiteral("-dark.png")
                                                            : QStringLiteral("-light.png"))));
            }
        }
        theme.setScheme(ColorScheme::light);
        settle();
    }

    ReducedMotion reducedMotion;
    LogCapture log;
    MemoryFileSystem files;
    StorageWorld world{files, QStringLiteral("/old")};
    DriveWorld drives{files};
    ManualScheduler& scheduler = world.scheduler;
    ManualBackgroundRunner background;
    FolderQuestion question;
    Theme theme{ColorScheme::light, 1};
    QWidget window;
    SheetHost host{theme, &window};
};

} // namespace vellumry::test
