#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "model/catalogue/constants.h"

namespace Unit {

/// Where one value lies, resolved from its name once.
struct Cell {
    Catalogue::Kind kind;
    std::int16_t area;
    std::int16_t enumType;
    std::uint16_t id;  ///< of the notice that announces it
    std::uint32_t offset;
    std::uint32_t size;  ///< bytes
    Catalogue::Limit minimum;
    Catalogue::Limit maximum;
};

/// The values in the memory areas, by catalogue name: "VarKnob", "VarFocusMotor.State", "VarCamSpeedList[3].CamSpeed".
/// Every write compares first; a change enters the value's notice into `notices`, in the order of the first changes.
class Store {
  public:
    static constexpr std::size_t idLimit = 2048;

    /// `bases`: the first usable byte of each area, in the catalogue's order; they must outlive this.
    explicit Store(std::span<std::byte* const> bases);

    /// Nothing, and the reason in `problem`, when the catalogue has no such place. The only column of a table need
    /// not be named.
    static std::optional<Cell> find(std::string_view name, std::string& problem);
    static std::optional<Cell> find(std::string_view name);

    std::int32_t integer(const Cell& cell) const;  ///< of a flag (0, 1), an int or an enum
    float real(const Cell& cell) const;
    std::string text(const Cell& cell) const;  ///< up to the end of the field where no zero byte ends it
    std::span<std::byte> bytes(const Cell& cell) const;

    void setInteger(const Cell& cell, std::int32_t value);
    void setReal(const Cell& cell, float value);
    /// Cut to the field between two characters, with a zero byte behind it.
    void setText(const Cell& cell, std::string_view value);
    void setBytes(const Cell& cell, std::span<const std::byte> value);

    /// The value as a person writes it; an enum as its number, a mask as hexadecimal bytes.
    std::string show(const Cell& cell) const;
    /// What `text` says for a value of that kind, as the bytes to be stored, checked against the value's limits: flags
    /// 0/1/false/true, enums by number or by name, masks "all", "none" or hexadecimal bytes. Nothing and the reason
    /// in `problem` when it is refused.
    static std::optional<std::vector<std::byte>> parse(const Cell& cell, std::string_view text, std::string& problem);

    /// A live count announces its table as well: readers of the table must learn that it has shrunk.
    void note(std::uint16_t id);
    const std::vector<std::uint16_t>& notices() const { return notices_; }
    void clearNotices();

  private:
    std::byte* at(const Cell& cell) const { return bases_[static_cast<std::size_t>(cell.area)] + cell.offset; }

    std::vector<std::byte*> bases_;
    std::vector<std::uint16_t> notices_;
    std::bitset<idLimit> noted_;
    std::vector<std::pair<std::uint16_t, std::uint16_t>> countedTables_;  ///< id of the count, id of the table
};

/// Edits between two words; anything above 3 is as good as 3.
std::size_t editDistance(std::string_view a, std::string_view b);
/// A name that is within a short distance of `name`, " Did you mean ...?"; empty when there is none.
std::string didYouMean(std::string_view name);

}  // namespace Unit
