#pragma once

#include "link/manual_time.h"

namespace kelo::test {

using kelo::ManualTime;

} // namespace kelo::test
