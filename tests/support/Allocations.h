#pragma once

namespace support {

/// Calls of operator new since the program started. Linking this replaces the operator.
long allocationCount();

} // namespace support
