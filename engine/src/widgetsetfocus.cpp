#include "embedded-gui-engine/widgetsetfocus.h"

#include "embedded-gui-engine/page.h"
#include "embedded-gui-engine/widget.h"

namespace Engine {

bool WidgetSetFocus::execute() {
    Page* page = target_->page();
    return page != nullptr && page->setFocus(target_);
}

}  // namespace Engine
