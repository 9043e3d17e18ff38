#pragma once

#include "platform/ApplicationWindows.h"

#include <QPointer>
#include <QStringList>

#include <memory>
#include <utility>

namespace vellumry::test {

/// A window of which only its fields exist.
class FakeWindow final : public ApplicationWindow {
public:
    explicit FakeWindow(QString name, bool isPanelWindow = false)
        : nameOfClass(std::move(name)), panel(isPanelWindow)
    {
    }

    [[nodiscard]] QString className() const override { return nameOfClass; }
    [[nodiscard]] bool isPanel() const override { return panel; }
    [[nodiscard]] bool isVisible() const override { return visible; }
    [[nodiscard]] bool hasContentView() const override { return hasContents; }
    [[nodiscard]] QSizeF frameSize() const override { return frame; }
    [[nodiscard]] bool isKey() const override { return key; }
    void makeKeyAndOrderFront() override
    {
        visible = true;
        ++frontCount;
    }
    void orderOut() override { visible = false; }
    void close() override
    {
        visible = false;
        closed = true;
        if (onClose)
            onClose();
    }
    void makeContentViewFirstResponder() override { ++firstResponderCount; }
    void setDelegate(WindowDelegate* newDelegate) override { delegate = newDelegate; }
    void setReleasedWhenClosed(bool isReleased) override { releasedWhenClosed = isReleased; }

    /// Closes the window as the person does.
    void performClose()
    {
        if (!delegate || delegate->windowShouldClose(*this))
            close();
    }

    QString nameOfClass;
    bool panel;
    bool visible = true;
    bool key = false;
    bool hasContents = true;
    bool closed = false;
    bool releasedWhenClosed = true;
    QSizeF frame{1024, 680};
    int frontCount = 0;
    int firstResponderCount = 0;
    WindowDelegate* delegate = nullptr;
    std::function<void()> onClose;
};

/// Windows that a test makes, and a main menu that it fills.
class FakeApplicationWindows final : public ApplicationWindows {
public:
    FakeWindow& add(const QString& className, bool isPanel = false)
    {
        return *all.emplace_back(std::make_unique<FakeWindow>(className, isPanel));
    }

    /// The window ends, without a word.
    void remove(const FakeWindow& window)
    {
        std::erase_if(all, [&window](const auto& each) { return each.get() == &window; });
    }

    [[nodiscard]] QList<ApplicationWindow*> windows() override
    {
        QList<ApplicationWindow*> list;
        for (const auto& window : all) {
            if (!window->closed)
                list.append(window.get());
        }
        return list;
    }
    void setRegularActivationPolicy() override { calls.append(QStringLiteral("regular")); }
    void activateIgnoringOtherApps() override { calls.append(QStringLiteral("activate")); }
    [[nodiscard]] std::vector<Menu> mainMenu() override { return menus; }
    ApplicationWindow& createWindow() override
    {
        calls.append(QStringLiteral("create"));
        FakeWindow& window = add(QStringLiteral("NSWindow"));
        window.visible = false;
        return window;
    }
    bool postSettingsShortcut() override
    {
        calls.append(QStringLiteral("shortcut"));
        return canPostKeys;
    }
    void showSettingsWindow() override { calls.append(QStringLiteral("settings")); }

    std::vector<std::unique_ptr<FakeWindow>> all;
    std::vector<Menu> menus;
    bool canPostKeys = false;
    QStringList calls;
};

} // namespace vellumry::test
