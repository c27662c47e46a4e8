#pragma once

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <unistd.h>
#include <zlib.h>

namespace gamelog_test {

/// All bytes of a file as they lie there.
inline std::string bytesOf(std::string const& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// All bytes of a packed file, unpacked by zlib's own file functions.
inline std::string unpacked(std::string const& path) {
    std::string out;
    gzFile const file = gzopen(path.c_str(), "rb");
    char block[4096];
    for (int got = 0; file != nullptr && (got = gzread(file, block, sizeof block)) > 0;) {
        out.append(block, static_cast<std::size_t>(got));
    }
    gzclose(file);
    return out;
}

/// A file that is gone with this object.
class TemporaryFile {
public:
    explicit TemporaryFile(std::string const& content = {}) {
        char name[] = "/tmp/gamelog-test-XXXXXX";
        if (int const file = mkstemp(name); file >= 0) close(file);
        path = name;
        add(content);
    }
    TemporaryFile(TemporaryFile const&) = delete;
    TemporaryFile& operator=(TemporaryFile const&) = delete;
    ~TemporaryFile() { unlink(path.c_str()); }

    void add(std::string const& content) const {
        std::ofstream(path, std::ios::binary | std::ios::app) << content;
    }

    std::string path;
};

} // namespace gamelog_test
