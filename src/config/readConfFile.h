#pragma once

#include <string_view>

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
/// A number too near to zero for its member is 0.
bool readConfFile(std::string_view text, bool scannerDebug, bool parserDebug);
