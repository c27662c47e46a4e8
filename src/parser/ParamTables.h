#pragma once

#include "parser/RCC_Param.h"

#include <array>
#include <string_view>
#include <variant>

namespace rcc {

/// One parameter of a record: its name and where it goes.
template <class Record>
struct ParamField {
    std::string_view name;
    std::variant<double Record::*, int Record::*> member;
    std::string_view wireName = name; ///< in the form with names
};

// In the order of the positional form.
extern std::array<ParamField<RCC_ServerParam>, 103> const SERVER_PARAM_FIELDS;
extern std::array<ParamField<RCC_PlayerParam>, 19> const PLAYER_PARAM_FIELDS;
extern std::array<ParamField<RCC_PlayerType>, 12> const PLAYER_TYPE_FIELDS;

} // namespace rcc
