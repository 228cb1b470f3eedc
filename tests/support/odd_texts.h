// Short texts that would have a meaning of their own in some place of some template, and the hostile corpus.
#pragma once

#include <string>
#include <vector>

namespace zendrix::test {

const std::vector<std::string>& OddTexts();

}  // namespace zendrix::test
