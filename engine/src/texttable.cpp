#include "embedded-gui-engine/texttable.h"

#include "embedded-gui-engine/hooks.h"

namespace Engine {

namespace {

struct TextSource {
    std::span<const LanguageTexts> languages;
    const ValueProvider<int>* language = nullptr;
};

TextSource source;

const char* textInCurrentLanguage(TextId id) {
    if (source.language == nullptr || source.languages.empty()) return "";
    const auto language = static_cast<std::uint32_t>(source.language->value());
    const LanguageTexts texts = source.languages[language < source.languages.size() ? language : 0];
    return id.key < texts.size() ? texts[id.key] : "";
}

}  // namespace

void setTextTable(std::span<const LanguageTexts> languages, const ValueProvider<int>* language) {
    source = {languages, language};
    hooks().textForId = &textInCurrentLanguage;
}

}  // namespace Engine
