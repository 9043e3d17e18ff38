#include "views/editor/EditorContentSection.h"

#include "library/SnippetEditorViewModel.h"
#include "views/common/Button.h"
#include "views/common/OutsetItem.h"
#include "views/editor/BareTextField.h"
#include "views/editor/ContentSearchBar.h"
#include "views/editor/EditorTextBox.h"
#include "views/editor/MacTextEditor.h"
#include "views/editor/SectionHeader.h"
#include "views/editor/ViewShortcut.h"

#include <QHideEvent>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace vellumry {

namespace {

constexpr int leastHeight = 320;
constexpr int textMargin = 12;
constexpr int outset = BareTextField::outset;
constexpr int border = 2; // as wide as the focus line
constexpr int searchReach = 1;
constexpr int headerSymbol = 14;

Button* headerButton(const Theme& theme, const QString& symbol, const QString& name,
                     QWidget* parent)
{
    auto* button = Button::withSymbol(theme, symbol, name, parent);
    button->setSymbol(symbol, headerSymbol);
    return button;
}

} // namespace

EditorContentSection::EditorContentSection(const Theme& look, Scheduler& scheduler,
                                           SnippetEditorViewModel& model, SheetHost& host,
                                           const Actions& actions, QWidget* parent)
    : QWidget(parent), theme(look), timing(scheduler), viewModel(model), sheets(host),
      header(new SectionHeader(theme, QStringLiteral("doc.text"), QStringLiteral("Snippet content"),
                               this)),
      saveAsFile(headerButton(theme, QStringLiteral("arrow.down.circle"),
                              QStringLiteral("Save as File"), header)),
      fullScreen(headerButton(theme, QStringLiteral("arrow.up.left.and.arrow.down.right"),
                              QStringLiteral("Full Screen Editing"), header)),
      box(new EditorTextBox(theme, {}, this)),
      editor(new MacTextEditor(theme, scheduler, textMargin - border, box)),
      searchBar(new ContentSearchBar(theme, scheduler, *editor,
                                     {.sideMargin = textMargin - border + searchReach,
                                      .radius = EditorTextBox::radius - border + searchReach,
                                      .reach = searchReach},
                                     box))
{
    fullScreen->setToolTip(QStringLiteral("Full Screen Editing (Ctrl+Shift+F)"));
    editor->setCallbacks({.onFocusChange = [this](bool hasFocus) { box->setFocused(hasFocus); },
                          .onEscape = actions.onEscape,
                          .onShiftTab = actions.onShiftTab});
    layOut();
    editor->setText(viewModel.content());
    showFilled();
    saveAsFile->setVisible(viewModel.canSaveAsFile());
    observe();
    placeBox();
}

EditorContentSection::~EditorContentSection() = default;

void EditorContentSection::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    // The snippet gives way to another one, or the window closes.
    if (!event->spontaneous())
        closeFullScreen();
}

void EditorContentSection::layOut()
{
    header->addButton(saveAsFile);
    header->addButton(fullScreen);
    auto* inBox = new QVBoxLayout(box);
    inBox->setContentsMargins(border, border, border, border);
    inBox->setSpacing(0);
    inBox->addItem(new OutsetItem(searchBar, {searchReach, searchReach, searchReach, 0}));
    inBox->addWidget(editor);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(outset, 0, outset, 0);
    column->setSpacing(0);
    column->addItem(header->makeLayoutItem());
    column->addWidget(box);
    setTabOrder(saveAsFile, fullScreen);
    setTabOrder(fullScreen, editor);
}

void EditorContentSection::observe()
{
    connect(saveAsFile, &Button::clicked, this, [this] { viewModel.saveAsFile(); });
    connect(fullScreen, &Button::clicked, this, &EditorContentSection::openFullScreen);
    new ViewShortcut(
        Qt::Key_F, Qt::ControlModifier, [this] { searchBar->toggleSearch(); }, this);

    connect(editor, &MacTextEditor::typed, this, [this] { viewModel.setContent(editor->text()); });
    connect(editor, &MacTextEditor::heightChanged, this, &EditorContentSection::placeBox);
    connect(editor, &MacTextEditor::revealed, this, [this](const QRect& rect) {
        Q_EMIT revealed(QRect(editor->viewport()->mapTo(this, rect.topLeft()), rect.size()));
    });
    using M = SnippetEditorViewModel;
    connect(&viewModel, &M::contentChanged, this, &EditorContentSection::showContent);
    connect(&viewModel, &M::variableValuesChanged, this, &EditorContentSection::showFilled);
    connect(&viewModel, &M::titleChanged, this,
            [this] { saveAsFile->setVisible(viewModel.canSaveAsFile()); });
    connect(&theme, &Theme::changed, this, &EditorContentSection::placeBox);
}

void EditorContentSection::showContent()
{
    // Under the full-screen editor nobody sees the text; it follows when that closes.
    if (!isFullScreenMode())
        editor->setText(viewModel.content());
}

void EditorContentSection::showFilled()
{
    const QSet<QString> filled = viewModel.filledVariables();
    editor->setFilledVariables(filled);
    if (fullScreenView)
        fullScreenView->textEditor().setFilledVariables(filled);
}

void EditorContentSection::focusText()
{
    editor->setFocus(Qt::OtherFocusReason);
}

void EditorContentSection::setGreatestHeight(int pixels)
{
    greatestHeight = pixels;
    placeBox();
}

void EditorContentSection::placeBox()
{
    const int most = std::max(leastHeight, greatestHeight);
    const int wanted = editor->heightForText(most) + 2 * border;
    box->setFixedHeight(std::clamp(wanted, leastHeight, most));
}

void EditorContentSection::openFullScreen()
{
    if (fullScreenView)
        return;
    fullScreenView = new FullScreenEditorView(
        theme, timing,
        {.content = viewModel.content(),
         .title = viewModel.title(),
         .onDismiss = [this] { closeFullScreen(); },
         .onTextChange = [this](const QString& text) { viewModel.setContent(text); },
         .window = window()});
    showFilled();
    sheets.present(fullScreenView, {.onCancel = [this] { fullScreenView->escape(); },
                                    .firstFocus = &fullScreenView->textEditor()});
}

void EditorContentSection::closeFullScreen()
{
    if (!fullScreenView)
        return;
    sheets.dismiss(std::exchange(fullScreenView, nullptr));
    editor->setText(viewModel.content());
}

} // namespace vellumry
