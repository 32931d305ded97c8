#pragma once

#include <cstdint>

#include "embedded-gui-engine/lettercase.h"
#include "embedded-gui-engine/observer.h"
#include "embedded-gui-engine/textid.h"
#include "embedded-gui-engine/widget.h"

namespace Engine {

/// What stands for the part of a line that does not fit.
enum class Ellipsis : std::uint32_t {
    None = 0,
    End = 1,   ///< dots in place of the end
    Start = 2  ///< dots in place of the start
};

/// A text. It comes from the language tables by its key or is set directly; as an observer of the language the label
/// reads its key's text anew.
///
/// The text of a key is shown where it stands in the tables; only texts that are set directly or change their letters
/// are copied, into the TextPool.
class Label : public Widget, public Observer {
  public:
    enum class AutoHeight : bool { Off = false, On = true };

    /// `text` is a literal that outlives the label, or null; it is shown until a key or a text is set.
    constexpr explicit Label(const WidgetParams& params, TextId textId = {}, const char* text = nullptr,
                             Ellipsis ellipsis = Ellipsis::None, CaseMode caseMode = CaseMode::AsWritten,
                             AutoHeight autoHeight = AutoHeight::Off)
        : Widget(params),
          textId_(textId),
          text_(text != nullptr ? text : ""),
          ellipsis_(ellipsis),
          caseMode_(caseMode),
          autoHeight_(autoHeight == AutoHeight::On),
          baseHeight_(params.height) {}

    /// Copies `text`; null empties the label. Leaves the key alone: a key that is set comes back with the language.
    void setText(const char* text);
    /// Shows the text of the key; key 0 empties the label.
    void setTextId(TextId id);
    TextId textId() const { return textId_; }
    /// Never null. Valid until the next text is set.
    const char* text() const { return text_; }

    /// Whether the height follows the number of lines: `height` as it was set is that of one line.
    void setAutoHeight(bool autoHeight);
    void setEllipsis(Ellipsis ellipsis) { repaintIfChanged(ellipsis_, ellipsis); }
    Ellipsis ellipsis() const { return ellipsis_; }
    CaseMode caseMode() const { return caseMode_; }
    bool hasAutoHeight() const { return autoHeight_; }
    /// Behind the last character as it was last drawn, in the coordinates of the label's parent.
    Point textEndPosition() const;

    void setHeight(std::int16_t height) override;
    /// Also brings the letters of the constructor's text into their case.
    void setParent(Object* parent) override;
    const char* objectName() const override { return nameOr("Label"); }
    void draw(Painter& painter, Rect rect) override;
    /// The language changed: shows the key's text anew; directly set texts stay.
    virtual void reloadText();

    void update(std::intptr_t arg1 = 0, std::intptr_t arg2 = 0) override;

  private:
    enum class Source : std::uint8_t { Constant, Transient };

    void showText(const char* text, Source source);
    void store(const char* text);
    void adaptHeight();

    TextId textId_;
    const char* text_;  ///< a constant text, or `buffer_`
    Ellipsis ellipsis_;
    CaseMode caseMode_;
    bool autoHeight_;
    std::int16_t baseHeight_;
    std::int16_t textEndX_ = 0;
    std::uint32_t bufferSize_ = 0;
    char* buffer_ = nullptr;  ///< of the TextPool, kept for the next text
};

}  // namespace Engine
