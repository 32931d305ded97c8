#include "embedded-gui-engine/scale.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>

#include "embedded-gui-engine/scalecontainer.h"
#include "scaletruncate.h"

namespace Engine {

/// One walk over the rows.
class Scale::Pass {
  public:
    Pass(const Scale& scale, Painter& painter)
        : templates_(scale.templates_),
          follows_(scale.subLabelFollows_ == SubLabel::FollowsMainLabel),
          container_(*scale.container_),
          painter_(painter) {
        const std::int64_t first = container_.row(0).axisPosition;
        if (const Label* label = templates_.mainLabel; label != nullptr) {
            labelsForced_ = label->colors().disabledForeground != 0;
            minGap_ = container_.axisOfFraction(container_.fractionOfPixels(label->height())) - first;
        }
        lastLabelled_ = first - minGap_;  // so that the first row may have a label
        for (const Widget* widget : ticks()) measure(widget);
        measure(templates_.mainLabel);
        measure(templates_.subLabel);
    }

    void drawRow(const ScaleRow& row) {
        y_ = container_.pixelOfAxis(row.axisPosition);
        row_ = &row;
        shown_ = y_ + reachDown_ > 0 && y_ + reachUp_ < container_.height();
        if (shown_) markUsable();
        const bool room = std::abs(row.axisPosition - lastLabelled_) >= minGap_;
        if ((row.isLabelled() || labelsForced_) && row.mainText[0] != '\0') {
            if (!room) return drawAt(templates_.minorTick);
            drawLabelled();
            lastLabelled_ = row.axisPosition;
        } else if (templates_.mediumTick != nullptr) {
            drawAt(templates_.mediumTick);
        } else {
            drawAt(room ? templates_.majorTick : templates_.minorTick);
        }
    }

  private:
    std::array<Widget*, 3> ticks() const { return {templates_.majorTick, templates_.mediumTick, templates_.minorTick}; }

    /// How far templates reach from the place of their row: rows that no template brings into the window need no
    /// painting.
    void measure(const Widget* widget) {
        if (widget == nullptr) return;
        reachUp_ = std::min<std::int64_t>(reachUp_, widget->y());
        reachDown_ = std::max<std::int64_t>(reachDown_, widget->y() + widget->height());
    }

    void markUsable() {
        for (Widget* widget : ticks())
            if (widget != nullptr) widget->setDisabled(!row_->isInRange());
        for (Label* label : {templates_.mainLabel, templates_.subLabel})
            if (label != nullptr) label->setDisabled(!row_->isLabelled());
    }

    void drawLabelled() {
        drawAt(templates_.majorTick);
        if (!shown_) return;
        if (Label* main = templates_.mainLabel; main != nullptr) {
            main->setText(row_->mainText.data());
            drawAt(main);
        }
        if (templates_.subLabel != nullptr && row_->subText[0] != '\0') drawSubLabel(*templates_.subLabel);
    }

    void drawSubLabel(Label& sub) {
        sub.setText(row_->subText.data());
        const std::int16_t home = sub.x();
        if (follows_ && templates_.mainLabel != nullptr)
            sub.setX(toCoordinate(home + templates_.mainLabel->textEndPosition().x));
        drawAt(&sub);
        sub.setX(home);
    }

    void drawAt(Widget* widget) {
        if (!shown_ || widget == nullptr || isLeftOut(*widget)) return;
        paintMoved(painter_, *widget, static_cast<std::int32_t>(y_));
    }

    static bool isLeftOut(const Widget& widget) {
        const Widget::Colors colors = widget.colors();
        return colors.disabledForeground == 0 && colors.disabledBackground == 0 && widget.isDisabledInTree();
    }

    const Templates& templates_;
    bool follows_;
    const ScaleContainer& container_;
    Painter& painter_;
    bool labelsForced_ = false;
    // 64 bits: the table's positions may lie anywhere, so that their distances do not fit into 32.
    std::int64_t minGap_ = 0;
    std::int64_t lastLabelled_ = 0;
    std::int64_t reachUp_ = std::numeric_limits<std::int16_t>::max();
    std::int64_t reachDown_ = std::numeric_limits<std::int16_t>::min();
    const ScaleRow* row_ = nullptr;
    std::int64_t y_ = 0;
    bool shown_ = false;
};

void Scale::draw(Painter& painter, Rect /*rect*/) {
    Pass pass(*this, painter);
    for (unsigned int index = 0; index < container_->rowCount(); ++index) pass.drawRow(container_->row(index));
}

}  // namespace Engine
