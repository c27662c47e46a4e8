#pragma once

#include <charconv>
#include <cmath>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

/// The same description of a row goes to one of three sinks: the header of a CSV table, a row of
/// it, or a JSON object. What stands between open and close becomes `name_key` in CSV and an inner
/// object in JSON.
namespace stats {

template <typename Number>
void appendNumber(std::string& out, Number value) {
    char digits[40];
    out.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

class CsvHeader {
public:
    explicit CsvHeader(std::string& out) : out_(out) {}

    void open(std::string_view name) { prefix_.assign(name).push_back('_'); }
    void close() { prefix_.clear(); }

    template <typename T>
    void field(std::string_view key, T const& /*value*/) {
        if (!std::exchange(first_, false)) out_ += ',';
        out_ += prefix_;
        out_ += key;
    }

private:
    std::string& out_;
    std::string prefix_;
    bool first_ = true;
};

class CsvRow {
public:
    explicit CsvRow(std::string& out) : out_(out) {}

    void open(std::string_view /*name*/) {}
    void close() {}

    template <typename T>
    void field(std::string_view /*key*/, T const& value) {
        if (!std::exchange(first_, false)) out_ += ',';
        print(value);
    }

private:
    template <typename T>
    void print(T const& value) {
        if constexpr (std::is_arithmetic_v<T>) {
            appendNumber(out_, value);
        } else {
            text(value);
        }
    }
    template <typename T>
    void print(std::optional<T> const& value) {
        if (value) print(*value);
    }

    /// Quoted where a comma, a quote or a line end asks for it.
    void text(std::string_view value) {
        if (value.find_first_of(",\"\r\n") == value.npos) {
            out_ += value;
            return;
        }
        out_ += '"';
        for (char const c : value) {
            if (c == '"') out_ += '"';
            out_ += c;
        }
        out_ += '"';
    }

    std::string& out_;
    bool first_ = true;
};

class JsonObject {
public:
    explicit JsonObject(std::string& out) : out_(out) { out_ += '{'; }
    JsonObject(JsonObject const&) = delete;
    JsonObject& operator=(JsonObject const&) = delete;
    ~JsonObject() { out_ += '}'; }

    void open(std::string_view name) {
        key(name);
        out_ += '{';
        first_ = true;
    }
    void close() {
        out_ += '}';
        first_ = false;
    }

    template <typename T>
    void field(std::string_view name, T const& value) {
        key(name);
        print(value);
    }

    /// A value that is JSON already.
    void raw(std::string_view name, std::string_view json) {
        key(name);
        out_ += json;
    }

private:
    void key(std::string_view name) {
        if (!std::exchange(first_, false)) out_ += ", ";
        text(name);
        out_ += ": ";
    }

    template <typename T>
    void print(T const& value) {
        if constexpr (std::is_arithmetic_v<T>) {
            appendNumber(out_, value);
        } else {
            text(value);
        }
    }
    template <typename T>
    void print(std::optional<T> const& value) {
        if (value) {
            print(*value);
        } else {
            out_ += "null";
        }
    }

    /// Bytes outside ASCII become the letters of the same number: logs have no fixed encoding, and
    /// JSON must be valid.
    void text(std::string_view value) {
        out_ += '"';
        for (char const c : value) {
            auto const byte = static_cast<unsigned char>(c);
            if (c == '"' || c == '\\') {
                out_ += '\\';
                out_ += c;
            } else if (byte < 0x20 || byte > 0x7e) {
                char escaped[8];
                std::snprintf(escaped, sizeof escaped, "\\u%04x", byte);
                out_ += escaped;
            } else {
                out_ += c;
            }
        }
        out_ += '"';
    }

    std::string& out_;
    bool first_ = true;
};

} // namespace stats
