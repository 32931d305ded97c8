// The lowered form: plain engine objects in arrays, one array a class and unit, and the tables that they share.
// Printing it is emitting it.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tools/modelc/names.h"
#include "tools/modelc/source.h"

namespace Modelc {

/// One C++ array of constant-initialised objects or of table entries.
struct Pool {
    std::string type;                   ///< C++ type of an element, with its const where the array is constant data
    std::string name;                   ///< name of the array inside the unit's namespace
    std::vector<std::string> elements;  ///< initialisers
    std::map<std::string, std::size_t> interned;
};

/// The objects of one page or container, in a namespace of its own.
class LoweredUnit {
  public:
    /// `file` is the source that declares the unit, null for what no source declares.
    explicit LoweredUnit(std::string name, const SourceFile* file = nullptr) : name_(std::move(name)), file_(file) {}

    const std::string& name() const { return name_; }
    const SourceFile* file() const { return file_; }

    /// Adds an object and answers its address.
    std::string add(std::string_view type, std::string_view array, std::string initialiser);
    /// The address of an object with this initialiser; one is shared by all who ask. For classes without state only.
    std::string intern(std::string_view type, std::string_view array, std::string initialiser);
    /// A place for an object that is described later.
    std::string reserve(std::string_view type, std::string_view array);
    /// The address must be one of `reserve`.
    void describe(const std::string& address, std::string initialiser);
    /// A std::span over the entries, which stand in a constant table; equal runs share their place. "{}" for none.
    std::string table(std::string_view type, std::string_view array, const std::vector<std::string>& entries);
    /// Zeroed storage of `size` elements as a std::span.
    std::string storage(std::string_view type, std::string_view array, std::size_t size);

    const std::vector<std::unique_ptr<Pool>>& pools() const { return pools_; }
    struct Storage {
        std::string type;
        std::string name;
        std::size_t size = 0;
    };
    const std::vector<Storage>& storages() const { return storages_; }

    // What the link phase does with the unit, as addresses.
    std::vector<std::string> parents;  ///< objects with children, top down
    std::vector<std::string> borders;  ///< "widget, border" pairs whose owner is set
    std::vector<std::string> regexFilters;
    std::vector<std::string> concatModifiers;
    std::vector<std::string> stringProviders;
    std::size_t widgetCount = 0;

  private:
    Pool& pool(std::string_view type, std::string_view array);
    std::string addressOf(const Pool& pool, std::size_t index) const;

    std::string name_;
    const SourceFile* file_;
    std::vector<std::unique_ptr<Pool>> pools_;
    std::map<std::string, Pool*, std::less<>> byName_;
    std::vector<Storage> storages_;
};

/// One observer of a variable and what it stands for, for `why` and `who`.
struct Observation {
    std::string address;  ///< C++ address of the observer
    std::string what;     ///< "Home_LDD.softUL.foreground"
};

struct Lowered {
    std::vector<std::unique_ptr<LoweredUnit>> units;  ///< the first one holds the shared rules
    /// By variable, in the order of the units and of the declarations in them.
    std::map<std::string, std::vector<Observation>> observers;
    std::map<std::string, const VariableInfo*> variables;  ///< all that are named anywhere
    std::vector<std::string> overlays;                     ///< addresses of pages
    std::vector<std::string> containers;                   ///< addresses of containers
    std::string start;                                     ///< address of the start page; empty without one
    struct Export {
        std::string name;
        std::string type;
        std::vector<std::string> addresses;
        bool isList = false;
    };
    std::vector<Export> exports;
};

}  // namespace Modelc
