// What every generated source of the model includes.
#pragma once

#include <cstddef>
#include <span>

#include "backend/var.h"
#include "embedded-gui-engine/actiongroup.h"
#include "embedded-gui-engine/actions.h"
#include "embedded-gui-engine/arraytablesource.h"
#include "embedded-gui-engine/behaviorcontainer.h"
#include "embedded-gui-engine/compare.h"
#include "embedded-gui-engine/compareprevious.h"
#include "embedded-gui-engine/concatmodifier.h"
#include "embedded-gui-engine/condelse.h"
#include "embedded-gui-engine/conditionalvalue.h"
#include "embedded-gui-engine/enumtranslator.h"
#include "embedded-gui-engine/eventtrigger.h"
#include "embedded-gui-engine/fancyborder.h"
#include "embedded-gui-engine/fixedindicator.h"
#include "embedded-gui-engine/group.h"
#include "embedded-gui-engine/groupeventmatcher.h"
#include "embedded-gui-engine/historyclear.h"
#include "embedded-gui-engine/historygoback.h"
#include "embedded-gui-engine/hundredthsstringprovider.h"
#include "embedded-gui-engine/icon.h"
#include "embedded-gui-engine/label.h"
#include "embedded-gui-engine/lengthstringprovider.h"
#include "embedded-gui-engine/level.h"
#include "embedded-gui-engine/lineborder.h"
#include "embedded-gui-engine/markerindicator.h"
#include "embedded-gui-engine/modifier.h"
#include "embedded-gui-engine/navigateto.h"
#include "embedded-gui-engine/objectindicator.h"
#include "embedded-gui-engine/or.h"
#include "embedded-gui-engine/page.h"
#include "embedded-gui-engine/pinchscalewidget.h"
#include "embedded-gui-engine/rangeindicator.h"
#include "embedded-gui-engine/reaction.h"
#include "embedded-gui-engine/regexfilter.h"
#include "embedded-gui-engine/result.h"
#include "embedded-gui-engine/scale.h"
#include "embedded-gui-engine/scalecontainer.h"
#include "embedded-gui-engine/scaleplace.h"
#include "embedded-gui-engine/singleeventmatcher.h"
#include "embedded-gui-engine/stringprovider.h"
#include "embedded-gui-engine/timer.h"
#include "embedded-gui-engine/timestringprovider.h"
#include "embedded-gui-engine/useraction.h"
#include "embedded-gui-engine/userbutton.h"
#include "model/assets.h"
#include "model/catalogue/variables.h"
#include "model/runtime/modellink.h"

namespace Model {

/// `count` elements of an array from `begin`.
template <typename T, std::size_t N>
constexpr std::span<T> part(T (&array)[N], std::size_t begin, std::size_t count) {
    return {array + begin, count};
}

extern const ModelLink modelLink;

}  // namespace Model
