#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The code points of a text; nothing if it is not well-formed UTF-8 (overlong forms and surrogates are refused).
std::optional<std::u32string> decodeUtf8(std::string_view text);
bool isUtf8(std::string_view text);
std::string encodeUtf8(char32_t code);
