#pragma once

#include <string>
#include <string_view>

#include "gamelog/LineSource.h"
#include "gamelog/Records.h"

namespace gamelog {

/// Reads a game log of version 4, 5 or 6, plain or gzip, record by record:
///
///     Reader reader = Reader::ofFile("match.rcg");
///     while (Record const* record = reader.next()) { ... }
///     if (!reader.error().empty()) { ... }
class Reader {
public:
    /// A path, or "-" for the standard input. What cannot be opened shows as an error.
    static Reader ofFile(std::string const& path) { return Reader(LineSource::ofFile(path)); }
    /// The bytes must live as long as the reader.
    static Reader ofMemory(std::string_view bytes) { return Reader(LineSource::ofMemory(bytes)); }

    /// The next record, valid until the next call; null at the end and at a fault. After the end a
    /// call looks whether a plain file has grown.
    Record const* next();

    /// The version in the header; 0 before the first record was read.
    int version() const { return version_; }
    /// The line of the last record, or of the fault, counted from 1.
    std::size_t line() const { return line_; }
    /// The beginning of a line that was cut off at the end of the log.
    std::string_view remainder() const { return source_.remainder(); }
    /// What was not understood, with the line; empty: nothing.
    std::string const& error() const { return error_; }

private:
    explicit Reader(LineSource&& source) : source_(std::move(source)) {}
    bool nextLine(std::string_view& line);
    bool readHeader();

    LineSource source_;
    Record record_;
    int version_ = 0;
    std::size_t line_ = 0;
    std::string error_;
};

} // namespace gamelog
