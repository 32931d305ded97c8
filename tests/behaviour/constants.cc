// One object of every class that models declare, as the compiler must place it: constant-initialised, with nothing to
// run at start or at exit.
#include "embedded-gui-engine/actiongroup.h"
#include "embedded-gui-engine/actions.h"
#include "embedded-gui-engine/behaviorcontainer.h"
#include "embedded-gui-engine/booliconmodifier.h"
#include "embedded-gui-engine/compare.h"
#include "embedded-gui-engine/compareprevious.h"
#include "embedded-gui-engine/concatmodifier.h"
#include "embedded-gui-engine/condelse.h"
#include "embedded-gui-engine/conditionalvalue.h"
#include "embedded-gui-engine/enumtranslator.h"
#include "embedded-gui-engine/icon.h"
#include "embedded-gui-engine/infomodifier.h"
#include "embedded-gui-engine/label.h"
#include "embedded-gui-engine/level.h"
#include "embedded-gui-engine/lineborder.h"
#include "embedded-gui-engine/modifier.h"
#include "embedded-gui-engine/navigateto.h"
#include "embedded-gui-engine/or.h"
#include "embedded-gui-engine/page.h"
#include "embedded-gui-engine/reaction.h"
#include "embedded-gui-engine/regexfilter.h"
#include "embedded-gui-engine/result.h"
#include "embedded-gui-engine/timer.h"
#include "embedded-gui-engine/timestringprovider.h"
#include "embedded-gui-engine/unixtimestringprovider.h"
#include "embedded-gui-engine/useraction.h"
#include "embedded-gui-engine/userbutton.h"
#include "embedded-gui-engine/warningsmodifier.h"

namespace Engine::modelObjects {

// Stand-ins for what lies in other files.
extern BoolVariable& flag;
extern const Image picture;
struct Table {
    const char* name() const;
    const unsigned char* address() const;
    unsigned int rowSize() const;
    unsigned int rowDimension() const;
    unsigned int width() const;
    int properties(unsigned int row) const;
    template <typename T>
    const ValueProvider<T>* getVariable(unsigned int column, unsigned int row) const;
};
extern const Table table;

constinit Icon icon(WidgetParams{});
constinit Level level(WidgetParams{});
constinit Label label(WidgetParams{});

constinit Result<bool> yes(true);
constinit Result<int> number(3);
constinit Result<float> real(3.5F);
constinit Result<long long> seconds(0);
constinit Result<const char*> text("text");
constinit Result<Color> red(0xffff0000);
constinit Result<TextId> key(TextId{5});
constinit Result<const Image*> image(&picture);
constinit Translator<EnumVariable> translator(nullptr);

constinit Compare<bool> isYes(&yes, true);
constinit Compare<int> isThree(&number, 3, CompareOperator::GreaterEqual);
constinit Compare<float> isReal(&real, 3.0F);
constinit Compare<const char*> isText(&text, "text");
constinit ComparePrevious<bool> toggled(&yes);
constinit ComparePrevious<int> rose(&number, 1);
constinit ComparePrevious<const char*> retyped(&text);
constinit CondElse otherwise;
Condition* const alternatives[] = {&isYes, nullptr, &isThree};
constinit Or anyOf(alternatives);
const ConditionalEntry<Color> colors[] = {{&anyOf, &red}, {&otherwise, &red}};
constinit ConditionalValue<Color> color(colors);

constinit VarSetToValue<BoolVariable> setFlag(true, nullptr);
constinit VarSetToValue<StringVariable> setText("text", nullptr);
constinit VarSetToVariable<EnumVariable> copy(nullptr, nullptr);
constinit VarIncrement<ScalarVariable<int>> up(nullptr);
constinit VarDecrement<ScalarVariable<float>> down(nullptr, 5.0F);
constinit VarNegate negate(nullptr);
constinit FireEvent fire(128);
constinit WidgetSetFocus focus(&icon);
Action* const actions[] = {&setFlag, &fire, nullptr};
constinit UserAction userAction({.pressActions = actions, .activeValue = true});
constinit UserButton userButton({.indexProvider = &number});

constinit Modifier<Widget, Color> colorModifier(&icon, &Widget::setForeground, &color);
constinit Modifier<Widget, bool> enableModifier(&icon, &Object::setEnabled, &yes);
constinit Modifier<Widget, int, std::int16_t> xModifier(&icon, &Widget::setX, &number);
constinit Modifier<Label, TextId> textModifier(&label, &Label::setTextId, &key);
constinit Modifier<Icon, const Image*> imageModifier(&icon, &Icon::setImage, &image);
constinit Modifier<UserAction, bool> userActionModifier(&userAction, &UserAction::setEnabled, &yes);
constinit LineBorder border(0xff0000ff, 0, 1);
constinit Page page(PageParams{});
constinit Timer timer({.interval = 500});
constinit Reaction reaction(actions, nullptr);
constinit BehaviorContainer container({});
constinit ActionGroup group(actions);
constinit NavigateTo navigate(&page);
constinit Result<Page*> target(&page);
constinit Modifier<Border, Color> borderModifier(&border, &Border::setColor, &red);
constinit Modifier<Page, Color> pageColorModifier(&page, &Page::setBackgroundColor, &red);
constinit Modifier<Page, bool> visibleModifier(&page, &Page::setVisible, &yes);
constinit Modifier<Page, bool> modalModifier(&page, &Page::setModal, &yes);
constinit Modifier<Timer, bool> timerModifier(&timer, &Timer::setEnabled, &yes);
constinit Modifier<Reaction, bool> reactionModifier(&reaction, &Reaction::setEnabled, &yes);
constinit Modifier<BehaviorContainer, bool> containerModifier(&container, &BehaviorContainer::setEnabled, &yes);
constinit Modifier<ActionGroup, bool> groupModifier(&group, &Action::setEnabled, &yes);
constinit Modifier<NavigateTo, Page*> targetModifier(&navigate, &NavigateTo::setTarget, &target);
constinit InverseModifier<Action> inverse(&setFlag, &Action::setEnabled, &yes);
constinit MinMaxValueModifier<Level, float> levelModifier(&level, nullptr, Limits::FollowVariable);
constinit BoolIconModifier boolIcon(&icon, &picture, nullptr, &yes);

constinit RegexFilter filter("^(.*)\\.[^.]+$");
char storage[6][32];
constinit StringProvider<const char*> textProvider("%s", &text, &filter, storage[0]);
constinit StringProvider<int> numberProvider("%i", &number, nullptr, storage[1]);
constinit StringProvider<float> realProvider("%.1f", &real, nullptr, storage[2]);
constinit TimeStringProvider timeProvider("%02h:%02m", &number, storage[3]);
constinit UnixTimeStringProvider unixTimeProvider("%H:%M", &seconds, nullptr, storage[4]);
constinit Modifier<StringProvider<int>, const char*> formatModifier(&numberProvider, &StringProvider<int>::setFormat,
                                                                    &text);
StringProviderBase* const parts[] = {&textProvider, &numberProvider, &realProvider, &timeProvider, &unixTimeProvider};
constinit ConcatModifier concat(parts, TextId{1}, &label);
constinit ArrayModifierFormat<Table, int> cell(&table, 1, &numberProvider);
constinit Modifier<ArrayModifier, int> row(&cell, &ArrayModifier::setRow, &number);
Label* const labels[] = {&label, nullptr};
const TextId formats[] = {{1}, {2}};
constinit InfoModifier<Table> infos(&table, {.labels = labels, .textIds = formats});
constinit WarningsModifier<Table> warnings(&table, {.labels = labels, .textIds = formats});

}  // namespace Engine::modelObjects
