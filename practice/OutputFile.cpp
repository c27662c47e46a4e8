#include "practice/OutputFile.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace practice {

std::optional<OutputFile> OutputFile::create(std::string const& path) {
    // Intentional: not emptied by open, which would destroy what another program is writing.
    OutputFile file(::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666));
    if (file.fd_ < 0) return std::nullopt;
    if (::flock(file.fd_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) return std::nullopt;
    // A pipe or a terminal cannot be emptied and needs not to be.
    if (::ftruncate(file.fd_, 0) != 0 && errno != EINVAL) return std::nullopt;
    return file;
}

OutputFile::~OutputFile() {
    if (fd_ >= 0) ::close(fd_);
}

bool OutputFile::write(std::string_view bytes) const {
    while (!bytes.empty()) {
        ssize_t const n = ::write(fd_, bytes.data(), bytes.size());
        if (n < 0 && errno != EINTR) return false;
        if (n > 0) bytes.remove_prefix(static_cast<std::size_t>(n));
    }
    return true;
}

bool replaceFile(std::string const& path, std::string_view content) {
    std::string const draft = path + ".new";
    auto const file = OutputFile::create(draft);
    return file && file->write(content) && std::rename(draft.c_str(), path.c_str()) == 0;
}

} // namespace practice
