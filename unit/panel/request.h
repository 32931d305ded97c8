#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "unit/ctl/inputdevices.h"

namespace Unit {

/// What a browser may ask, one JSON object a message: {"t": WORD, ...}, and a number "n" where it wants an answer.
struct Request {
    /// The browser has drawn a frame and can take another.
    struct Credit {};
    struct Key {
        const NamedKey* key;
        bool down;
    };
    /// Which contacts there are now, by slot.
    struct Touch {
        Contacts contacts;
    };
    /// A setting of a module of the server; `value` as JSON.
    struct Do {
        std::string module, setting, value;
    };
    struct Set {
        std::string name, value;
    };
    struct Scene {
        std::string name;
    };
    struct Trace {
        std::string field;  ///< of VarTRACE_INFO_VARIABLE
        std::uint32_t mask;
    };
    /// The values that the browser wants to be told of from now on, instead of those before.
    struct Watch {
        std::vector<std::string> names;
    };
    struct LogLevel {
        int level;
    };
    struct Step {
        unsigned frames;
    };

    static constexpr std::size_t longest = 8 << 10;  ///< bytes of a message
    static constexpr std::size_t mostWatched = 100;
    static constexpr unsigned mostFrames = 600;

    std::variant<Credit, Key, Touch, Do, Set, Scene, Trace, Watch, LogLevel, Step> what;
    std::optional<std::uint32_t> number;
};

/// Nothing, and what is wrong in `problem`, when `text` is no request. Whatever passes is one line without control
/// characters in each of its parts.
std::optional<Request> parseRequest(std::string_view text, std::string& problem);

}  // namespace Unit
