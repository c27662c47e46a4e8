#pragma once

/// Receives the records of one kind, as RCC_Handler<RCC_Pointer<RCC_Visual>>. Called inside
/// RCC_Parser::parse on its thread; what the handle refers to is good until the next message of the
/// same kind, so a handler copies what it wants to keep.
template <class T>
class RCC_Handler {
public:
    RCC_Handler() = default;
    RCC_Handler(RCC_Handler const&) = default;
    RCC_Handler& operator=(RCC_Handler const&) = default;
    virtual ~RCC_Handler() = default;

    virtual void handle(T const& record) = 0;
};
