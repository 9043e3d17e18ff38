#include "views/sidebar/RenameCollectionView.h"

#include "core/Text.h"
#include "views/common/Button.h"
#include "views/common/Label.h"
#include "views/common/SheetLayout.h"
#include "views/common/TextField.h"

#include <QVBoxLayout>

#include <utility>

namespace vellumry {

RenameCollectionView::RenameCollectionView(const Theme& theme, const QString& name,
                                           const QString& newName,
                                           std::function<void(const QString&)> onConfirm,
                                           std::function<void()> onCancel, QWidget* parent)
    : QWidget(parent), currentName(name),
      nameField(new TextField(theme, QStringLiteral("Collection name"), this)),
      cancel(new Button(theme, Button::Kind::secondary, QStringLiteral("Cancel"), this)),
      rename(new Button(theme, Button::Kind::primary, QStringLiteral("Rename"), this))
{
    const QString title = QStringLiteral("Rename Collection");
    setAccessibleName(title);
    QVBoxLayout* column = SheetLayout::smallSheet(*this);
    column->addWidget(
        new Label(theme, TextStyle::sheetTitle, &ColorTokens::textPrimary, title, this));
    column->addSpacing(14);
    auto* label = new Label(theme, TextStyle::labelMedium, &ColorTokens::textSecondary,
                            QStringLiteral("New name:"), this);
    label->setBuddy(nameField);
    column->addWidget(label);
    column->addSpacing(6);
    column->addWidget(nameField);
    SheetLayout::addFooter(*this, {cancel, rename}, 20);

    nameField->setAccessibleName(QStringLiteral("New name"));
    nameField->setText(newName);
    nameField->selectAll();
    rename->setDefault(true);
    rename->setEnabled(isValidName());
    connect(nameField, &QLineEdit::textChanged, this,
            [this] { rename->setEnabled(isValidName()); });
    connect(cancel, &Button::clicked, this, std::move(onCancel));
    connect(rename, &Button::clicked, this,
            [this, confirm = std::move(onConfirm)] { confirm(nameField->text()); });
}

bool RenameCollectionView::isValidName() const
{
    const QString text = nameField->text();
    const QStringView trimmed = trimmedHorizontally(text);
    return !trimmed.isEmpty() && trimmed != currentName;
}

} // namespace vellumry
