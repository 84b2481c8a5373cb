#pragma once

#include "debug_message.h"

/// The assertion service. A condition that fails is reported once and the code goes on: the expression gives
/// the condition back, so that what follows can be made safe.
///
///     if (!ORV_ASSERT(index < size()))
///         return;
#define ORV_ASSERT(expr)                                                                                     \
    (static_cast<bool>(expr) ||                                                                              \
     (::Orv::DebugMessageHelper().criticalMessage(                                                           \
          __FILE__, __LINE__, "ASSERTION FAILED: %s\r\n" __FILE__ "(%d)%s%s\r\n", #expr, __LINE__, "", ""),  \
      false))

/// The same with a message of its own, a string literal.
#define ORV_ASSERT_MESSAGE(expr, message)                                                                    \
    (static_cast<bool>(expr) ||                                                                              \
     (::Orv::DebugMessageHelper().criticalMessage(                                                           \
          __FILE__, __LINE__, "ASSERTION FAILED: %s\r\n" message "\r\n" __FILE__ "(%d)%s%s\r\n", #expr,      \
          __LINE__, "", ""),                                                                                 \
      false))
