#include <gmock/gmock.h>

#include "embedded-gui-engine/actions.h"
#include "embedded-gui-engine/behaviorcontainer.h"
#include "embedded-gui-engine/guimanager.h"
#include "embedded-gui-engine/page.h"
#include "embedded-gui-engine/reaction.h"
#include "embedded-gui-engine/singleeventmatcher.h"
#include "embedded-gui-engine/widget.h"
#include "fakes.h"

namespace Engine {
namespace {

/// The process's manager while it lives, open for events.
struct OpenManager {
    OpenManager() {
        GuiManager::setInstance(&manager);
        manager.finishInitialization();
    }
    ~OpenManager() { GuiManager::setInstance(nullptr); }
    OpenManager(const OpenManager&) = delete;
    OpenManager& operator=(const OpenManager&) = delete;

    GuiManager manager;
};

TEST(FireEvent, PostsAndAnswersTrue) {
    OpenManager open;
    FakeBool heard(false);
    VarSetToValue<BoolVariable> hear(true, &heard);
    Action* const actions[] = {&hear};
    const SingleEventMatcher matcher(130);
    Reaction reaction(actions, &matcher);
    Reaction* const reactions[] = {&reaction};
    BehaviorContainer container({.reactions = reactions});
    BehaviorContainer* const containers[] = {&container};
    open.manager.setContainers(containers);
    EXPECT_TRUE(FireEvent(130).execute());
    EXPECT_FALSE(heard.value()) << "the event waits for the next cycle";
    open.manager.processEvents(true);
    EXPECT_TRUE(heard.value());
}

constexpr WidgetParams FieldParams{};

class Field : public Widget {
  public:
    explicit Field(bool focusable = true) : Widget(FieldParams), focusable_(focusable) {}
    void setFocused(bool focused) override { focused_ = focused; }
    bool isFocused() const override { return focused_; }
    bool isFocusable() const override { return focusable_; }
    void draw(Painter&, Rect) override {}

  private:
    bool focusable_;
    bool focused_ = false;
};

TEST(WidgetSetFocus, TakesTheFocusOfThePageAlone) {
    OpenManager open;
    Field first, second, plain(false), loose;
    Object* const children[] = {&first, &second, &plain};
    Page page(PageParams{.children = children});
    page.linkChildren();
    EXPECT_TRUE(page.addFocus(&first));
    EXPECT_TRUE(WidgetSetFocus(&second).execute());
    EXPECT_FALSE(first.isFocused());
    EXPECT_TRUE(second.isFocused());
    EXPECT_FALSE(WidgetSetFocus(&plain).execute()) << "not focusable";
    EXPECT_FALSE(WidgetSetFocus(&loose).execute()) << "on no page";
}

}  // namespace
}  // namespace Engine
