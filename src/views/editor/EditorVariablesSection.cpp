#include "views/editor/EditorVariablesSection.h"

#include "library/SnippetEditorViewModel.h"
#include "views/common/Button.h"
#include "views/common/TextField.h"
#include "views/editor/BareTextField.h"
#include "views/editor/EditorTextBox.h"
#include "views/editor/EditorVariableRow.h"
#include "views/editor/SectionHeader.h"

#include <QHash>
#include <QVBoxLayout>

#include <utility>

namespace vellumry {

namespace {

constexpr int outset = BareTextField::outset;
constexpr int border = 1;

} // namespace

EditorVariablesSection::EditorVariablesSection(const Theme& look, SnippetEditorViewModel& model,
                                               std::function<void()> escape, QWidget* parent)
    : QWidget(parent), theme(look), viewModel(model), onEscape(std::move(escape)),
      header(new SectionHeader(theme, QStringLiteral("curlybraces"), QStringLiteral("Variables"),
                               this)),
      clear(new Button(theme, Button::Kind::link, QStringLiteral("Clear"), header,
                       Button::Size::small)),
      box(new EditorTextBox(theme, {&ColorTokens::group, &ColorTokens::stroke}, this)),
      column(new QVBoxLayout(box))
{
    header->addButton(clear);
    column->setContentsMargins(border, border, border, border);
    column->setSpacing(0);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(outset, 0, outset, 0);
    all->setSpacing(0);
    all->addItem(header->makeLayoutItem());
    all->addWidget(box);

    connect(clear, &Button::clicked, this, [this] { viewModel.clearVariableValues(); });
    using M = SnippetEditorViewModel;
    connect(&viewModel, &M::contentChanged, this, &EditorVariablesSection::showNames);
    connect(&viewModel, &M::variableValuesChanged, this, &EditorVariablesSection::showValues);
    showNames();
}

QStringList EditorVariablesSection::names() const
{
    QStringList shown;
    for (const EditorVariableRow* row : rows)
        shown.append(row->name());
    return shown;
}

TextField* EditorVariablesSection::field(const QString& name) const
{
    for (const EditorVariableRow* row : rows) {
        if (row->name() == name)
            return &row->field();
    }
    return nullptr;
}

void EditorVariablesSection::showNames()
{
    const QStringList& wanted = viewModel.detectedVariables();
    if (names() != wanted) {
        // A row stays while its name does.
        QHash<QString, EditorVariableRow*> known;
        for (EditorVariableRow* row : std::exchange(rows, {})) {
            column->removeWidget(row);
            known.insert(row->name(), row);
        }
        QWidget* before = clear;
        for (const QString& name : wanted) {
            EditorVariableRow* row = known.take(name);
            if (!row)
                row = new EditorVariableRow(theme, name,
                                            {[this, name](const QString& value) {
                                                 viewModel.setVariableValue(value, name);
                                             },
                                             onEscape},
                                            box);
            row->setHasLineAbove(!rows.empty());
            column->addWidget(row);
            for (QWidget* each : {static_cast<QWidget*>(&row->field()),
                                  static_cast<QWidget*>(row->field().clearButton())}) {
                QWidget::setTabOrder(before, each);
                before = each;
            }
            rows.push_back(row);
        }
        for (EditorVariableRow* row : std::as_const(known)) {
            row->hide();
            row->deleteLater();
        }
    }
    setVisible(!wanted.isEmpty());
    showValues();
}

void EditorVariablesSection::showValues()
{
    const auto& values = viewModel.variableValues();
    for (EditorVariableRow* row : rows)
        row->setValue(values.value(row->name()));
    header->setCount(QString::number(viewModel.filledVariableCount()) + QStringLiteral(" filled"));
    clear->setVisible(!values.isEmpty());
}

} // namespace vellumry
