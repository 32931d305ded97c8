#include "embedded-gui-engine/unixtimestringprovider.h"

#include <cstring>
#include <ctime>

#include "engine/src/valueformat.h"

namespace Engine {

void UnixTimeStringProvider::update(std::intptr_t, std::intptr_t) {
    if (provider_ == nullptr) {
        refuseMissingProvider();
        return;
    }
    const long long seconds = provider_->value();
    char buffer[TextSize];
    if (const char* fault = formatTime(seconds, buffer); fault != nullptr) {
        reportFormat(fault);
        TextWriter writer(buffer, sizeof buffer);
        ValueFormat("%lli", ValueKind::LongLong).print(writer, seconds);
    }
    finish(buffer);
}

const char* UnixTimeStringProvider::formatTime(long long seconds, char (&buffer)[TextSize]) const {
    if (format_ == nullptr) return "there is none";
    if (std::strlen(format_) >= TextSize) return "it is longer than 255 bytes";
    const auto time = static_cast<std::time_t>(seconds);
    const std::tm* local = time == seconds ? std::localtime(&time) : nullptr;
    if (local == nullptr) return "the value is outside the calendar";
// The format is data by design; strftime takes no further arguments and is bounded.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    if (std::strftime(buffer, sizeof buffer, format_, local) == 0) buffer[0] = '\0';
#pragma GCC diagnostic pop
    return nullptr;
}

}  // namespace Engine
