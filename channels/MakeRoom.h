// Memory for lists that grow both by single items and by very many at once.
#pragma once

#include <cstddef>
#include <vector>

namespace kv::channels {

/// Reserves exactly what is needed when a list grows by more than half. Smaller growth is left to the list itself,
/// which then reserves more than needed, so that adding single items does not move the list each time.
template <class T>
void makeRoom(std::vector<T>& list, std::size_t size) {
    if (size > list.size() + list.size() / 2)
        list.reserve(size);
}

}  // namespace kv::channels
