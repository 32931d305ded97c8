#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "embedded-gui-engine/observer.h"
#include "embedded-gui-engine/textid.h"

namespace Engine {

class Label;
class RegexFilter;
class StringProviderBase;

/// Owns the text of one label: a translatable template with the holes %0 to %9, each filled by a part. "%%" is a
/// percent sign; a '%' before anything else stands for itself. A hole without a part shows "E@" and the byte offset of
/// its digit in the template. The result has at most 255 bytes: a part that does not fit whole is left out.
class ConcatModifier : public Observer {
  public:
    /// Hole i is parts[i]; the array is not copied. A null label receives nothing. `regex` is for the owner's use.
    constexpr ConcatModifier(std::span<StringProviderBase* const> parts, TextId templateId, Label* label,
                             RegexFilter* regex = nullptr)
        : parts_(parts.data()),
          partCount_(static_cast<std::uint16_t>(parts.size())),
          template_(templateId),
          label_(label),
          regex_(regex) {}

    void update(std::intptr_t arg1 = 0, std::intptr_t arg2 = 0) override;
    /// Takes the template and updates.
    virtual void setTemplate(TextId templateId);

    /// The link phase's step: becomes the owner of its parts and shows the first text.
    void link();
    /// Its first half, for a model whose first text comes with the variables' first notification.
    void adoptParts();

    RegexFilter* regex() const { return regex_; }

  private:
    StringProviderBase* const* parts_;
    std::uint16_t partCount_;
    TextId template_;
    Label* label_;
    RegexFilter* regex_;
};

/// Fills the holes of a template as ConcatModifier does. `buffer` has `length` bytes, at least 1.
void fillTemplate(char* buffer, std::size_t length, const char* templateText,
                  std::span<StringProviderBase* const> parts);

}  // namespace Engine
