#include "watch/Json.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace watch {

namespace {

/// Takes the parts of an object from the front of a text.
class Parts {
public:
    explicit Parts(std::string_view text) : rest_(text) {}

    bool atEnd() {
        skipBlanks();
        return rest_.empty();
    }

    bool take(char wanted) {
        skipBlanks();
        if (!rest_.starts_with(wanted)) return false;
        rest_.remove_prefix(1);
        return true;
    }

    std::optional<std::string_view> takeText() {
        if (!take('"')) return std::nullopt;
        std::string_view const text = rest_.substr(0, rest_.find('"'));
        bool const plain = std::ranges::all_of(
            text, [](char c) { return static_cast<unsigned char>(c) >= ' ' && c != '\\'; });
        if (!plain || text.size() == rest_.size()) return std::nullopt;
        rest_.remove_prefix(text.size() + 1);
        return text;
    }

    std::optional<double> takeNumber() {
        skipBlanks();
        bool const negative = rest_.starts_with('-');
        std::string_view const digits = rest_.substr(negative ? 1 : 0);
        // from_chars would also take "inf" and ".5".
        if (digits.empty() || digits.front() < '0' || digits.front() > '9') return std::nullopt;
        double number = 0;
        auto const read = std::from_chars(rest_.data(), rest_.data() + rest_.size(), number);
        if (read.ec != std::errc{} || !std::isfinite(number)) return std::nullopt;
        rest_.remove_prefix(static_cast<std::size_t>(read.ptr - rest_.data()));
        return number;
    }

private:
    void skipBlanks() {
        rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t\r\n"), rest_.size()));
    }

    std::string_view rest_;
};

std::optional<JsonMember> takeMember(Parts& parts) {
    auto const name = parts.takeText();
    if (!name || !parts.take(':')) return std::nullopt;
    if (auto const text = parts.takeText()) return JsonMember{*name, *text};
    if (auto const number = parts.takeNumber()) return JsonMember{*name, *number};
    return std::nullopt;
}

} // namespace

std::optional<std::vector<JsonMember>> readJsonObject(std::string_view text,
                                                      std::size_t mostMembers) {
    Parts parts(text);
    std::vector<JsonMember> members;
    if (!parts.take('{')) return std::nullopt;
    if (parts.take('}')) return parts.atEnd() ? std::optional(members) : std::nullopt;
    do {
        auto const member = takeMember(parts);
        if (!member || members.size() == mostMembers) return std::nullopt;
        if (std::ranges::count(members, member->name, &JsonMember::name) > 0) return std::nullopt;
        members.push_back(*member);
    } while (parts.take(','));
    return parts.take('}') && parts.atEnd() ? std::optional(members) : std::nullopt;
}

std::string jsonText(std::string_view text) {
    constexpr std::string_view DIGITS = "0123456789abcdef";
    std::string out = "\"";
    for (char const c : text) {
        auto const byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            out += '\\';
            out += c;
        } else if (byte < ' ') {
            out.append("\\u00").append(1, DIGITS[byte >> 4]).append(1, DIGITS[byte & 15]);
        } else {
            out += c;
        }
    }
    return out + '"';
}

} // namespace watch
