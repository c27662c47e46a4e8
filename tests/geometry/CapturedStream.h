#pragma once

#include <ostream>
#include <sstream>
#include <string>

/// Takes what is written to a stream while it lives.
class CapturedStream {
public:
    explicit CapturedStream(std::ostream& os) : stream_(os), original_(os.rdbuf(taken_.rdbuf())) {}
    ~CapturedStream() { stream_.rdbuf(original_); }
    CapturedStream(CapturedStream const&) = delete;
    CapturedStream& operator=(CapturedStream const&) = delete;

    std::string text() const { return taken_.str(); }

private:
    std::ostringstream taken_;
    std::ostream& stream_;
    std::streambuf* original_;
};
