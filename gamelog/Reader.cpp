#include "gamelog/Reader.h"

#include "gamelog/Line.h"

namespace gamelog {

namespace {

constexpr std::string_view MAGIC = "ULG";

/// The version of a text log's first line; 0 if it is none.
int versionOf(std::string_view header) {
    if (header.ends_with('\r')) header.remove_suffix(1);
    if (header.size() != MAGIC.size() + 1 || !header.starts_with(MAGIC)) return 0;
    int const version = header.back() - '0';
    return version >= OLDEST_VERSION && version <= NEWEST_VERSION ? version : 0;
}

std::string whyNoLog(std::string_view first) {
    std::string const wanted = "; logs of version 4, 5 and 6 can be read";
    if (first.empty()) return "this is no game log: it is empty" + wanted;
    if (first.front() == '[' || first.front() == '{') return "this is a log in JSON" + wanted;
    if (first.starts_with(MAGIC)) {
        return "this is a game log of another version, or a binary one" + wanted;
    }
    return "this is no game log: " + describeFault(first, {1, "ULG4, ULG5 or ULG6"});
}

} // namespace

bool Reader::nextLine(std::string_view& line) {
    switch (source_.next(line)) {
    case LineSource::Result::line:
        ++line_;
        return true;
    case LineSource::Result::end:
        return false;
    case LineSource::Result::fault:
        error_ = source_.error();
        if (line_ > 0) error_ = "line " + std::to_string(line_ + 1) + ": " + error_;
        return false;
    }
    return false;
}

bool Reader::readHeader() {
    std::string_view line;
    bool const complete = nextLine(line);
    if (!error_.empty()) return false;
    if (!complete) line = source_.remainder();
    version_ = complete ? versionOf(line) : 0;
    if (version_ == 0) error_ = "line 1: " + whyNoLog(line);
    return version_ != 0;
}

Record const* Reader::next() {
    if (!error_.empty() || (version_ == 0 && !readHeader())) return nullptr;
    std::string_view line;
    if (!nextLine(line)) return nullptr;
    if (LineFault const fault = readLine(line, record_)) {
        error_ = "line " + std::to_string(line_) + ", " + describeFault(line, fault);
        return nullptr;
    }
    return &record_;
}

} // namespace gamelog
