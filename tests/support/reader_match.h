// Holds the reader to its plain twin.
#pragma once

#include <string>

#include "store/reader.h"
#include "support/plain_reader.h"

namespace zendrix::test {

// The first difference between the two in words, or empty.
std::string Difference(const store::CMkvlf& reader, const PlainReader& plain);

}  // namespace zendrix::test
