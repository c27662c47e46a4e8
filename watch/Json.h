#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace watch {

/// A member of a JSON object whose values are texts and numbers.
struct JsonMember {
    std::string_view name;
    std::variant<std::string_view, double> value;
};

/// Reads an object of at most so many members. Intentional: only what commands need; texts with a
/// backslash, other kinds of values and a name that comes twice are refused. The views are of
/// `text`.
std::optional<std::vector<JsonMember>> readJsonObject(std::string_view text,
                                                      std::size_t mostMembers);

/// `text` in quotes; bytes beyond ASCII stay as they are.
std::string jsonText(std::string_view text);

} // namespace watch
