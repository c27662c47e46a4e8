#pragma once

#include <algorithm>
#include <cstddef>
#include <exception>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// What the parsing library throws: only misuse of handles and containers by the program. A message
/// that cannot be read is never an exception; it is dropped.
class RCC_Exception : public std::exception {
public:
    explicit RCC_Exception(std::string what) : text_(std::move(what)) {}

    std::string const& message() const { return text_; }
    char const* what() const noexcept override { return text_.c_str(); }

private:
    std::string text_;
};

/// A null handle was dereferenced.
class RCC_MemoryException : public RCC_Exception {
public:
    using RCC_Exception::RCC_Exception;
};

/// An index is not below the size of its container.
class RCC_BoundsException : public RCC_Exception {
public:
    using RCC_Exception::RCC_Exception;
};

/// Base of what is counted: holds the number of references to itself. The number is not atomic:
/// such objects belong to the thread that parses.
class RCC_Object {
public:
    RCC_Object() = default;
    RCC_Object(RCC_Object const&) = delete;
    RCC_Object& operator=(RCC_Object const&) = delete;
    virtual ~RCC_Object() = default;

    int references() const { return count_; }

private:
    friend class RCC_Memory;
    mutable int count_ = 0;
};

/// The only place that changes a count or deletes a counted object.
class RCC_Memory {
public:
    RCC_Memory() = delete;

    /// Null is allowed.
    static void retain(RCC_Object const* object) {
        if (object != nullptr) ++object->count_;
    }

    /// Gives back one reference, for instance the one that RCC_Parser::parse returned; the last one
    /// deletes the object, so the object must have been created with new. Null is allowed.
    static void remove(RCC_Object const* object) {
        if (object == nullptr || --object->count_ > 0) return;
        std::unique_ptr<RCC_Object const> const last(object);
    }
};

/// Counted handle of a T; it may be null. The last handle deletes the T.
///
/// The count stands beside the T, not in it. So a record is a plain value: it needs no base class
/// and no destructor, and a copy of it has nothing to count.
template <typename T>
class RCC_Pointer {
public:
    RCC_Pointer() = default;
    RCC_Pointer(RCC_Pointer const& other) : RCC_Pointer(other.box_) {}
    RCC_Pointer(RCC_Pointer&& other) noexcept : box_(std::exchange(other.box_, nullptr)) {}
    ~RCC_Pointer() { RCC_Memory::remove(box_); }

    RCC_Pointer& operator=(RCC_Pointer other) noexcept {
        std::swap(box_, other.box_);
        return *this;
    }

    /// A handle of a new T.
    template <typename... Args>
    static RCC_Pointer make(Args&&... args) {
        return RCC_Pointer(std::make_unique<Box>(std::forward<Args>(args)...).release());
    }

    bool isNull() const { return box_ == nullptr; }
    explicit operator bool() const { return !isNull(); }
    T* get() const { return isNull() ? nullptr : &box_->value; }

    /// Both throw RCC_MemoryException when the handle is null.
    T& operator*() const { return checked().value; }
    T* operator->() const { return &checked().value; }

    /// What is counted, null for a null handle.
    RCC_Object* object() const { return box_; }

private:
    struct Box final : RCC_Object {
        template <typename... Args>
        explicit Box(Args&&... args) : value{std::forward<Args>(args)...} {}

        T value;
    };

    explicit RCC_Pointer(Box* box) : box_(box) { RCC_Memory::retain(box_); }

    Box& checked() const {
        if (isNull()) throw RCC_MemoryException("Attempt to dereference a null pointer");
        return *box_;
    }

    Box* box_ = nullptr;
};

/// Indexed sequence of handles; an element may be a null handle. The parser reuses containers and
/// elements, so a reference to an element is good until the next see.
template <typename T>
class RCC_Container {
public:
    RCC_Container() = default;

    /// Empty, with `capacity` elements in reserve for add().
    explicit RCC_Container(std::size_t capacity) : items_(capacity) {
        std::ranges::generate(items_, [] { return RCC_Pointer<T>::make(); });
    }

    std::size_t size() const { return size_; }

    /// Throws RCC_BoundsException unless index < size().
    RCC_Pointer<T> const& operator[](std::size_t index) const {
        if (index >= size_) throw RCC_BoundsException("Container idx out of bounds");
        return items_[index];
    }

    /// Appends an element of the reserve, with whatever it held before; null when the reserve is
    /// used up. Never allocates.
    T* add() { return size_ == items_.size() ? nullptr : items_[size_++].get(); }

    /// Appends a handle; gives up the reserve.
    void append(RCC_Pointer<T> item) {
        items_.resize(size_);
        items_.push_back(std::move(item));
        ++size_;
    }

    /// Puts all elements into the reserve.
    void clear() { size_ = 0; }

private:
    std::vector<RCC_Pointer<T>> items_; // the elements, then the reserve
    std::size_t size_ = 0;
};
