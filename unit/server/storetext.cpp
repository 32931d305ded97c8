// Values as people write them.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>

#include "unit/server/store.h"

namespace Unit {

using Catalogue::Kind;
using Catalogue::Limit;
using Bytes = std::vector<std::byte>;

namespace {

bool outOf(double value, const Limit& minimum, const Limit& maximum) {
    return (minimum.form == Limit::Form::Fixed && !(value >= minimum.value)) ||
           (maximum.form == Limit::Form::Fixed && !(value <= maximum.value));
}

std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.9g", value);
    return text;
}

std::string rangeOf(const Cell& cell) {
    const auto side = [](const Limit& limit, const char* open) {
        return limit.form == Limit::Form::Fixed ? number(limit.value) : std::string(open);
    };
    return side(cell.minimum, "anything") + " to " + side(cell.maximum, "anything");
}

template <typename T>
std::optional<Bytes> bytesOf(T value) {
    Bytes bytes(sizeof value);
    std::memcpy(bytes.data(), &value, sizeof value);
    return bytes;
}

std::optional<Bytes> parseEnum(const Cell& cell, std::string_view text, std::string& problem) {
    std::int32_t value = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool numeric = error == std::errc() && rest == text.data() + text.size();
    if (cell.enumType == Catalogue::noEnumType) {
        if (numeric) return bytesOf(value);
        problem = "\"" + std::string(text) + "\" is no number.";
        return std::nullopt;
    }
    const auto& type = Catalogue::enumTypes[static_cast<std::size_t>(cell.enumType)];
    std::string known;
    for (const auto& entry : type.entries) {
        if (text == entry.name || (numeric && entry.value == value)) return bytesOf(entry.value);
        if (known.size() < 200) known += " " + std::to_string(entry.value) + "=" + entry.name;
    }
    problem = "\"" + std::string(text) + "\" is no " + type.name + "; there are" + known + ".";
    return std::nullopt;
}

std::optional<Bytes> parseMask(const Cell& cell, std::string_view text, std::string& problem) {
    Bytes mask(cell.size);
    if (text == "none") return mask;
    if (text == "all") {
        std::fill(mask.begin(), mask.end(), std::byte{0xff});
        return mask;
    }
    for (std::size_t i = 0; i < cell.size; ++i) {
        unsigned byte = 0;
        const char* digits = text.data() + 2 * i;
        if (text.size() != 2 * mask.size() || std::from_chars(digits, digits + 2, byte, 16).ptr != digits + 2) {
            problem = "A mask is \"all\", \"none\" or " + std::to_string(2 * mask.size()) + " hexadecimal digits.";
            return std::nullopt;
        }
        mask[i] = static_cast<std::byte>(byte);
    }
    return mask;
}

std::optional<Bytes> parseText(const Cell& cell, std::string_view text, std::string& problem) {
    if (text.size() >= cell.size) {
        problem = "The text has " + std::to_string(text.size()) + " bytes, " + std::to_string(cell.size - 1) +
                  " are possible.";
        return std::nullopt;
    }
    Bytes field(cell.size);
    std::memcpy(field.data(), text.data(), text.size());
    return field;
}

std::optional<Bytes> flagBytes(double value, std::string& problem) {
    if (value == 0 || value == 1) return bytesOf(static_cast<std::uint8_t>(value));
    problem = "A flag is 0 or 1.";
    return std::nullopt;
}

std::optional<Bytes> floatBytes(double value, std::string_view text, std::string& problem) {
    if (std::isinf(static_cast<float>(value)) == std::isinf(value)) return bytesOf(static_cast<float>(value));
    problem = std::string(text) + " is beyond a number of 32 bits.";
    return std::nullopt;
}

std::optional<Bytes> integerBytes(double value, std::string_view text, std::string& problem) {
    if (value == std::floor(value) && std::abs(value) <= std::numeric_limits<std::int32_t>::max())
        return bytesOf(static_cast<std::int32_t>(value));
    problem = std::string(text) + " is no whole number of 32 bits.";
    return std::nullopt;
}

/// For a flag, an integer or a float.
std::optional<Bytes> parseNumber(const Cell& cell, std::string_view text, std::string& problem) {
    if (text == "true") text = "1";
    if (text == "false") text = "0";
    double value = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || rest != text.data() + text.size() || (std::isnan(value) && cell.kind != Kind::Float)) {
        problem = "\"" + std::string(text) + "\" is no number.";
        return std::nullopt;
    }
    if (cell.kind == Kind::Flag) return flagBytes(value, problem);
    if (outOf(value, cell.minimum, cell.maximum)) {
        problem = std::string(text) + " is out of range: " + rangeOf(cell) + ".";
        return std::nullopt;
    }
    return cell.kind == Kind::Float ? floatBytes(value, text, problem) : integerBytes(value, text, problem);
}

}  // namespace

std::string Store::show(const Cell& cell) const {
    switch (cell.kind) {
        case Kind::Text: return text(cell);
        case Kind::Float: return number(static_cast<double>(real(cell)));
        case Kind::Mask: {
            std::string digits;
            char pair[3];
            for (const std::byte byte : bytes(cell)) {
                std::snprintf(pair, sizeof pair, "%02x", std::to_integer<unsigned>(byte));
                digits += pair;
            }
            return digits;
        }
        default: return std::to_string(integer(cell));
    }
}

std::optional<Bytes> Store::parse(const Cell& cell, std::string_view text, std::string& problem) {
    switch (cell.kind) {
        case Kind::Mask: return parseMask(cell, text, problem);
        case Kind::Text: return parseText(cell, text, problem);
        case Kind::Enum: return parseEnum(cell, text, problem);
        default: return parseNumber(cell, text, problem);
    }
}

}  // namespace Unit
