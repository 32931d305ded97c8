#pragma once

#include <CLI/CLI.hpp>
#include <functional>

#include "platform/virtual/instance.h"

namespace Unit {

/// Which unit, and how to print, as the command line says by the time a verb runs.
struct Chosen {
    std::function<Platform::Virtual::Place()> place;
    std::function<bool()> json;
};

/// The verbs that look inside: record, replay and their like.
void addInsideVerbs(CLI::App& app, const Chosen& chosen);

}  // namespace Unit
