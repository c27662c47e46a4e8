#pragma once

#include <exception>
#include <string>
#include <utility>

/// What the parsing library throws: only misuse of handles and containers by the program. A message
/// that cannot be read is never an exception; it is dropped.
class RCC_Exception : public std::exception {
public:
    explicit RCC_Exception(std::string what) : text(std::move(what)) {}

    std::string const& message() const { return text; }
    char const* what() const noexcept override { return text.c_str(); }

private:
    std::string text;
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
