#pragma once

#include "parser/RCC_Scanner.h"
#include "parser/RCC_Visual.h"

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

namespace rcc {

/// The objects of one kind while a see is being read.
template <class T>
class SeenList {
public:
    /// A fresh object at the end, null when the list is full.
    T* add() {
        if (count == items.size()) return nullptr;
        items[count] = T{};
        return &items[count++];
    }

    void clear() { count = 0; }
    std::span<T const> objects() const { return {items.data(), count}; }

private:
    std::size_t count = 0;
    std::array<T, RCC_Visual::MAX_OBJECTS> items;
};

/// A see that is being read; it becomes visible only when all of it is good.
struct VisualDraft {
    int time = 0;
    SeenList<RCC_Line> lines;
    SeenList<RCC_Flag> flags;
    SeenList<RCC_Flag> goals;
    SeenList<RCC_Player> allies;
    SeenList<RCC_Player> enemies;
    SeenList<RCC_Player> neuts;
    SeenList<RCC_Ball> balls;

    void clear();
};

/// Reads what follows the word `see`, up to the closing of the message, which is not read.
bool parseVisual(RCC_Scanner& scanner, std::string_view teamName, VisualDraft& draft);

} // namespace rcc
