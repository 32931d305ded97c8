#include "embedded-gui-engine/concatmodifier.h"

#include <algorithm>
#include <cstring>

#include "embedded-gui-engine/label.h"
#include "embedded-gui-engine/stringprovider.h"
#include "embedded-gui-engine/textforid.h"
#include "engine/src/valueformat.h"

namespace Engine {
namespace {

void fillHole(TextWriter& writer, std::size_t part, std::size_t digitOffset,
              std::span<StringProviderBase* const> parts) {
    if (part < parts.size() && parts[part] != nullptr) {
        const std::string_view text = parts[part]->view();
        if (text.size() <= writer.room()) writer.append(text);
        return;
    }
    char error[16];
    TextWriter message(error, sizeof error);
    ValueFormat("E@%u", ValueKind::Integer).print(message, static_cast<int>(digitOffset));
    if (message.view().size() <= writer.room()) writer.append(message.view());
}

}  // namespace

void fillTemplate(char* buffer, std::size_t length, const char* templateText,
                  std::span<StringProviderBase* const> parts) {
    TextWriter writer(buffer, length);
    for (const char* at = templateText; *at != '\0' && writer.room() > 0;) {
        const char next = *at == '%' ? at[1] : '\0';
        if (next >= '0' && next <= '9') {
            fillHole(writer, static_cast<std::size_t>(next - '0'), static_cast<std::size_t>(at + 1 - templateText),
                     parts);
            at += 2;
        } else {
            writer.put(*at);
            at += next == '%' ? 2 : 1;
        }
    }
}

void ConcatModifier::update(std::intptr_t, std::intptr_t) {
    if (label_ == nullptr) return;
    char text[StringProviderBase::TextSize];
    fillTemplate(text, sizeof text, textForId(template_), {parts_, partCount_});
    label_->setText(text);
}

void ConcatModifier::setTemplate(TextId templateId) {
    template_ = templateId;
    update();
}

void ConcatModifier::adoptParts() {
    for (StringProviderBase* part : std::span(parts_, partCount_)) {
        if (part != nullptr) part->setOwner(this);
    }
}

void ConcatModifier::link() {
    adoptParts();
    update();
}

}  // namespace Engine
