#include "embedded-gui-engine/label.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "embedded-gui-engine/guimanager.h"
#include "embedded-gui-engine/textforid.h"
#include "embedded-gui-engine/textlayout.h"
#include "embedded-gui-engine/textpool.h"

namespace Engine {

void Label::setText(const char* text) {
    showText(text != nullptr ? text : "", text != nullptr ? Source::Transient : Source::Constant);
}

void Label::setTextId(TextId id) {
    textId_ = id;
    showText(textForId(id), Source::Constant);
}

void Label::reloadText() {
    if (textId_ != TextId{}) setTextId(textId_);
}

void Label::update(std::intptr_t /*arg1*/, std::intptr_t /*arg2*/) {
    reloadText();
}

void Label::showText(const char* text, Source source) {
    if (!equalsInCase(text_, text, caseMode_)) {
        if (source == Source::Constant && caseMode_ == CaseMode::AsWritten) {
            text_ = text;
        } else {
            store(text);
        }
        invalidateAll(false);
    }
    // An equal text may have come before there was a painter to measure it with.
    if (autoHeight_) adaptHeight();
}

void Label::store(const char* text) {
    const auto bytes = static_cast<std::uint32_t>(std::strlen(text)) + 1;
    if (bytes <= bufferSize_) {
        copyInCase(buffer_, text, caseMode_);
    } else {
        char* const block = TextPool::take(bytes);
        copyInCase(block, text, caseMode_);
        if (buffer_ != nullptr) TextPool::giveBack(buffer_, bufferSize_);
        buffer_ = block;
        bufferSize_ = TextPool::blockSize(bytes);
    }
    text_ = buffer_;
}

void Label::setAutoHeight(bool autoHeight) {
    if (!changed(autoHeight_, autoHeight)) return;
    if (autoHeight_) {
        adaptHeight();
        return;
    }
    repaintIfMoved(height_, baseHeight_);
    if (Widget* parent = parentWidget(); parent != nullptr) parent->childGeometryChanged();
}

void Label::setHeight(std::int16_t height) {
    // With automatic height the height in force differs from the one that was set, which is the one to compare.
    if (changed(baseHeight_, height) || !autoHeight_) Widget::setHeight(height);
    if (autoHeight_) adaptHeight();
}

void Label::setParent(Object* parent) {
    Widget::setParent(parent);
    if (text_ != buffer_ && caseMode_ != CaseMode::AsWritten) showText(text_, Source::Constant);
}

/// The caller has marked the label; the height is stored without a mark of its own.
void Label::adaptHeight() {
    Painter* const painter = GuiManager::instance().painter();
    if (painter == nullptr) return;
    applyStyle(*painter);
    int height = baseHeight_;
    if (Font* const font = painter->font(); font != nullptr) {
        TextLayout layout(FontView(*font), text_, {painter->wrap(), width_, painter->tabularDigits(), -1, false});
        TextLine line;
        layout.next(line);
        while (layout.next(line)) height += font->lineHeight();
    }
    height_ = static_cast<std::int16_t>(std::min<int>(height, std::numeric_limits<std::int16_t>::max()));
    if (Widget* parent = parentWidget(); parent != nullptr) parent->childGeometryChanged();
}

Point Label::textEndPosition() const {
    const Point end{textEndX_, 0};
    return parent_ != nullptr && parent_->isWidget() ? parentWidget()->toLocal(end) : end;
}

void Label::draw(Painter& painter, Rect rect) {
    painter.setEllipsis(static_cast<std::uint32_t>(ellipsis_));
    contentRect(painter, rect);
    if (haloRadius_ != 0) {
        painter.setBackground(haloColor_);
        painter.setHaloRadius(haloRadius_);
        painter.drawText(text_, rect, scrollX_, scrollY_, -1);
        painter.setHaloRadius(0);
    }
    textEndX_ = static_cast<std::int16_t>(painter.drawText(text_, rect, scrollX_, scrollY_, -1));
}

}  // namespace Engine
