#pragma once

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QStringView>

namespace vellumry {

/// Handles the placeholders of the form {{name}} in a snippet's text. There are no built-in names:
/// every name is the user's, and its value stands in the snippet's map. Names are case-sensitive
/// and compared without horizontal white space at their ends. All operations are pure.
class SnippetVariableService {
public:
    /// What a placeholder is, as a regular expression; \s is [\t\n\f\r\p{Z}]. Placeholders are
    /// found by a scanner that gives the same matches in one linear pass, whatever the text: a
    /// backtracking engine needs time in the square of the length for "{{" and many blanks, and
    /// gives up on them.
    static constexpr QStringView pattern = uR"(\{\{\s*([^{}\n]+?)\s*\}\})";

    [[nodiscard]] static const SnippetVariableService& shared();

    /// One placeholder as it stands in a text.
    struct Placeholder {
        qsizetype begin;
        qsizetype length;
        QStringView name; ///< a part of the text
    };

    /// All that have a name, from left to right.
    [[nodiscard]] QList<Placeholder> placeholders(QStringView text) const;

    /// The distinct names in the text, in the order of their first occurrence.
    [[nodiscard]] QStringList extractNames(const QString& text) const;

    /// The text with each placeholder replaced by its value, exactly as stored. A placeholder
    /// without a value, or with one of nothing but white space, stays as it was typed. Values are
    /// not looked through for placeholders.
    [[nodiscard]] QString resolve(const QString& content,
                                  const QMap<QString, QString>& values) const;

    /// The entries that the text has a placeholder for and whose value is more than white space.
    [[nodiscard]] QMap<QString, QString> prunedValues(const QMap<QString, QString>& values,
                                                      const QString& text) const;
    /// The same for a text whose names are known.
    [[nodiscard]] QMap<QString, QString> prunedValues(const QMap<QString, QString>& values,
                                                      const QStringList& names) const;
};

} // namespace vellumry
