#pragma once

#include <string>

/// A text of the pseudo-language: accented letters, a third longer, in corner brackets. On a screen in this language a
/// plain word was never taken from the table, and a missing bracket marks a place that is too tight for a longer
/// language. Placeholders, line breaks and the count of lines stay.
std::string pseudoText(const std::string& english);
