#pragma once

#include "parser/RCC_Pointer.h"

#include <cstddef>
#include <utility>
#include <vector>

/// Indexed sequence of handles; an element may be a null handle. The parser refills the containers
/// of a see in place, so a reference to an element is good until the next see.
template <class T>
class RCC_Container : public RCC_Object {
public:
    std::size_t size() const { return items.size(); }

    /// Throws RCC_BoundsException unless index < size().
    RCC_Pointer<T> const& operator[](std::size_t index) const {
        if (index >= items.size()) throw RCC_BoundsException("Container idx out of bounds");
        return items[index];
    }

    void reserve(std::size_t capacity) { items.reserve(capacity); }
    void append(RCC_Pointer<T> item) { items.push_back(std::move(item)); }

    /// Keeps the storage.
    void clear() { items.clear(); }

private:
    std::vector<RCC_Pointer<T>> items;
};
