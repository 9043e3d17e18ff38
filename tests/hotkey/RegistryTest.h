#pragma once

#include "hotkey/FakeHotKeyBackend.h"
#include "hotkey/HotKeysController.h"
#include "hotkey/Menu.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

namespace vellumry::hotkey {

/// A registry that is empty and speaks to a fake window system.
class RegistryTest : public testing::Test {
protected:
    RegistryTest()
    {
        auto fake = std::make_unique<FakeHotKeyBackend>();
        backend = fake.get();
        HotKeysController::setBackend(std::move(fake));
        HotKeysController::hotKeys.clear();
        HotKeysController::hotKeysCount = 0;
    }
    ~RegistryTest() override
    {
        HotKeysController::setBackend(nullptr);
        Menu::main = nullptr;
    }

    FakeHotKeyBackend* backend;
};

} // namespace vellumry::hotkey
