#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace gamelog {

/// Lines of a file or of memory, plain or gzip (told by the first bytes). Holds no more than a
/// block and the longest line, whatever comes.
class LineSource {
public:
    enum class Result { line, end, fault };

    /// A file, a pipe, or "-" for the standard input.
    static LineSource ofFile(std::string const& path);
    /// The bytes must live as long as the source.
    static LineSource ofMemory(std::string_view bytes);

    LineSource(LineSource&&) noexcept;
    LineSource& operator=(LineSource&&) noexcept;
    ~LineSource();

    /// The next line that has an end, without it; valid until the next call. After `end` a call
    /// looks whether a plain file has grown.
    Result next(std::string_view& line);

    /// Bytes after the last line end; valid until the next call.
    std::string_view remainder() const;

    /// Why there is a fault.
    std::string const& error() const { return error_; }

private:
    class Bytes;
    explicit LineSource(std::unique_ptr<Bytes> bytes);
    bool refill();

    std::unique_ptr<Bytes> bytes_;
    std::string buffer_;
    std::size_t begin_ = 0; // of what has not been given away
    std::size_t end_ = 0;
    std::string error_;
};

} // namespace gamelog
