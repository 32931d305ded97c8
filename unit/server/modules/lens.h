#pragma once

#include <memory>

#include "unit/server/module.h"
#include "unit/server/modules/filetree.h"
#include "unit/server/modules/optics.h"

namespace Unit {

/// The lens: its scales as tables, what stands at the reading line, and the depth of field.
class Lens final : public Module {
  public:
    Lens(Store& values, std::shared_ptr<FileTree> tree);

    void factory() override;
    void powerUp() override;
    void tick(std::int64_t nanoseconds) override;

    /// A lens file of the tree, by its name there. What is missing or no lens file is told to the product.
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
    void showValues();
    void showDepthOfField(double metres, double millimetres, double stop);

    void remember(const std::string& name);

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
    Number recentCount_;
    Column recent_;
    const LensModel* model_ = nullptr;
};

}  // namespace Unit
