#include "unit/ctl/inside/startpage.h"

#include <elf.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <fstream>
#include <optional>
#include <span>

#include "unit/ctl/nearest.h"
#include "unit/ctl/problem.h"
#include "unit/ctl/wholefile.h"

namespace Unit {

namespace {

constexpr std::string_view linkSymbol = "_ZN5Model9modelLinkE";

/// The page in the mangled name of its object, Model::PAGE::page. Empty for other symbols.
std::string_view pageOf(std::string_view symbol) {
    constexpr std::string_view front = "_ZN5Model", back = "4pageE";
    if (!symbol.starts_with(front) || !symbol.ends_with(back)) return {};
    symbol.remove_prefix(front.size());
    std::size_t length = 0;
    const auto [digits, error] = std::from_chars(symbol.data(), symbol.data() + symbol.size(), length);
    symbol.remove_prefix(static_cast<std::size_t>(digits - symbol.data()));
    return error == std::errc() && length + back.size() == symbol.size() ? symbol.substr(0, length)
                                                                         : std::string_view();
}

/// `count` records at `offset` of a file; empty when they do not all lie in it.
template <typename Record>
std::span<const Record> records(const std::string& bytes, std::uint64_t offset, std::uint64_t count) {
    if (offset > bytes.size() || count > (bytes.size() - offset) / sizeof(Record) || offset % alignof(Record) != 0)
        return {};
    return {reinterpret_cast<const Record*>(bytes.data() + offset), static_cast<std::size_t>(count)};
}

}  // namespace

StartPage::StartPage(std::string program) : program_(std::move(program)) {
    bytes_ = wholeFile(program_);
    readSymbols();
    if (pages_.empty() || startOffset_ == 0)
        throw Problem(program_ +
                      " does not tell where its pages are: it is missing, stripped, or built for another "
                      "machine. Build gui-virtual anew.");
    std::ranges::sort(pages_, {}, &Page::name);
    for (const Page& page : pages_) names_.push_back(page.name);
}

void StartPage::readSymbols() {
    const auto head = records<Elf64_Ehdr>(bytes_, 0, 1);
    if (head.empty() || std::memcmp(head[0].e_ident, ELFMAG, SELFMAG) != 0 || head[0].e_ident[EI_CLASS] != ELFCLASS64)
        return;
    const auto sections = records<Elf64_Shdr>(bytes_, head[0].e_shoff, head[0].e_shnum);
    for (const Elf64_Shdr& section : sections) {
        if (section.sh_type != SHT_SYMTAB || section.sh_link >= sections.size()) continue;
        const auto& names = sections[section.sh_link];
        const auto text = records<char>(bytes_, names.sh_offset, names.sh_size);
        for (const auto& symbol : records<Elf64_Sym>(bytes_, section.sh_offset, section.sh_size / sizeof(Elf64_Sym))) {
            if (symbol.st_name >= text.size()) continue;
            const char* start = text.data() + symbol.st_name;
            const std::string_view name(start, ::strnlen(start, text.size() - symbol.st_name));
            if (name == linkSymbol) placeStart(symbol.st_value, symbol.st_size);
            if (const auto page = pageOf(name); !page.empty()) pages_.push_back({std::string(page), symbol.st_value});
        }
    }
}

/// The start page's address is the last word of the link table.
void StartPage::placeStart(std::uint64_t linkAddress, std::uint64_t linkSize) {
    const auto head = records<Elf64_Ehdr>(bytes_, 0, 1);
    const std::uint64_t at = linkAddress + linkSize - sizeof(std::uint64_t);
    for (const Elf64_Phdr& segment : records<Elf64_Phdr>(bytes_, head[0].e_phoff, head[0].e_phnum))
        if (segment.p_type == PT_LOAD && at >= segment.p_vaddr && at + sizeof at <= segment.p_vaddr + segment.p_filesz)
            startOffset_ = static_cast<std::size_t>(at - segment.p_vaddr + segment.p_offset);
    if (startOffset_ > bytes_.size() - sizeof at) startOffset_ = 0;
}

void StartPage::requirePage(const std::string& page) const {
    if (std::ranges::find(names_, page) != names_.end()) return;
    std::string known;
    for (const auto& name : names_) known += " " + name;
    throw Problem("There is no page " + page + "." + suggestion(page, names_) + " The pages:" + known);
}

void StartPage::writeCopy(const std::string& page, const std::string& file) const {
    requirePage(page);
    const auto found = std::ranges::find(pages_, page, &Page::name);
    std::string copy = bytes_;
    std::memcpy(copy.data() + startOffset_, &found->address, sizeof found->address);
    ::unlink(file.c_str());  // a running program cannot be written into
    std::ofstream out(file, std::ios::binary);
    out.write(copy.data(), static_cast<std::streamsize>(copy.size()));
    if (!out.flush() || ::chmod(file.c_str(), 0700) != 0) throw Problem(file + " cannot be written. Is there room?");
}

}  // namespace Unit
