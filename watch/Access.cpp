#include "watch/Access.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <sys/random.h>
#include <system_error>

#include "watch/Text.h"

namespace watch {

namespace {

constexpr int HTTP_PORT = 80; // not written in addresses
constexpr std::string_view SCHEME = "http://";

std::string bracketed(std::string const& address) {
    return address.find(':') == std::string::npos ? address : joined({"[", address, "]"});
}

bool isNumeric(std::string name) {
    std::array<unsigned char, sizeof(in6_addr)> parsed{};
    if (name.starts_with('[') && name.ends_with(']')) {
        name = name.substr(1, name.size() - 2);
        return inet_pton(AF_INET6, name.c_str(), parsed.data()) == 1;
    }
    return inet_pton(AF_INET, name.c_str(), parsed.data()) == 1;
}

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool sameName(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, {}, lower, lower);
}

} // namespace

Access::Access(std::string address, int port, std::string token)
    : address_(std::move(address)), port_(port), token_(std::move(token)) {}

bool Access::hostAllowed(std::string_view host) const {
    std::string const port = joined({":", std::to_string(port_)});
    if (host.ends_with(port)) {
        host.remove_suffix(port.size());
    } else if (port_ != HTTP_PORT) {
        return false;
    }
    constexpr std::array<std::string_view, 3> LOOPBACK = {"localhost", "127.0.0.1", "[::1]"};
    return std::ranges::any_of(LOOPBACK, [host](auto name) { return sameName(host, name); }) ||
           sameName(host, bracketed(address_)) || (isWildcard() && isNumeric(std::string(host)));
}

bool Access::originAllowed(std::string_view origin, std::string_view host) {
    return origin.starts_with(SCHEME) && sameName(origin.substr(SCHEME.size()), host);
}

bool Access::tokenRight(std::string_view token) const {
    if (token.size() != token_.size()) return false;
    unsigned difference = 0; // how long it takes tells nothing about where they differ
    for (std::size_t i = 0; i < token.size(); ++i) {
        difference |= static_cast<unsigned char>(token[i] ^ token_[i]);
    }
    return difference == 0;
}

std::string Access::url() const {
    std::string const name = isWildcard() ? "127.0.0.1" : bracketed(address_);
    return joined({SCHEME, name, ":", std::to_string(port_), "/"});
}

std::string randomHex(std::size_t bytes) {
    constexpr std::string_view DIGITS = "0123456789abcdef";
    std::string random(bytes, '\0'), hex;
    if (getrandom(random.data(), bytes, 0) != static_cast<ssize_t>(bytes)) {
        throw std::system_error(errno, std::generic_category(), "cannot get random numbers");
    }
    for (char const c : random) {
        auto const byte = static_cast<unsigned char>(c);
        hex += DIGITS[byte >> 4];
        hex += DIGITS[byte & 15];
    }
    return hex;
}

} // namespace watch
