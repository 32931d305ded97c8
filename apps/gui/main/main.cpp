// The one place where the program is put together; which platform it runs on is chosen when it is linked.
#include <cstdio>

#include "apps/gui/main/application.h"
#include "apps/gui/main/options.h"

int main(int argc, char** argv) {
    const auto options = parseOptions(argc, argv, stderr);
    if (!options) return 1;
    Application application;
    if (options->verifyTexts) {
        std::fprintf(stderr, "You must compile the GUI with GUI_TEXT_VERIFICATION enabled.\n");
        std::fprintf(stderr, "Can't run text verification with index %i.\n", options->language);
        return 1;
    }
    return application.run();
}
