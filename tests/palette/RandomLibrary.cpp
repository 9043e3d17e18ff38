#include "palette/RandomLibrary.h"

#include <algorithm>
#include <array>
#include <chrono>

namespace vellumry::test {

namespace {

using namespace Qt::StringLiterals;

const QString& piece(int index)
{
    static const std::array pieces{u"a"_s,
                                   u"B"_s,
                                   u"ab"_s,
                                   u"abc"_s,
                                   u"Ba"_s,
                                   u" "_s,
                                   u" "_s,
                                   u"  "_s,
                                   u"\""_s,
                                   u" > "_s,
                                   u">"_s,
                                   u"\t"_s,
                                   u"\n"_s,
                                   u"\r\n"_s,
                                   u"\u0301"_s,
                                   u"\u00a0"_s,
                                   u"\u3000"_s,
                                   u"\u2028"_s,
                                   u"\u0130"_s,
                                   u"i\u0307"_s,
                                   u"I"_s,
                                   u"\u00df"_s,
                                   u"SS"_s,
                                   u"\u1e9e"_s,
                                   u"\u03a3"_s,
                                   u"\u03c3"_s,
                                   u"\u03c2"_s,
                                   u"\u212a"_s,
                                   u"k"_s,
                                   u"\u00c9"_s,
                                   u"\u00e9"_s,
                                   u"\u023a"_s,
                                   u"\u00ff"_s,
                                   u"\uffff"_s,
                                   u"\u0600"_s,
                                   u"\u200d"_s,
                                   u"\U0001F468\u200d\U0001F469"_s,
                                   u"\U0001F600"_s,
                                   u"\U0001F601"_s,
                                   u"\U00010400"_s,
                                   u"\U00010428"_s,
                                   u"\u4e2d"_s,
                                   u"\u6587"_s,
                                   u"\u0915"_s,
                                   u"\u093f"_s,
                                   u"\u1000"_s,
                                   QString(QChar(0xd83d)),
                                   QString(QChar(0xde00)),
                                   QString(QChar(0xd801)),
                                   QString(QChar(0xdc00)),
                                   QString(QChar(0)),
                                   u"The quick brown fox jumps over the lazy DOG"_s,
                                   u"aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaab"_s};
    return pieces[static_cast<size_t>(index) % pieces.size()];
}

constexpr int pieceCount = 53;

} // namespace

QString RandomLibrary::text(int most)
{
    QString result;
    // A small part of the pieces is used for most texts, so that they share substrings.
    const int variety = below(3) == 0 ? pieceCount : 9;
    const int offset = below(4) == 0 ? below(pieceCount) : 0;
    for (int count = below(most + 1); count > 0; --count)
        result += piece((offset + below(variety)) % pieceCount);
    return result;
}

QString RandomLibrary::query()
{
    switch (below(8)) {
    case 0:
        return text(1) + u" > "_s + text(3);
    case 1:
        return text(2) + u" >"_s;
    case 2:
        return u'"' + text(4) + (below(2) == 0 ? u"\""_s : QString());
    default:
        return text(5);
    }
}

Snippet RandomLibrary::snippet()
{
    SnippetFields fields;
    fields.id = QString::number(below(20) == 0 ? 7 : nextId++);
    fields.title = text(4);
    fields.subtitle = text(2);
    fields.content = text(below(10) == 0 ? 60 : 8);
    fields.collection = text(2);
    for (int count = below(4); count > 0; --count)
        fields.keywords.append(text(2));
    // Few dates, so that ties are frequent.
    fields.updatedAt = Date(std::chrono::nanoseconds(below(5)));
    return Snippet(fields);
}

QList<Snippet> RandomLibrary::snippets(int most)
{
    QList<Snippet> result;
    for (int count = below(most + 1); count > 0; --count)
        result.append(snippet());
    return result;
}

QList<Snippet> RandomLibrary::changed(QList<Snippet> snippets)
{
    for (int count = 1 + below(3); count > 0; --count) {
        if (snippets.isEmpty()) {
            snippets = this->snippets(12);
            continue;
        }
        const int at = below(static_cast<int>(snippets.size()));
        switch (below(12)) {
        case 0:
            snippets[at].setUsageCount(snippets[at].usageCount() + 1);
            snippets[at].setLastUsedAt(Date(std::chrono::nanoseconds(below(9))));
            break;
        case 1:
            snippets[at].setTitle(text(4));
            break;
        case 2:
            snippets[at].setContent(text(40));
            break;
        case 3:
            snippets[at].setKeywords({text(2), text(2)});
            snippets[at].setUpdatedAt(Date(std::chrono::nanoseconds(below(5))));
            break;
        case 4:
            snippets[at].setCollection(text(2));
            break;
        case 5:
            snippets.insert(at, snippet());
            break;
        case 6:
            snippets.removeAt(at);
            break;
        case 7:
            snippets.move(at, below(static_cast<int>(snippets.size())));
            break;
        case 8:
            // Read anew: equal values that share nothing.
            for (Snippet& one : snippets)
                one = Snippet(SnippetFields(one.fields()));
            break;
        case 9:
            snippets.append(snippets[at]); // the same snippet twice
            break;
        case 10:
            std::shuffle(snippets.begin(), snippets.end(), engine);
            break;
        default:
            snippets = below(4) == 0 ? this->snippets(12) : snippets.mid(at / 2);
            break;
        }
    }
    return snippets;
}

} // namespace vellumry::test
