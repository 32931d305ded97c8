#pragma once

#include <string_view>

namespace Unit {

/// Whether a request's Host names this machine's loopback, so that a foreign name that was made to point at it is
/// refused. Any port: it may have been forwarded.
bool isOwnHost(std::string_view host);

/// Whether a page may open the panel's socket: only one that came from the very host and port that it asks. A missing
/// origin is a refusal; every browser tells it.
bool isOwnOrigin(std::string_view origin, std::string_view host);

}  // namespace Unit
