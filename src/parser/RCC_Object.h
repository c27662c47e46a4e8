#pragma once

/// Base of every record: a count of the references to it, kept inside the object. Copying a record
/// copies its contents only; each object keeps its own count. The count is not atomic: records
/// belong to the thread that parses.
class RCC_Object {
public:
    RCC_Object() = default;
    RCC_Object(RCC_Object const&) noexcept {}
    RCC_Object& operator=(RCC_Object const&) noexcept { return *this; }
    virtual ~RCC_Object() = default;

    int references() const { return count; }

private:
    friend class RCC_Memory;
    mutable int count = 0;
};

/// The only place that changes a count or deletes a record.
class RCC_Memory {
public:
    RCC_Memory() = delete;

    static void retain(RCC_Object const* object);

    /// Gives back one reference, for instance the one that RCC_Parser::parse returned; the last one
    /// deletes the object, so the object must have been created with new. Null is allowed.
    static void remove(RCC_Object const* object);
};
