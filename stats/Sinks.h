#pragma once

#include <charconv>
#include <cmath>
#include <cstdio>
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

/// A value on its way to a sink: a number in digits, a text by `writeText`, `absent` for an
/// optional that holds nothing.
template <typename T, typename WriteText>
void appendValue(std::string& out, T const& value, std::string_view absent, WriteText writeText) {
    if constexpr (std::is_arithmetic_v<T>) {
        appendNumber(out, value);
    } else if constexpr (std::is_convertible_v<T const&, std::string_view>) {
        writeText(value);
    } else if (value) {
        appendValue(out, *value, absent, writeText);
    } else {
        out += absent;
    }
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
        appendValue(out_, value, "", [this](std::string_view text) { quoted(text); });
    }

private:
    /// Quoted where a comma, a quote or a line end asks for it.
    void quoted(std::string_view value) {
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
        appendValue(out_, value, "null", [this](std::string_view text) { quoted(text); });
    }

    /// A value that is JSON already.
    void raw(std::string_view name, std::string_view json) {
        key(name);
        out_ += json;
    }

private:
    void key(std::string_view name) {
        if (!std::exchange(first_, false)) out_ += ", ";
        quoted(name);
        out_ += ": ";
    }

    /// Bytes outside ASCII become the letters of the same number: logs have no fixed encoding, and
    /// JSON must be valid.
    void quoted(std::string_view value) {
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
