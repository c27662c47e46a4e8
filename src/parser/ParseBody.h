#pragma once

#include "parser/RCC_Scanner.h"
#include "parser/RCC_SenseBody.h"

namespace rcc {

/// Reads what follows the word `sense_body`, up to the closing of the message, which is not read.
bool parseSenseBody(RCC_Scanner& scanner, RCC_SenseBody& body);

} // namespace rcc
