#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace watch_test {

/// What a page makes of an event stream.
class EventReader {
public:
    std::string log;    ///< the lines since the last reset
    std::string lastId; ///< that the browser would tell when it connects again
    std::string status; ///< the last one
    int resets = 0, logEvents = 0;

    /// Takes the next piece of the stream, of any length.
    void take(std::string_view piece) {
        rest_ += piece;
        std::size_t begin = 0;
        for (std::size_t end = 0; (end = rest_.find("\n\n", begin)) != std::string::npos;) {
            takeEvent(std::string_view(rest_).substr(begin, end + 1 - begin));
            begin = end + 2;
        }
        rest_.erase(0, begin);
    }

    /// Whether everything taken ended with a whole event.
    bool complete() const { return rest_.empty(); }

private:
    void takeEvent(std::string_view event) {
        std::string name, data, id = lastId;
        for (; !event.empty(); event.remove_prefix(event.find('\n') + 1)) {
            std::string_view const line = event.substr(0, event.find('\n'));
            if (line.starts_with("event: ")) name = line.substr(7);
            if (line.starts_with("data: ")) data.append(line.substr(6)).append("\n");
            if (line.starts_with("id: ")) id = line.substr(4);
        }
        lastId = id;
        if (data.empty()) return; // a browser does not deliver it
        if (name == "status") status = data;
        if (name == "reset") {
            log.clear();
            ++resets;
        }
        if (name == "log") {
            log += data;
            ++logEvents;
        }
    }

    std::string rest_;
};

inline int countOf(std::string_view text, std::string_view wanted) {
    int count = 0;
    for (std::size_t at = 0; (at = text.find(wanted, at)) != std::string_view::npos; ++at) {
        ++count;
    }
    return count;
}

} // namespace watch_test
