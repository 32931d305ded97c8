// The text table: the texts of the product, and what the checker refuses.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "model/texts.h"
#include "scratchfolder.h"
#include "tools/textc/csv.h"
#include "tools/textc/exchange.h"
#include "tools/textc/pseudo.h"
#include "tools/texttable/texttable.h"

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

const std::filesystem::path product = std::filesystem::path(TERN_SOURCE_DIR) / "model/texts";

constexpr char languages[] = "index\tcolumn\tenglish\town\n0\tenglish\tEnglish\tEnglish\n1\tgerman\tGerman\tDeutsch\n";
constexpr char head[] = "key\tname\tenglish\tgerman\n";

class Table : public testing::Test {
  protected:
    Table() { folder.write("languages.tsv", languages); }

    std::string errorWith(const std::string& rows) {
        folder.write("a.tsv", head + rows);
        return errorOf([&] { TextTable::read(folder.path()); });
    }

    ScratchFolder folder;
};

const char* text(int language, int key) {
    return Texts::tables[language][key];
}

}  // namespace

TEST(ProductTexts, HaveTheFixedRows) {
    EXPECT_STREQ(text(0, 0), "");
    EXPECT_STREQ(text(0, 1), "%0");
    EXPECT_STREQ(text(0, 2), "UB %0 [%1]");
    for (const int language : {0, 3}) {
        EXPECT_STREQ(text(language, 58), "REC");
        EXPECT_STREQ(text(language, 59), "STBY");
        EXPECT_STREQ(text(language, 1452), "-");
        EXPECT_STREQ(text(language, 1453), "ERROR_TEXT_ARRAY_OVERLOAD");
    }
    EXPECT_STREQ(text(0, 1000), "Unit");
    EXPECT_STREQ(text(3, 1000), "Einheit");
    EXPECT_STREQ(text(0, 1451), "Torque");
    EXPECT_STREQ(text(3, 1451), "Drehmoment");
    EXPECT_EQ(Texts::english_own.key, TextTable::read(product).find("english_own")->key);
}

TEST(ProductTexts, AreThereInEveryLanguage) {
    const TextTable table = TextTable::read(product);
    ASSERT_EQ(table.languages().size(), 4u);
    std::ostringstream missing;
    for (std::size_t i = 0; i < table.languages().size(); ++i) EXPECT_EQ(listMissing(table, i, missing), 0);
    EXPECT_THAT(missing.str(), IsEmpty());
}

TEST_F(Table, NamesEveryProblemAtOnce) {
    EXPECT_THAT(errorWith("0\ta\tA\tA\n1454\tb\tB\tB\n5\t9c\tC\tC\n6\td\t\tD\n1200\te\tE\tE\n"),
                AllOf(HasSubstr("key 0 'a': keys go from 1 to 1453"), HasSubstr("key 1454 'b'"),
                      HasSubstr("key 5 '9c': the name must"), HasSubstr("key 6 'd': the English text is missing"),
                      HasSubstr("key 1200 'e': keys 988 to 1450 stay empty")));
    EXPECT_THAT(errorWith("7\ta\tA\tA\n7\tb\tB\tB\n"), HasSubstr("key 7 is used already at"));
    EXPECT_THAT(errorWith("7\ta\tA\tA\n8\ta\tB\tB\n"), HasSubstr("the name 'a' is used already at"));
    EXPECT_THAT(errorWith("7\ta\tA\n"), AllOf(HasSubstr("a.tsv:2"), HasSubstr("3 cells")));
    EXPECT_THAT(errorWith("7\ta\tA\\x\tA\n"), HasSubstr("a backslash must be followed by"));
    EXPECT_THAT(errorWith("7\ta\tA\t\xFF\n"), HasSubstr("not UTF-8"));
}

TEST_F(Table, PlaceholdersAgreeInAllLanguages) {
    EXPECT_THAT(errorWith("7\ta\t%0 of %1\t%0 von\n"), HasSubstr("the placeholders in German (\"%0 von\")"));
    EXPECT_THAT(errorWith("7\ta\t%0\t%0 %0\n"), HasSubstr("placeholders"));
    EXPECT_EQ(errorWith("7\ta\t%0 of %1\tvon %1 %0\n8\tb\t50 %\t50 Prozent\n9\tc\t%0\t\n"), "");
    EXPECT_EQ(placeholdersOf("%1 %0 %12 %"), (std::vector<int>{0, 1, 12}));
}

TEST_F(Table, AMissingTranslationShowsEnglish) {
    ASSERT_EQ(errorWith("7\ta\tA\\nB\t\n"), "");
    const TextTable table = TextTable::read(folder.path());
    EXPECT_EQ(table.find("a")->in(1), "A\nB");
    std::ostringstream list;
    EXPECT_EQ(listMissing(table, 1, list), 1);
    EXPECT_THAT(list.str(), AllOf(HasSubstr("a.tsv:2"), HasSubstr("German")));
}

TEST_F(Table, ALanguageGoesOutAndComesBack) {
    ASSERT_EQ(errorWith("7\ta\tone, \"two\"\\nthree\t\n# a remark\n8\tb\tB\tB\n9\tc\t%0\t%0\n10\td\tD\tD\n"), "");
    std::string sheet = exportLanguage(TextTable::read(folder.path()), 1);
    auto rows = parseCsv(sheet);
    ASSERT_EQ(rows.size(), 5u);
    EXPECT_EQ(rows[1], (std::vector<std::string>{"7", "a", "one, \"two\"\nthree", ""}));
    rows[1][3] = "eins;\nzwei";
    rows[2][2] = "changed meanwhile", rows[2][3] = "x";
    rows[3][3] = "%1";
    rows[4][1] = "unheard_of";
    sheet.clear();
    for (const auto& row : rows) sheet += csvRow(row);
    folder.write("sheet.csv", sheet);

    std::ostringstream report;
    EXPECT_EQ(importLanguage(folder.path(), "german", folder.path() / "sheet.csv", report), 1);
    EXPECT_EQ(folder.read("a.tsv"), std::string(head) +
                                        "7\ta\tone, \"two\"\\nthree\teins;\\nzwei\n# a remark\n8\tb\tB\tB\n" +
                                        "9\tc\t%0\t%0\n10\td\tD\tD\n");
    EXPECT_THAT(report.str(),
                AllOf(HasSubstr("b: left out, the English text has changed"),
                      HasSubstr("c: left out, the placeholders differ"), HasSubstr("unheard_of: left out")));
    EXPECT_THAT(errorOf([&] { importLanguage(folder.path(), "klingon", folder.path() / "sheet.csv", report); }),
                HasSubstr("there are: english, german"));
}

TEST(Csv, ReadsWhatSpreadsheetsWrite) {
    EXPECT_EQ(parseCsv("\xEF\xBB\xBF"
                       "a;b\r\n\"c;\";d"),
              (std::vector<std::vector<std::string>>{{"a", "b"}, {"c;", "d"}}));
    EXPECT_EQ(parseCsv("a,\n"), (std::vector<std::vector<std::string>>{{"a", ""}}));
    EXPECT_EQ(parseCsv("\"open"), (std::vector<std::vector<std::string>>{{"open"}}));
    EXPECT_EQ(parseCsv("\"\"\"\",x"), (std::vector<std::vector<std::string>>{{"\"", "x"}}));
}

TEST(Pseudo, KeepsPlaceholdersAndLines) {
    EXPECT_EQ(pseudoText("Back"), "[Báçk~~]");
    EXPECT_EQ(pseudoText("%0 of\nus"), "[%0 öf~]\n[üš~]");
    EXPECT_EQ(pseudoText("\n"), "\n");
}
