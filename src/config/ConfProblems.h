#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Something about a configuration file that its writer should know.
struct ConfProblem {
    bool isError;        ///< the player would not start; else it takes the value all the same
    int line;            ///< counted from 1
    std::string message; ///< names the keyword and what is allowed
};

/// Reads the text as the player does, into the members of ConfigFile and with the same words on
/// standard error. The error, if there is one, is the last in the list.
std::vector<ConfProblem> findConfProblems(std::string_view text);
