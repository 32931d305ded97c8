#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "brokenfolder.h"
#include "tools/catalogc/checks.h"
#include "tools/texttable/texttable.h"

using testing::HasSubstr;

TEST(CatalogueChecks, ASoundCatalogueHasNoProblems) {
    EXPECT_EQ(BrokenFolder().problems(), "");
}

struct Fault {
    const char* file;
    const char* from;
    const char* to;
    const char* problem;
};

class CatalogueFaults : public testing::TestWithParam<Fault> {};

TEST_P(CatalogueFaults, AreToldByFileAndLineWithWhatToDo) {
    const auto& [file, from, to, problem] = GetParam();
    BrokenFolder folder;
    folder.replace(file, from, to);
    EXPECT_THAT(folder.problems(), HasSubstr(problem)) << from << " -> " << to;
}

INSTANTIATE_TEST_SUITE_P(
    All, CatalogueFaults,
    testing::Values(
        Fault{"catalogue.tsv", "VarFlag\tb\tMemOne\t4", "VarFlag\tb\tMemOne\t3",
              "catalogue.tsv:3: 'VarFlag' at byte 3 overlaps 'VarInt', which ends at 4"},
        Fault{"catalogue.tsv", "VarEnum\te\tMemOne\t8", "VarEnum\te\tMemOne\t20",
              "catalogue.tsv:4: 'VarEnum' at byte 20 overlaps 'VarList'"},
        Fault{"areas.tsv", "64", "62", "catalogue.tsv:6: this ends at byte 64, past the end of MemOne (62 bytes)"},
        Fault{"tables.tsv", "12\t12\t3\t0", "12\t12\t5\t0", "tables.tsv:2: this ends at byte 72, past the end"},
        Fault{"tables.tsv", "Text\ts\t4\t8", "Text\ts\t3\t8", "tables.tsv:3: this overlaps the field 'Number'"},
        Fault{"tables.tsv", "Text\ts\t4\t8", "Text\ts\t4\t9", "the fields need 13 bytes, but a record has 12"},
        Fault{"catalogue.tsv", "VarEnum\te\tMemOne\t8", "VarEnum\te\tMemOne\t10", "multiple of 4; 10 is none"},
        Fault{"catalogue.tsv", "VarInt\ti\tMemOne\t0\t4\t1", "VarInt\ti\tMemOne\t0\t4\t2",
              "catalogue.tsv:2: message 2 is 'VarFlagChanged', but this needs 'VarIntChanged'"},
        Fault{"catalogue.tsv", "VarFlag", "VarInt", "catalogue.tsv:3: the name 'VarInt' is used in line 2 already"},
        Fault{"messages.tsv", "VarFlagChanged", "VarIntChanged", "messages.tsv:4: the message 'VarIntChanged' stands"},
        Fault{"messages.tsv", "2\tVarFlag", "7\tVarFlag", "messages.tsv:4: ids rise by one a line; this one is 2"},
        Fault{"catalogue.tsv", "\t2\t\t\n", "\t2\t0\t1\n", "only numbers (i, f) have limits"},
        Fault{"catalogue.tsv", "\t0\t9\n", "\t0\t9.5\n", "the limits of an int are whole"},
        Fault{"catalogue.tsv", "\t0\t9\n", "\t10\t9\n", "the minimum is above the maximum"},
        Fault{"catalogue.tsv", "\t0\t9\n", "\t0\tdyn\n", "links.tsv does not say with what"},
        Fault{"catalogue.tsv", "\t0\t9\n", "\t0\tnine\n", "'nine' is no limit"},
        Fault{"catalogue.tsv", "VarFlag\tb\tMemOne", "VarFlag\tb\tMemTwo", "there is no memory area 'MemTwo'"},
        Fault{"catalogue.tsv", "VarFlag\tb", "VarFlag\tx", "'x' is no kind"},
        Fault{"catalogue.tsv", "MemOne\t4\t1\t2", "MemOne\t-4\t1\t2", "'-4' in the column 'offset' is no whole number"},
        Fault{"enums.txt", "= VarEnum", "= VarInt", "'VarInt' is no enum variable"},
        Fault{"enums.txt", "1  Two", "0  Two", "enums.txt:3: the value 0 stands twice in Choice"},
        Fault{"enums.txt", "1  Two", "1  One", "enums.txt:3: the name 'One' stands twice in Choice"},
        Fault{"enums.txt", "hidden", "secret", "'secret' is no mark"},
        Fault{"enums.txt", "enum Choice = VarEnum", "enum Choice VarEnum", "write 'enum NAME = VARIABLES'"},
        Fault{"links.tsv", "VarMask\texists", "VarFlag\texists", "'VarFlag' is no bit mask (m)"},
        Fault{"links.tsv", "exists", "sometimes", "the property is exists, enabled or alternative"},
        Fault{"links.tsv", "availability\tVarEnum", "availability\tVarNone", "there is no variable or table 'VarNone'"},
        Fault{"events.tsv", "128\t", "129\t", "events.tsv:3: ids rise by one a line"}));

TEST(CatalogueChecks, TextsThatEnumsNameAreNeeded) {
    Problems problems;
    BrokenFolder folder;
    folder.replace("enums.txt", "One  -", "One  rec  \"Recording\"");
    const Catalogue catalogue = folder.read(problems);
    checkTexts(catalogue, TextTable::read(TERN_SOURCE_DIR "/model/texts"), problems);
    EXPECT_THAT(problems.text(), HasSubstr("enums.txt:2: the text 'rec' is \"REC\", not \"Recording\""));
    EXPECT_THAT(problems.text(), HasSubstr("enums.txt:3: there is no text 'two'; add a row of this name"));
}
