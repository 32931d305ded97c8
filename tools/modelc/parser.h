#pragma once

#include "tools/modelc/ast.h"
#include "tools/modelc/diagnostics.h"
#include "tools/modelc/lexer.h"

namespace Modelc {

/// Reads one source. What cannot be read is reported, skipped to the next member or declaration, and left out, so
/// that all errors of a file are found in one run. Nesting deeper than 200 is refused.
SourceTree parse(const SourceFile& file, Diagnostics& diagnostics);

}  // namespace Modelc
