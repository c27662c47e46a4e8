#pragma once

#include "parser/RCC_Exception.h"
#include "parser/RCC_Object.h"

#include <memory>
#include <utility>

/// Counted handle of a record; it may be null. The last handle deletes the object, which must
/// therefore have been created with new (make does that).
template <class T>
class RCC_Pointer {
public:
    RCC_Pointer() = default;
    explicit(false) RCC_Pointer(T* target) : object(target) { RCC_Memory::retain(object); }
    RCC_Pointer(RCC_Pointer const& other) : RCC_Pointer(other.object) {}
    RCC_Pointer(RCC_Pointer&& other) noexcept : object(std::exchange(other.object, nullptr)) {}
    ~RCC_Pointer() { RCC_Memory::remove(object); }

    RCC_Pointer& operator=(RCC_Pointer other) noexcept {
        std::swap(object, other.object);
        return *this;
    }

    /// A handle of a new object.
    template <class... Args>
    static RCC_Pointer make(Args&&... args) {
        return RCC_Pointer(std::make_unique<T>(std::forward<Args>(args)...).release());
    }

    bool isNull() const { return object == nullptr; }
    explicit operator bool() const { return !isNull(); }
    T* get() const { return object; }

    /// Both throw RCC_MemoryException when the handle is null.
    T& operator*() const { return *checked(); }
    T* operator->() const { return checked(); }

private:
    T* checked() const {
        if (isNull()) throw RCC_MemoryException("Attempt to dereference a null pointer");
        return object;
    }

    T* object = nullptr;
};
