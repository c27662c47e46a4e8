#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace watch {

/// Who may ask for what. A page of another web site must neither read the match nor give commands,
/// whatever name it makes lead here: so the name that the browser asked for is checked, for
/// commands also where the asking page came from, and that it knows the token that only our page
/// holds.
class Access {
public:
    /// `address`: where requests are listened for. At a wildcard address every numeric address is
    /// our name.
    Access(std::string address, int port, std::string token);

    /// Whether the request was meant for this server: the Host header is one of our names.
    bool hostAllowed(std::string_view host) const;
    /// Whether a page that this server served under that name asks.
    static bool originAllowed(std::string_view origin, std::string_view host);
    bool tokenRight(std::string_view token) const;

    std::string const& token() const { return token_; }
    /// Where the page is found.
    std::string url() const;

private:
    bool isWildcard() const { return address_ == "0.0.0.0" || address_ == "::"; }

    std::string address_;
    int port_;
    std::string token_;
};

/// So many random bytes of the system in hexadecimal digits.
std::string randomHex(std::size_t bytes);

} // namespace watch
