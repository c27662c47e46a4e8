#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace practice {

/// A file that grows, locked against other programs that would write it too.
class OutputFile {
public:
    /// Empties the file or makes a new one. Nothing, with errno set, on failure; EWOULDBLOCK:
    /// another program writes it.
    static std::optional<OutputFile> create(std::string const& path);

    OutputFile(OutputFile&& from) noexcept : fd_(std::exchange(from.fd_, -1)) {}
    OutputFile& operator=(OutputFile&& from) noexcept {
        std::swap(fd_, from.fd_);
        return *this;
    }
    ~OutputFile();

    /// Hands everything to the system at once, so that others can read it. False, with errno set,
    /// on failure.
    bool write(std::string_view bytes) const;

private:
    explicit OutputFile(int fd) : fd_(fd) {}

    int fd_;
};

/// Replaces a whole file at once, so that nobody reads half of it. False, with errno set, on
/// failure.
bool replaceFile(std::string const& path, std::string_view content);

} // namespace practice
