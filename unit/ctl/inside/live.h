#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/virtual/instance.h"
#include "unit/ctl/inside/treewatch.h"

namespace Unit {

/// Edits the model of a running unit: whenever a source is saved, the product is built and started again with the page
/// that it showed; what the unit knows stays with its server. While a source has errors they are shown in the terminal
/// and over the panel, and the product that runs goes on.
class Live {
  public:
    /// `report` gets lines for the terminal. Throws Problem when no unit runs or this program has no build around it.
    Live(Platform::Virtual::Place place, std::function<void(const std::string&)> report);

    /// Serves saves until SIGINT or SIGTERM, or for one save only.
    enum class Saves { All, One };
    void run(Saves saves);

  private:
    struct Output {
        bool good;
        std::string text;
    };

    void update();
    void showProblem(const std::string& title, const std::string& text);
    void restart();
    static Output runTool(const std::vector<std::string>& words);

    Platform::Virtual::Place place_;
    std::function<void(const std::string&)> report_;
    std::string build_;
    std::string model_;
    std::optional<TreeWatch> watch_;
};

}  // namespace Unit
