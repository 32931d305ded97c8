#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "embedded-gui-engine/boundedtext.h"
#include "embedded-gui-engine/observer.h"
#include "embedded-gui-engine/valueprovider.h"

namespace Engine {

class ConcatModifier;
class RegexFilter;

/// Turns a value into a short text for a hole of a template. Results are cut at 255 bytes, and further at the
/// capacity of the storage that the model gives. Formats may come from outside at run time; they never reach printf.
class StringProviderBase : public Observer {
  public:
    /// Bytes of a result, the terminator included.
    static constexpr std::size_t TextSize = 256;

    /// Takes the format and updates. The string is not copied and must stay; its contents may change.
    virtual void setFormat(const char* format);

    /// The link phase's step, to be taken once the concat modifiers are linked: compiles the filter and takes the
    /// first value, if there is a provider.
    void link();

    void setOwner(ConcatModifier* owner) { owner_ = owner; }
    const char* text() const { return text_.text(); }
    std::string_view view() const { return text_.view(); }

  protected:
    constexpr StringProviderBase(const char* format, RegexFilter* regex, std::span<char> storage)
        : format_(format), regex_(regex), text_(storage) {}
    ~StringProviderBase() = default;

    virtual bool hasProvider() const = 0;

    /// Without a value the text is empty, and the owner is not told.
    void refuseMissingProvider();
    /// Filters and stores a result, then tells the owner, even of an unchanged one.
    void finish(const char* result);
    /// Stores a result as it is, then tells the owner.
    void finishUnfiltered(const char* result);
    /// Logs what is wrong with the format, once for each format.
    void reportFormat(const char* fault);

    const char* format_;
    RegexFilter* regex_;  ///< null: no filter
    BoundedText text_;
    ConcatModifier* owner_ = nullptr;  ///< told after each result; may be null
    bool formatReported_ = false;
};

/// T is const char*, int, float, double or long long. The format is printf's with one conversion that fits T, or with
/// none at all. Another one is refused with one log line, and the value is shown plainly.
template <typename T>
class StringProvider : public StringProviderBase {
  public:
    /// `provider` may be null until setProvider; an update without one is a logged refusal. `regex` may be null.
    constexpr StringProvider(const char* format, const ValueProvider<T>* provider, RegexFilter* regex,
                             std::span<char> storage)
        : StringProviderBase(format, regex, storage), provider_(provider) {}

    void update(std::intptr_t arg1 = 0, std::intptr_t arg2 = 0) override;

    /// Takes the provider; the caller updates.
    void setProvider(const ValueProvider<T>* provider) { provider_ = provider; }

  protected:
    bool hasProvider() const override { return provider_ != nullptr; }

    const ValueProvider<T>* provider_;
};

extern template class StringProvider<const char*>;
extern template class StringProvider<int>;
extern template class StringProvider<float>;
extern template class StringProvider<double>;
extern template class StringProvider<long long>;

}  // namespace Engine
