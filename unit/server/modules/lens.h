#pragma once

#include <memory>
#include <optional>

#include "unit/server/module.h"
#include "unit/server/modules/filetree.h"
#include "unit/server/modules/optics.h"
#include "unit/server/modules/programmedlens.h"
#include "unit/server/modules/recentfiles.h"

namespace Unit {

/// The lens: its scales as tables, what stands at the reading line, and the depth of field.
class Lens final : public Module {
  public:
    Lens(Store& values, std::shared_ptr<FileTree> tree);

    void factory() override;
    void powerUp() override;
    void tick(std::int64_t nanoseconds) override;

    /// A lens file of the tree, by its name there. What is missing or no lens file is told to the product.
    /// Another lens is in its place, one that was measured by hand.
    void put(ProgrammedLens lens);
    /// Null for a lens that is known or none.
    const ProgrammedLens* programmed() const { return programmed_ ? &*programmed_ : nullptr; }
    /// Of a distance in metres on the focus ring, 0 to 1; nothing without a lens.
    std::optional<double> positionOf(double metres) const;
    /// The near end of the focus ring in metres; 0 without a lens.
    double closest() const { return model_ != nullptr ? model_->closest : programmed_ ? programmed_->closest() : 0; }
    void loadFile(const std::string& name);

  private:
    /// One table of MemLens.
    struct Table {
        Table(Store& values, const std::string& name);
        Flag active, inverse;
        Number first, last, lower, upper, size;
        Column flags, axis, value, interpolated, main, sub;

        void show(const Scale& scale);
    };

    void put(const LensModel* model);
    void showScales(const Scale& metres, const Scale& feet, const Scale& stops, const Scale& lengths);
    void describe(const std::string& label, const std::string& brand, const std::string& serial);
    bool hasLens() const { return model_ != nullptr || programmed_; }
    void showValues();
    void showReading(double distance, double stop, double length);
    void showDepthOfField(double metres, double millimetres, double stop);

    std::shared_ptr<FileTree> tree_;
    Table metres_, feet_, stops_, lengths_;
    Flag described_, textActive_, meterFitted_;
    Text text_, brand_, serial_;
    Real zoomMinimum_, zoomMaximum_, actFocus_, near_, far_, confusion_;
    Number actIris_, focalLength_, camLensType_;
    Real focusAt_, irisAt_, zoomAt_;
    Flag focusInverted_, irisInverted_, zoomInverted_, focusInvertedShown_, irisInvertedShown_, zoomInvertedShown_;
    Flag clear_, invalidFile_, notFound_;
    Text wantedFile_, activeFile_;
    RecentFiles recent_;
    const LensModel* model_ = nullptr;
    std::optional<ProgrammedLens> programmed_;
};

}  // namespace Unit
