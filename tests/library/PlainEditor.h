#pragma once

#include "library/PlainListModel.h"

namespace vellumry::test {

/// The rules of the editor, step by step and without a thought for speed, to compare with. It works
/// on a plain list model.
class PlainEditor {
public:
    PlainEditor(LibraryParts& parts, PlainListModel& list, const Snippet& opened, bool isUnsaved);

    QString title;
    QString subtitle;
    QString collection;
    QString content;
    QStringList keywords;
    QMap<QString, QString> variableValues;
    qint64 usageCount = 0;
    std::optional<Date> lastUsedAt;
    QStringList availableCollections;
    bool isDirty = false;
    bool showSaveSuccess = false;
    std::optional<Date> lastSavedAt;
    bool showCopySuccess = false;
    bool isAddingNewCollection = false;
    QString newCollectionName;

    /// What was put on the clipboard.
    QStringList copied;
    int listFocuses = 0;
    bool hasLibraryInMemory = true;

    [[nodiscard]] Snippet currentSnippet() const;
    [[nodiscard]] QStringList detectedVariables() const;
    [[nodiscard]] qsizetype filledVariableCount() const;
    [[nodiscard]] QString resolvedContent() const;

    void loadCollections();
    void save();
    void revertChanges();
    void changeCollection(const QString& name);
    void copyToClipboard();
    void setSubtitle(const QString& text);
    void setVariableValue(const QString& value, const QString& name);
    void clearVariableValues();
    void addKeyword(const QString& input);
    void removeKeyword(const QString& keyword);
    void escape();
    void collectionsDidChange(const QString& oldName, const QString& newName);
    void noteEdit();
    /// Lets the time pass that the list model has been told of, too.
    void passTime(int milliseconds);

private:
    void take(const Snippet& snippet);

    LibraryParts& with;
    PlainListModel& list;
    Snippet snippet;
    QList<Snippet> allSnippets;
    QList<int> saveTimers; ///< in ms from now
    QList<int> copyTimers;
};

} // namespace vellumry::test
