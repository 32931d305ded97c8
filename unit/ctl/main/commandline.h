#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "unit/ctl/client.h"
#include "unit/ctl/launch.h"

namespace Unit {

/// What the command line says.
struct Arguments {
    std::string instance;
    bool json = false;
    bool lockstep = false;
    bool noServer = false;
    bool noRecording = false;
    bool noPanel = false;
    bool panel = false;
    std::uint16_t port = 0;
    bool problem = false;
    bool remove = false;
    std::string scene, page, name, value, file, glob, word, mask;
    unsigned frames = 1;
    unsigned milliseconds = 100;
    unsigned long lines = 20;
    std::string id, offset, length;
    std::vector<std::string> words;
    std::vector<int> numbers = std::vector<int>(4);
    double x = 0, y = 0;
};

/// unitctl's verbs. A verb is a line in the function of its topic: its name, its help and what it does, with the words
/// that it needs around.
class CommandLine {
  public:
    explicit CommandLine(Arguments& given);

    CLI::App app{"Starts, drives and looks into a virtual unit. Table cells are NAME[row].Field."};

  private:
    CLI::App* add(const char* name, const char* help, std::function<void()> action);
    /// A verb that speaks to a running unit.
    CLI::App* verb(const char* name, const char* help, std::function<void(Client&)> action);
    /// The words that must follow `verb`: pairs of a name and what takes the word.
    template <typename Into, typename... More>
    static CLI::App* needs(CLI::App* verb, const char* name, Into& into, More&&... more) {
        verb->add_option(name, into)->required();
        if constexpr (sizeof...(more) > 0) needs(verb, more...);
        return verb;
    }

    void addStartVerbs();
    void addUnitVerbs();
    void addValueVerbs();
    void addInputVerbs();
    void addHardwareVerbs();
    void addLookVerbs();
    void addNoticeVerb();
    void addCompletion();

    UnitOptions unitOptions() const;
    void runUnit();
    void shootFirst();
    void printCompletions() const;

    Arguments& given_;
};

/// The unit of that name; without one that of the environment.
Platform::Virtual::Place placeOf(const std::string& name);

/// Every verb's name, for the completion and for who mistypes one.
std::vector<std::string> verbNames(const CLI::App& app);

}  // namespace Unit
