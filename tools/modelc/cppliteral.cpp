#include "tools/modelc/cppliteral.h"

#include <cstdio>
#include <string_view>

namespace Modelc {

std::string cppString(const std::string& text) {
    std::string result = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\' || c == '?') {
            result += '\\';
            result += c;
        } else if (byte >= 0x20 && byte < 0x7f) {
            result += c;
        } else {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\%03o", byte);  // three octal digits end by themselves
            result += escape;
        }
    }
    return result + "\"";
}

std::string cppFloat(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%.9g", static_cast<double>(static_cast<float>(value)));
    std::string result = text;
    if (result.find_first_of(".e") == std::string::npos) result += ".0";
    return result + "f";
}

std::string formatFault(const std::string& format, Type type) {
    const std::string_view wanted = type == Type::Float ? "aAeEfFgG" : type == Type::String ? "s" : "diuxXoc";
    int conversions = 0;
    for (std::size_t i = 0; i < format.size(); ++i) {
        if (format[i] != '%') continue;
        if (++i < format.size() && format[i] == '%') continue;
        while (i < format.size() && std::string_view("-+ #0123456789.").find(format[i]) != std::string_view::npos) ++i;
        if (i >= format.size()) return "this format ends inside a conversion";
        if (wanted.find(format[i]) == std::string_view::npos)
            return "the conversion '%" + std::string(1, format[i]) + "' does not fit a " + std::string(typeWord(type));
        if (++conversions > 1) return "this format converts two values, and there is one";
    }
    return {};
}

}  // namespace Modelc
