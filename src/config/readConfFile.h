#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

/// A keyword of the configuration file. The kind of its member is the kind of value that it takes.
struct ConfKeyword {
    std::string_view name;
    std::variant<std::string*, int*, double*> member;
    /// Values outside make no sense, but are taken.
    double low = 0.0, high = 0.0;
};

/// Every keyword, in the order of ConfigFile's members.
std::span<ConfKeyword const> confKeywords();

/// What the reader expected where it stopped.
enum class ConfPlace { keyword, colon, value };

/// What was read, for messages to people. The views point into the text that was read.
struct ConfReport {
    struct Setting {
        ConfKeyword const* keyword;
        std::string_view name;  ///< the keyword where it stands
        std::string_view value; ///< empty, or wrong, where the reading stopped
    };
    struct Stop {
        ConfPlace place;
        std::string_view token; ///< the first that does not fit; empty at the end of the text
    };
    std::vector<Setting> settings;
    std::optional<Stop> stop; ///< set when the reading failed
};

/// Scans and parses the text of a configuration file into the members of ConfigFile.
///
///   configlines: configline | configlines configline
///   configline:  keyword ":" value
///
/// Each keyword, in the case of the table in readConfFile.cpp, names a member of ConfigFile; its
/// value is CHARS for a string, LONG for an int, DOUBLE or LONG for a double:
///
///   LONG    -?[0-9]+
///   DOUBLE  -?[0-9]+.[0-9]+([eE]-?[0-9]+)?
///   CHARS   "[A-Za-z0-9 _-]+"    (between double quotes)
///
/// Blanks, tabs and line ends separate tokens and mean nothing else; "#" starts a comment up to the
/// end of the line. Each value is assigned as soon as it is read; a later one for the same keyword
/// overwrites it. An unknown character or a wrong token is reported on standard error and ends the
/// reading with false, as does a number too large for its member or a file without any configline.
/// A number too near to zero for its member is 0. The report, where one is given, is filled in
/// besides.
bool readConfFile(std::string_view text, bool scannerDebug, bool parserDebug,
                  ConfReport* report = nullptr);
