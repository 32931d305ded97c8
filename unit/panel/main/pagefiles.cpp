#include "unit/panel/pagefiles.h"

#include <cstddef>
#include <string_view>

// Bytes of files of the build as they are: `name`Begin to `name`End.
#define EMBED(name, file)                                                                        \
    asm(".section .rodata\n.balign 16\n.global " #name "Begin\n" #name "Begin:\n.incbin \"" file \
        "\"\n"                                                                                   \
        ".global " #name "End\n" #name "End:\n.byte 0\n.previous\n");                            \
    extern "C" const char name##Begin[], name##End[]

EMBED(panelPage, TERN_PANEL_PAGE "/index.html");
EMBED(panelStyle, TERN_PANEL_PAGE "/style.css");
EMBED(panelScript, TERN_PANEL_PAGE "/app.js");
EMBED(panelRegular, TERN_PANEL_FONTS "/RobotoCondensed-Regular.ttf");
EMBED(panelMedium, TERN_PANEL_FONTS "/RobotoCondensed-Medium.ttf");

namespace Unit {

namespace {

std::string_view between(const char* begin, const char* end) {
    return {begin, static_cast<std::size_t>(end - begin)};
}

}  // namespace

std::span<const WebFile> pageFiles() {
    static const WebFile files[] = {
        {"/", "text/html; charset=utf-8", between(panelPageBegin, panelPageEnd)},
        {"/style.css", "text/css; charset=utf-8", between(panelStyleBegin, panelStyleEnd)},
        {"/app.js", "text/javascript; charset=utf-8", between(panelScriptBegin, panelScriptEnd)},
        {"/regular.ttf", "font/ttf", between(panelRegularBegin, panelRegularEnd)},
        {"/medium.ttf", "font/ttf", between(panelMediumBegin, panelMediumEnd)},
    };
    return files;
}

}  // namespace Unit
