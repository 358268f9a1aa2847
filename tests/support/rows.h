// Test support: table-driven checks. A test lists {input, expected} rows and loops over them,
// naming the input of a failing row in the message.
#pragma once

#include <initializer_list>
#include <utility>

namespace tiv::test {

template <class In, class Out>
using Rows = std::initializer_list<std::pair<In, Out>>;

}  // namespace tiv::test
