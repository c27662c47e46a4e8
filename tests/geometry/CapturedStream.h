#pragma once

#include <ostream>
#include <sstream>
#include <string>

/// Takes what is written to a stream while it lives.
class CapturedStream {
public:
    explicit CapturedStream(std::ostream& os) : stream(os), original(os.rdbuf(taken.rdbuf())) {}
    ~CapturedStream() { stream.rdbuf(original); }
    CapturedStream(CapturedStream const&) = delete;
    CapturedStream& operator=(CapturedStream const&) = delete;

    std::string text() const { return taken.str(); }

private:
    std::ostringstream taken;
    std::ostream& stream;
    std::streambuf* original;
};
