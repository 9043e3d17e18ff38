#include "views/sidebar/CollectionDialogs.h"

#include "library/SnippetListViewModel.h"
#include "settings/CategoryColorService.h"
#include "views/common/AlertCard.h"
#include "views/common/CollectionColors.h"
#include "views/common/SheetHost.h"
#include "views/common/TextField.h"
#include "views/sidebar/CustomColorPickerView.h"
#include "views/sidebar/RenameCollectionView.h"

#include <memory>

namespace vellumry {

namespace {

using namespace std::chrono_literals;

constexpr auto pickerDelay = 100ms;
constexpr auto alertDelay = 200ms;

} // namespace

CollectionDialogs::CollectionDialogs(const Dependencies& dependencies, QObject* parent)
    : QObject(parent), with(dependencies)
{
}

void CollectionDialogs::showRename(const QString& name)
{
    toRename = name;
    const auto sheet = std::make_shared<QWidget*>(nullptr); // known to its answers once it is there
    const auto close = [this, sheet] {
        toRename.reset();
        with.sheets.dismiss(*sheet);
    };
    auto* view = new RenameCollectionView(
        with.theme, name, name,
        [this, name, close](const QString& newName) {
            close();
            with.viewModel.renameCollection(name, newName);
        },
        close);
    *sheet = view;
    with.sheets.present(view, {.onCancel = close, .firstFocus = view->field()});
}

void CollectionDialogs::showColorPicker(const QString& name)
{
    colorPicker.collectionName = name;
    colorPicker.initialColor = with.colors.color(name);
    with.scheduler.after(pickerDelay, this, [this] {
        colorPicker.isPresented = true;
        presentColorPicker(*colorPicker.collectionName);
    });
}

void CollectionDialogs::presentColorPicker(const QString& name)
{
    const auto sheet = std::make_shared<QWidget*>(nullptr);
    const auto close = [this, sheet] {
        colorPicker.isPresented = false;
        with.sheets.dismiss(*sheet);
    };
    *sheet = new CustomColorPickerView(
        with.theme, name, colorPicker.initialColor,
        [this, name, close](const QColor& color) {
            with.colors.setColor(name, toHex(color));
            close();
        },
        close);
    with.sheets.present(*sheet, {.onCancel = close});
}

void CollectionDialogs::showDelete(const QString& name)
{
    toDelete = name;
    with.scheduler.after(alertDelay, this, [this, name] { presentDelete(name); });
}

void CollectionDialogs::presentDelete(const QString& name)
{
    const auto sheet = std::make_shared<QWidget*>(nullptr);
    const auto close = [this, sheet] {
        toDelete.reset();
        with.sheets.dismiss(*sheet);
    };
    const QString message = QStringLiteral("Are you sure you want to delete \"") + name +
                            QStringLiteral("\" and all its snippets? This action cannot be "
                                           "undone.");
    auto* alert = new AlertCard(
        with.theme,
        {.symbol = QStringLiteral("exclamationmark.triangle.fill"),
         .symbolColor = &ColorTokens::warningFill,
         .title = QStringLiteral("Delete Collection"),
         .message = message,
         .answers = {{QStringLiteral("Cancel"), Button::Kind::secondary, close, true},
                     {QStringLiteral("Delete"), Button::Kind::danger, [this, name, close] {
                          with.viewModel.deleteCollection(name);
                          with.colors.refresh();
                          close();
                      }}}});
    *sheet = alert;
    with.sheets.present(alert, {.onCancel = close, .firstFocus = alert->firstFocus()});
}

} // namespace vellumry
