#pragma once

#include "models/Collection.h"
#include "views/sheets/ScrollingSheet.h"

#include <QColor>
#include <QList>
#include <QSet>

#include <functional>
#include <vector>

class QAbstractButton;

namespace vellumry {

class Label;

/// The sheet that asks which collections a backup file is to hold. Main thread only.
class ExportCollectionPickerView : public ScrollingSheet {
    Q_OBJECT

public:
    /// What is referred to outlives the view.
    struct Dependencies {
        const Theme& theme;
        Scheduler& scheduler;
        QList<Collection> collections;
        std::function<qsizetype(const QString& name)> snippetCountProvider;
        std::function<QColor(const QString& name)> colorProvider;
        QSet<QString> selectedCollectionNames;
        std::function<void(const QSet<QString>& names)> onSelectionChange;
        std::function<void()> onExport;
        std::function<void()> onCancel;
    };

    explicit ExportCollectionPickerView(Dependencies dependencies, QWidget* parent = nullptr);

    [[nodiscard]] const QSet<QString>& selectedCollectionNames() const
    {
        return services.selectedCollectionNames;
    }
    /// For a change from elsewhere; calls nobody.
    void setSelectedCollectionNames(const QSet<QString>& names);
    /// What Escape does.
    void cancel() { services.onCancel(); }
    [[nodiscard]] QWidget* firstFocus() const override;

    [[nodiscard]] QAbstractButton* row(const QString& name) const;
    [[nodiscard]] Label& countLabel() const { return *count; }
    [[nodiscard]] Button& selectAllButton() const { return *selectAll; }
    [[nodiscard]] Button& cancelButton() const { return *cancelling; }
    [[nodiscard]] Button& exportButton() const { return *exporting; }

private:
    class Row;

    void buildHeader();
    void change(const QSet<QString>& names);
    [[nodiscard]] bool areAllSelected() const;
    void showState();

    Dependencies services;
    Label* count;
    Button* selectAll;
    std::vector<Row*> rows;
    Button* cancelling;
    Button* exporting;
};

} // namespace vellumry
