#include "unit/ctl/inside/atlassheet.h"

#include <map>

namespace Unit {

namespace {

std::string escaped(const std::string& text) {
    std::string out;
    for (const char c : text) {
        switch (c) {
            case '&': out += "&amp;"; break;
            case '<': out += "&lt;"; break;
            case '>': out += "&gt;"; break;
            case '"': out += "&quot;"; break;
            default: out += c;
        }
    }
    return out;
}

const char* word(Change change) {
    switch (change) {
        case Change::New: return "new";
        case Change::Gone: return "gone";
        case Change::Other: return "changed";
        default: return "same";
    }
}

constexpr const char* head = R"(<!DOCTYPE html>
<html lang="en"><head><meta charset="utf-8"><title>Atlas</title><style>
body { font: 13px sans-serif; background: #202020; color: #ddd; margin: 16px; }
h2 { position: sticky; top: 0; background: #202020; margin: 0; padding: 8px 0; }
section { margin-bottom: 24px; } .row { display: flex; flex-wrap: wrap; gap: 8px; }
figure { margin: 0; width: 122px; } figcaption { font-size: 11px; color: #aaa; }
img { width: 120px; height: 200px; border: 1px solid #444; image-rendering: auto; cursor: zoom-in; }
.changed > img:first-child { border-color: #ff5050; } .new > img { border-color: #50c0ff; }
.changed { width: 370px; } .gone, .problem { color: #ff8080; } dialog { background: #000; border: 1px solid #666; }
dialog img { width: 480px; height: 800px; image-rendering: pixelated; cursor: zoom-out; }
body.only figure.same, body.only section.same { display: none; }
</style></head><body>
)";

constexpr const char* foot = R"(<dialog id="large"><img alt=""></dialog><script>
const large = document.getElementById('large');
document.addEventListener('click', event => {
  if (large.open) return large.close();
  if (event.target.tagName !== 'IMG') return;
  large.firstChild.src = event.target.src;
  large.showModal();
});
document.getElementById('only').addEventListener('change', event =>
  document.body.classList.toggle('only', event.target.checked));
</script></body></html>
)";

std::string image(const std::string& file, const std::string& title) {
    return "<img loading=\"lazy\" src=\"" + escaped(file) + "\" alt=\"" + escaped(title) + "\" title=\"" +
           escaped(title) + "\">";
}

std::string figure(const SheetEntry& entry) {
    const AtlasPicture& picture = entry.picture;
    const std::string name = picture.language + ", " + picture.style + ", " + picture.hand;
    std::string text = "<figure class=\"" + std::string(word(entry.change)) + "\">";
    if (!picture.problem.empty())
        text += "<p class=\"problem\">" + escaped(picture.problem) + "</p>";
    else if (entry.change != Change::Gone)
        text += image(picture.stem() + ".png", picture.stem());
    if (!entry.before.empty()) text += image(entry.before, "before");
    if (!entry.difference.empty()) text += image(entry.difference, "difference");
    return text + "<figcaption>" + escaped(name) +
           (entry.change == Change::None ? "" : std::string(" - ") + word(entry.change)) + "</figcaption></figure>\n";
}

}  // namespace

std::string atlasSheet(const std::vector<SheetEntry>& entries, const std::string& against) {
    std::map<std::string, std::map<std::string, std::vector<const SheetEntry*>>> sections;
    std::size_t changed = 0;
    for (const auto& entry : entries) {
        sections[entry.picture.scene][entry.picture.page].push_back(&entry);
        if (entry.change != Change::None) ++changed;
    }
    std::string text = head;
    text += "<h1>" + std::to_string(entries.size()) + " pictures</h1><p>" +
            (against.empty() ? std::string("Not compared.")
                             : std::to_string(changed) + " differ from " + escaped(against) + ".") +
            " <label><input type=\"checkbox\" id=\"only\"> only what differs</label></p>\n";
    for (const auto& [scene, pages] : sections)
        for (const auto& [page, row] : pages) {
            bool same = true;
            for (const SheetEntry* entry : row) same = same && entry->change == Change::None;
            text += "<section class=\"" + std::string(same ? "same" : "") + "\"><h2>" + escaped(page) + " <small>" +
                    escaped(scene) + "</small></h2><div class=\"row\">\n";
            for (const SheetEntry* entry : row) text += figure(*entry);
            text += "</div></section>\n";
        }
    return text + foot;
}

}  // namespace Unit
