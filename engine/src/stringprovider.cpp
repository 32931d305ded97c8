#include "embedded-gui-engine/stringprovider.h"

#include <type_traits>

#include "embedded-gui-engine/concatmodifier.h"
#include "embedded-gui-engine/hooks.h"
#include "embedded-gui-engine/regexfilter.h"
#include "engine/src/valueformat.h"

namespace Engine {
namespace {

template <typename T>
struct Printed {
    using Type = T;  ///< what T is passed as
    static constexpr ValueKind Kind = ValueKind::Integer;
    static constexpr const char* Plain = "%i";
};
template <>
struct Printed<long long> {
    using Type = long long;
    static constexpr ValueKind Kind = ValueKind::LongLong;
    static constexpr const char* Plain = "%lli";
};
template <>
struct Printed<double> {
    using Type = double;
    static constexpr ValueKind Kind = ValueKind::Floating;
    static constexpr const char* Plain = "%g";
};
template <>
struct Printed<float> : Printed<double> {};
template <>
struct Printed<const char*> {
    using Type = const char*;
    static constexpr ValueKind Kind = ValueKind::String;
    static constexpr const char* Plain = "%s";
};

}  // namespace

void StringProviderBase::setFormat(const char* format) {
    if (format != format_) formatReported_ = false;
    format_ = format;
    update();
}

void StringProviderBase::link() {
    if (regex_ != nullptr) regex_->link();
    if (hasProvider()) update();
}

void StringProviderBase::refuseMissingProvider() {
    engineLog(0, __FILE_NAME__, __LINE__, "FormatModifier: No value provider.");
    text_.assign("");
}

void StringProviderBase::finish(const char* result) {
    if (regex_ == nullptr || !regex_->isCompiled() || *result == '\0') {
        finishUnfiltered(result);
        return;
    }
    char filtered[RegexFilter::TextSize];
    regex_->apply(result, filtered);
    finishUnfiltered(filtered);
}

void StringProviderBase::finishUnfiltered(const char* result) {
    text_.assign(result);
    if (owner_ != nullptr) owner_->update();
}

void StringProviderBase::reportFormat(const char* fault) {
    if (formatReported_) return;
    formatReported_ = true;
    engineLog(1, __FILE_NAME__, __LINE__, "The format \"%.64s\" is refused: %s. The value is shown plainly.",
              format_ != nullptr ? format_ : "", fault);
}

template <typename T>
void StringProvider<T>::update(std::intptr_t, std::intptr_t) {
    if (provider_ == nullptr) {
        refuseMissingProvider();
        return;
    }
    using Passed = typename Printed<T>::Type;
    const Passed value = static_cast<Passed>(provider_->value());
    char buffer[TextSize];
    TextWriter writer(buffer, sizeof buffer);
    // Taken apart at each update, not once: a format in a variable's buffer may change without a call.
    const ValueFormat format(format_, Printed<T>::Kind);
    if (format.fault() == nullptr) {
        format.print(writer, value);
    } else {
        reportFormat(format.fault());
        ValueFormat(Printed<T>::Plain, Printed<T>::Kind).print(writer, value);
    }
    finish(buffer);
}

template class StringProvider<const char*>;
template class StringProvider<int>;
template class StringProvider<float>;
template class StringProvider<double>;
template class StringProvider<long long>;

}  // namespace Engine
