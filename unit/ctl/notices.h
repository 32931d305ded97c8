#pragma once

#include <string>
#include <vector>

namespace Unit {

/// What the panel shows over the display of a unit: one file a notice in the instance folder, "notices/KEY". Any
/// process may post, and a notice stays until it is removed or the unit is started anew.
class Notices {
  public:
    enum class Tone { Info, Problem };

    struct Notice {
        std::string key;
        Tone tone = Tone::Info;
        std::string title;  ///< one line
        std::string text;   ///< lines; may be empty

        bool operator==(const Notice&) const = default;
    };

    static constexpr std::size_t longestKey = 64;
    static constexpr std::size_t longestText = 16 << 10;  ///< bytes; what goes beyond is cut

    /// `folder` of the instance.
    explicit Notices(const std::string& folder) : folder_(folder + "/notices") {}

    /// Puts the notice in the place of the one with that key. A key is made of letters, digits, '-' and '_'. Throws
    /// Problem when it is not, or when the file cannot be written.
    void post(const Notice& notice) const;
    /// False when there is none.
    bool remove(const std::string& key) const;
    void clear() const;
    /// By key. What is no notice is left out.
    std::vector<Notice> all() const;

  private:
    std::string folder_;
};

}  // namespace Unit
