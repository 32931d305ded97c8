#pragma once

#include <string>
#include <vector>

namespace Unit {

/// " Did you mean ...?" with the candidate that is within a short distance of `word`; empty when there is none.
std::string suggestion(const std::string& word, const std::vector<std::string>& candidates);

}  // namespace Unit
