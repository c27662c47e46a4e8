#include "gamelog/LineSource.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <unistd.h>
#include <utility>
#include <zlib.h>

#include "gamelog/Line.h"

namespace gamelog {

namespace {

constexpr std::size_t BLOCK = 1 << 17;
constexpr int GZIP_WINDOW = 15 + 16; // largest window; a gzip header is expected

/// Bytes as they lie in a file or in memory.
class RawBytes {
public:
    explicit RawBytes(std::string_view memory) : memory_(memory) {}
    explicit RawBytes(int file) : file_(file) {}
    RawBytes(RawBytes const&) = delete;
    RawBytes& operator=(RawBytes const&) = delete;
    ~RawBytes() {
        if (file_ > STDIN_FILENO) close(file_);
    }

    /// How many bytes came, 0 at the end, negative on a failure (errno says which).
    ssize_t read(char* target, std::size_t size) {
        if (file_ >= 0) {
            ssize_t got = 0;
            do {
                got = ::read(file_, target, size);
            } while (got < 0 && errno == EINTR);
            return got;
        }
        std::size_t const count = memory_.copy(target, size);
        memory_.remove_prefix(count);
        return static_cast<ssize_t>(count);
    }

private:
    int file_ = -1;
    std::string_view memory_;
};

} // namespace

/// Bytes after unpacking, if they were packed.
class LineSource::Bytes {
public:
    template <typename Origin>
    explicit Bytes(Origin origin) : raw_(origin) {}
    Bytes(Bytes const&) = delete;
    Bytes& operator=(Bytes const&) = delete;
    ~Bytes() {
        if (stream_) inflateEnd(&*stream_);
    }

    /// As RawBytes::read; `error` is filled on a failure.
    ssize_t read(char* target, std::size_t size, std::string& error) {
        if (!kindKnown_ && !findKind(error)) return -1;
        if (stream_) return unpack(target, size, error);
        if (std::size_t const count = std::min(size, packed_.size()); count > 0) {
            packed_.copy(target, count);
            packed_.erase(0, count);
            return static_cast<ssize_t>(count);
        }
        ssize_t const got = raw_.read(target, size);
        if (got < 0) error = std::strerror(errno);
        return got;
    }

private:
    /// Looks at the first two bytes.
    bool findKind(std::string& error) {
        constexpr std::string_view MAGIC = "\x1f\x8b";
        while (packed_.size() < MAGIC.size()) {
            ssize_t const got = readPacked();
            if (got < 0) error = std::strerror(errno);
            if (got < 0) return false;
            if (got == 0) return true; // looks again when there is more
        }
        kindKnown_ = true;
        if (packed_.starts_with(MAGIC)) {
            stream_.emplace();
            if (inflateInit2(&*stream_, GZIP_WINDOW) != Z_OK) {
                error = "zlib does not start";
                stream_.reset();
                return false;
            }
            stream_->avail_in = static_cast<uInt>(packed_.size());
        }
        return true;
    }

    ssize_t readPacked() {
        std::size_t const before = packed_.size();
        packed_.resize(before + BLOCK);
        ssize_t const got = raw_.read(packed_.data() + before, BLOCK);
        packed_.resize(before + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
        return got;
    }

    /// A packed file that ends early gives what it has.
    ssize_t unpack(char* target, std::size_t size, std::string& error) {
        stream_->next_out = reinterpret_cast<Bytef*>(target);
        stream_->avail_out = static_cast<uInt>(size);
        while (stream_->avail_out == size) {
            if (stream_->avail_in == 0) {
                packed_.clear();
                ssize_t const got = readPacked();
                if (got < 0) error = std::strerror(errno);
                if (got <= 0) return got;
                stream_->avail_in = static_cast<uInt>(got);
            }
            stream_->next_in =
                reinterpret_cast<Bytef*>(packed_.data()) + packed_.size() - stream_->avail_in;
            int const result = inflate(&*stream_, Z_NO_FLUSH);
            if (result == Z_STREAM_END) {
                inflateReset(&*stream_); // another packed part may follow
            } else if (result != Z_OK && result != Z_BUF_ERROR) {
                error = "the gzip data are damaged";
                return -1;
            }
        }
        return static_cast<ssize_t>(size - stream_->avail_out);
    }

    RawBytes raw_;
    std::string packed_; // as it was read; of a plain source only its first bytes
    std::optional<z_stream> stream_;
    bool kindKnown_ = false;
};

LineSource::LineSource(std::unique_ptr<Bytes> bytes) : bytes_(std::move(bytes)) {}
LineSource::LineSource(LineSource&&) noexcept = default;
LineSource& LineSource::operator=(LineSource&&) noexcept = default;
LineSource::~LineSource() = default;

LineSource LineSource::ofFile(std::string const& path) {
    int const file = path == "-" ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file >= 0) return LineSource(std::make_unique<Bytes>(file));
    LineSource source(nullptr);
    source.error_ = std::strerror(errno);
    return source;
}

LineSource LineSource::ofMemory(std::string_view bytes) {
    return LineSource(std::make_unique<Bytes>(bytes));
}

LineSource::Result LineSource::next(std::string_view& line) {
    if (!error_.empty()) return Result::fault;
    std::size_t searched = 0;
    for (;;) {
        std::string_view const rest = remainder();
        std::size_t const found = rest.find('\n', searched);
        if (found != std::string_view::npos) {
            line = rest.substr(0, found);
            begin_ += found + 1;
            return Result::line;
        }
        if (rest.size() > LONGEST_LINE) {
            error_ = "a line of more than " + std::to_string(LONGEST_LINE) + " bytes";
            return Result::fault;
        }
        searched = rest.size();
        if (!refill()) return error_.empty() ? Result::end : Result::fault;
    }
}

std::string_view LineSource::remainder() const {
    return std::string_view(buffer_).substr(begin_, end_ - begin_);
}

/// Brings more bytes behind the rest; false when there are none.
bool LineSource::refill() {
    std::copy(buffer_.begin() + static_cast<std::ptrdiff_t>(begin_),
              buffer_.begin() + static_cast<std::ptrdiff_t>(end_), buffer_.begin());
    end_ -= begin_;
    begin_ = 0;
    buffer_.resize(LONGEST_LINE + 1 + BLOCK);
    ssize_t const got = bytes_->read(buffer_.data() + end_, BLOCK, error_);
    if (got > 0) end_ += static_cast<std::size_t>(got);
    return got > 0;
}

} // namespace gamelog
