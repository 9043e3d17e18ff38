#include "views/editor/EditorCollectionPicker.h"

#include "library/SnippetEditorViewModel.h"
#include "views/common/Button.h"
#include "views/common/CollectionColors.h"
#include "views/common/PopupMenu.h"
#include "views/common/TextField.h"
#include "views/editor/CollectionChip.h"

#include <QHBoxLayout>
#include <QShortcut>

namespace vellumry {

namespace {

constexpr int fieldWidth = 236;
constexpr int fieldHeight = 28;
constexpr int ring = Button::ringRoom;

} // namespace

EditorCollectionPicker::EditorCollectionPicker(const Theme& look, SnippetEditorViewModel& model,
                                               CollectionColors& collectionColors, QWidget* parent)
    : QWidget(parent), theme(look), viewModel(model), colors(collectionColors),
      present(new CollectionChip(theme, this)),
      field(new TextField(theme, QStringLiteral("Enter collection name"), this, fieldHeight))
{
    field->setMaximumWidth(fieldWidth);
    field->addClearButton(QStringLiteral("Cancel"), true);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->setSpacing(0);
    row->addWidget(present);
    row->addSpacing(ring);
    row->addWidget(field, fieldWidth);
    row->addStretch(1);

    connect(present, &QAbstractButton::clicked, this, &EditorCollectionPicker::openMenu);
    const auto cancel = [this] {
        viewModel.setIsAddingNewCollection(false);
        viewModel.setNewCollectionName({});
    };
    connect(field, &TextField::clearRequested, this, cancel);
    connect(field, &QLineEdit::textEdited, this,
            [this](const QString& name) { viewModel.setNewCollectionName(name); });
    connect(field, &QLineEdit::returnPressed, this, [this] {
        if (viewModel.canAddNewCollection())
            viewModel.save();
    });
    auto* escape = new QShortcut(Qt::Key_Escape, field);
    escape->setContext(Qt::WidgetShortcut);
    connect(escape, &QShortcut::activated, this, cancel);

    using M = SnippetEditorViewModel;
    connect(&viewModel, &M::collectionChanged, this, &EditorCollectionPicker::showCollection);
    connect(&colors, &CollectionColors::changed, this, &EditorCollectionPicker::showCollection);
    connect(&viewModel, &M::isAddingNewCollectionChanged, this, &EditorCollectionPicker::showMode);
    connect(&viewModel, &M::newCollectionNameChanged, this, [this] {
        if (field->text() != viewModel.newCollectionName())
            field->setText(viewModel.newCollectionName());
    });
    showCollection();
    showMode();
}

void EditorCollectionPicker::showCollection()
{
    present->setCollection(viewModel.collection(), colors.color(viewModel.collection()));
}

void EditorCollectionPicker::showMode()
{
    const bool isAdding = viewModel.isAddingNewCollection();
    present->setVisible(!isAdding);
    if (!isAdding && field->hasFocus())
        present->setFocus(Qt::OtherFocusReason);
    field->setVisible(isAdding);
}

PopupMenu* EditorCollectionPicker::makeMenu()
{
    auto* menu = new PopupMenu(theme, this);
    for (const QString& name : viewModel.availableCollections())
        menu->addChoice(colors.color(name), name, name == viewModel.collection(),
                        [this, name] { viewModel.changeCollection(name); });
    menu->addSeparator();
    menu->addItem({}, QStringLiteral("+ Create New Collection"), [this] {
        viewModel.setIsAddingNewCollection(true);
        field->setFocus(Qt::OtherFocusReason);
    });
    return menu;
}

void EditorCollectionPicker::openMenu()
{
    PopupMenu* menu = makeMenu();
    connect(menu, &QMenu::aboutToHide, menu, &QObject::deleteLater);
    menu->popup(present->mapToGlobal(QPoint(ring, present->height() - ring + 3)));
}

} // namespace vellumry
