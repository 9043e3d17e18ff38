#include "notifications/NotificationCenter.h"

#include <gtest/gtest.h>

#include <memory>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;

TEST(NotificationCenter, ThereIsOneForTheProgram)
{
    EXPECT_EQ(&NotificationCenter::defaultCenter(), &NotificationCenter::defaultCenter());
}

TEST(NotificationCenter, AnnouncementsArriveAtOnceWithTheirPayload)
{
    NotificationCenter center;
    QObject observer;
    std::optional<QString> toast;
    std::optional<HotkeyConfig> hotkey;
    QObject::connect(&center, &NotificationCenter::quickSearchShowToast, &observer,
                     [&](const std::optional<QString>& text) { toast = text; });
    QObject::connect(&center, &NotificationCenter::hotkeyDidChange, &observer,
                     [&](const HotkeyConfig& config) { hotkey = config; });
    Q_EMIT center.quickSearchShowToast(u"Copied"_s);
    Q_EMIT center.hotkeyDidChange({u"f5"_s, hotkey::ModifierFlags::command});
    EXPECT_EQ(toast, u"Copied"_s);
    EXPECT_EQ(hotkey, (HotkeyConfig{u"f5"_s, hotkey::ModifierFlags::command}));
}

TEST(NotificationCenter, AnObserverIsForgottenWithItsEnd)
{
    NotificationCenter center;
    auto observer = std::make_unique<QObject>();
    int calls = 0;
    QObject::connect(&center, &NotificationCenter::openMainWindow, observer.get(),
                     [&] { ++calls; });
    Q_EMIT center.openMainWindow();
    observer.reset();
    Q_EMIT center.openMainWindow();
    EXPECT_EQ(calls, 1);
}

TEST(NotificationCenter, WhatNobodyObservesIsHarmless)
{
    NotificationCenter center;
    Q_EMIT center.performSave();
    Q_EMIT center.exportSnippets();
}

} // namespace
} // namespace vellumry
