#pragma once

#include <QList>

#include <set>
#include <utility>

namespace vellumry {

/// Takes the elements at `offsets` out of the list and puts them, in their order, before the one
/// that stood at `target`; at the end if `target` is the size of the list. Offsets that the list
/// does not have are passed over.
template <typename T>
void moveOffsets(QList<T>& list, const std::set<qsizetype>& offsets, qsizetype target)
{
    QList<T> before;
    QList<T> moved;
    QList<T> after;
    for (qsizetype i = 0; i < list.size(); ++i) {
        QList<T>& part = offsets.contains(i) ? moved : i < target ? before : after;
        part.append(list.at(i));
    }
    list = std::move(before);
    list.append(std::move(moved));
    list.append(std::move(after));
}

} // namespace vellumry
