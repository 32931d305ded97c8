// The drawing half of the manager: frames, slides, outlines.
#include "embedded-gui-engine/guimanager.h"
#include "embedded-gui-engine/hooks.h"
#include "embedded-gui-engine/image.h"
#include "embedded-gui-engine/page.h"
#include "embedded-gui-engine/painter.h"
#include "embedded-gui-engine/preparecompositing.h"
#include "embedded-gui-engine/trace.h"
#include "embedded-gui-engine/valueprovider.h"
#include "embedded-gui-engine/widget.h"

namespace Engine {
namespace {

Rect wholeOf(const Painter& painter) {
    return {0, 0, static_cast<std::int16_t>(painter.logicalWidth()),
            static_cast<std::int16_t>(painter.logicalHeight())};
}

void unite(Rect& area, Rect dirty, Rect whole) {
    if (dirty.width == 0 || dirty.height == 0) return;
    const bool all = dirty.width == Page::WholeScreen || dirty.height == Page::WholeScreen;
    area = uniteRect(area, all ? whole : dirty);
}

void blit(Painter& screen, const Image& image, Point at) {
    screen.copyImage(image, 0, 0,
                     {static_cast<std::int16_t>(at.x), static_cast<std::int16_t>(at.y),
                      static_cast<std::int16_t>(image.width), static_cast<std::int16_t>(image.height)});
}

int degreesOf(const Painter& painter) {
    return static_cast<int>(90 * painter.rotationIndex());
}

}  // namespace

Rect GuiManager::screenRect() const {
    return painter_ != nullptr ? wholeOf(*painter_) : Rect{};
}

void GuiManager::setRotation(int degrees) {
    for (Painter* painter : {painter_, pageSurfaceA_.get(), pageSurfaceB_.get()})
        if (painter != nullptr) painter->setRotationDegrees(degrees);
}

void GuiManager::drawFrame(Clip clip) {
    if (activePage_ == nullptr || painter_ == nullptr) return;
    applyRotationProvider();
    Trace::instance().beginFrame();
    if (secondPage_ != nullptr)
        drawSlide(clip);
    else
        drawScreen(clip);
    Trace::instance().endFrame();
}

void GuiManager::applyRotationProvider() {
    if (rotationProvider_ == nullptr) return;
    const int degrees = rotationProvider_->value();
    if (!painter_->setRotationDegrees(degrees))
        engineLog(0, __FILE_NAME__, __LINE__, "Could not set rotation of %i degree.", degrees);
}

void GuiManager::drawScreen(Clip clip) {
    painter_->beginPaint();
    drawPage(*activePage_, *painter_, Overlays::Counted, clip);
    drawOverlays();
    if (drawDebugFrames_) drawOutlines();
    painter_->endPaint();
}

void GuiManager::drawSlide(Clip clip) {
    drawSurface(pageSurfaceA_, *activePage_, clip);
    drawSurface(pageSurfaceB_, *secondPage_, clip);
}

void GuiManager::drawSurface(std::unique_ptr<Painter>& surface, Page& page, Clip clip) {
    if (surface == nullptr) surface.reset(painter_->clone());
    surface->setRotationDegrees(degreesOf(*painter_));
    surface->beginPaint();
    drawPage(page, *surface, Overlays::Left, clip);
    surface->endPaint();
}

void GuiManager::drawPage(Page& page, Painter& painter, Overlays overlays, Clip clip) {
    const Rect whole = wholeOf(painter);
    const Rect area = dirtyArea(page, overlays, whole);
    painter.resetClipStack();
    const bool clipped = clip == Clip::DirtyArea && area != whole;
    if (clipped) painter.pushClip(area, false);
    Trace::instance().beginPage(page, area, Trace::DrawPage);
    page.draw(painter);
    Trace::instance().endPage(page, Trace::DrawPage);
    if (clipped) painter.popClip();
}

Rect GuiManager::dirtyArea(const Page& page, Overlays overlays, Rect whole) const {
    Rect area;
    unite(area, page.dirty(), whole);
    if (overlays == Overlays::Left) return area;
    for (const Page* overlay : overlays_)
        if (overlay != nullptr) unite(area, overlay->dirty(), whole);
    return area;
}

// Hidden overlays are asked as well: that is how their dirty areas become empty.
void GuiManager::drawOverlays() {
    for (Page* page : overlays_) {
        if (page == nullptr) continue;
        Trace::instance().beginPage(*page, page->dirty(), Trace::DrawOverlay);
        page->draw(*painter_);
        Trace::instance().endPage(*page, Trace::DrawOverlay);
    }
}

void GuiManager::drawOutlines() {
    painter_->resetClipStack();
    const auto outline = [this](const Page& page) {
        for (Object* child : page.children())
            if (const Widget* widget = asWidget(child)) widget->drawOutline(*painter_);
    };
    outline(*activePage_);
    for (const Page* page : overlays_)
        if (page != nullptr) outline(*page);
}

// The compositor may end the slide when it is asked, so everything that it could change is read before.
void GuiManager::finishFrame() {
    PrepareCompositing* const compositor = compositor_;
    if (compositor == nullptr || painter_ == nullptr || pageSurfaceA_ == nullptr || pageSurfaceB_ == nullptr) return;
    const std::uint32_t rotation = painter_->rotationIndex();
    painter_->setRotationDegrees(0);
    for (Painter* painter : {painter_, pageSurfaceA_.get(), pageSurfaceB_.get()}) painter->resetClipStack();
    Image first, second;
    pageSurfaceA_->describe(first);
    pageSurfaceB_->describe(second);
    Point firstOffset, secondOffset;
    bool firstGoesOnTop = true;
    compositor->prepare(firstOffset, secondOffset, firstGoesOnTop, rotation);
    if (!firstGoesOnTop) blit(*painter_, first, firstOffset);
    blit(*painter_, second, secondOffset);
    if (firstGoesOnTop) blit(*painter_, first, firstOffset);
    painter_->setRotationDegrees(static_cast<int>(90 * rotation));
    painter_->resetClipStack();
    drawOverlays();
}

}  // namespace Engine
