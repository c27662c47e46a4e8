#include "parser/RCC_Object.h"

#include <memory>

void RCC_Memory::retain(RCC_Object const* object) {
    if (object != nullptr) ++object->count;
}

void RCC_Memory::remove(RCC_Object const* object) {
    if (object == nullptr || --object->count > 0) return;
    std::unique_ptr<RCC_Object const> const last(object);
}
