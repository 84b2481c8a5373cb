#pragma once

#include <statistics/diff_table.h>

#include <string>

namespace demo {

/// The comparison as RFC 4180 text: a row of captions with one column for each snapshot and a last one that
/// tells whether the values differ, then the counters. Numbers have a point and all their digits.
std::string toCsv(const statistics::DiffTable& comparison);

} // namespace demo
